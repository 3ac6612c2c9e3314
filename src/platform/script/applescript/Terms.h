#pragma once

#include "platform/script/applescript/Symbols.h"

#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

namespace caddis::applescript {

/// A word or phrase of the language, found in a source.
struct TermMatch {
    Symbol symbol = Symbol::None;
    unsigned kinds = 0; ///< of TermKind
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
    /// The value of the phrase from now on: this one, unless the phrase has one already.
    std::size_t add(std::u16string_view phrase, std::size_t value);

    struct Match {
        std::size_t value = 0;
        std::size_t words = 0;
    };
    /// The longest phrase that `words` begin with.
    Match longest(std::span<const Symbol> words) const;

private:
    // Phrases that begin with the same words share a path from the root, which is place 0.
    static std::uint64_t step(std::size_t place, Symbol word)
    {
        return std::uint64_t { place } << 32 | static_cast<std::uint32_t>(word);
    }

    SymbolOfWord m_symbolOfWord;
    std::unordered_map<std::uint64_t, std::size_t> m_next;
    std::vector<std::optional<std::size_t>> m_values { std::nullopt }; ///< of the phrase that ends at a place
};

} // namespace caddis::applescript
