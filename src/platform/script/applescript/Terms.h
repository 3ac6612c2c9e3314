#pragma once

#include "platform/script/applescript/Symbols.h"

#include <span>
#include <unordered_map>
#include <vector>

namespace caddis::applescript {

/// A word or phrase of the language, found in a source.
struct TermMatch {
    Symbol symbol = Symbol::None;
    std::size_t words = 0; ///< 0: nothing found
    bool isPlural = false; ///< of a class: the words name all its elements
};

/// The term with the most words that `words` begin with; reserved words are not among them. The plain words
/// of file applications count only when `inFileApplication`.
TermMatch matchTerm(std::span<const Symbol> words, bool inFileApplication);

/// How many of `words` are the name of a handler that an application calls: "adding folder items to".
std::size_t matchEventHandler(std::span<const Symbol> words);

/// The longest phrase there is, in words.
inline constexpr std::size_t LongestPhrase = 5;

/// Phrases by their words, for any vocabulary.
class PhraseTable {
public:
    using SymbolOfWord = Symbol (*)(std::u16string_view word);

    /// A table that outlives a script has shared words only.
    explicit PhraseTable(SymbolOfWord symbolOfWord = symbolOfSharedWord)
        : m_symbolOfWord(symbolOfWord)
    {
    }
    void add(std::u16string_view phrase, std::size_t value);

    struct Match {
        std::size_t value = 0;
        std::size_t words = 0;
    };
    /// The longest phrase that `words` begin with.
    Match longest(std::span<const Symbol> words) const;

private:
    struct Entry {
        std::vector<Symbol> words;
        std::size_t value;
    };
    SymbolOfWord m_symbolOfWord;
    std::unordered_map<Symbol, std::vector<Entry>> m_entries; ///< by first word, longest phrase first
};

} // namespace caddis::applescript
