#include "platform/script/applescript/Terms.h"

#include <algorithm>

namespace caddis::applescript {

namespace {

constexpr std::size_t PluralFlag = std::size_t { 1 } << 32;

std::string pluralOf(const std::string& name)
{
    if (name.ends_with("s"))
        return name + "es";
    if (name.ends_with("x"))
        return name + "es";
    return name + "s";
}

void addTerms(PhraseTable& table, unsigned kinds)
{
    for (auto index = 1U; index < static_cast<unsigned>(Symbol::FirstUserSymbol); ++index) {
        const auto symbol = static_cast<Symbol>(index);
        const unsigned itsKinds = kindsOf(symbol);
        if (!(itsKinds & kinds) || (itsKinds & ReservedWord))
            continue;
        const std::string name = plainName(symbol).utf8();
        table.add(name, index);
        if (itsKinds & ElementClass)
            table.add(pluralOf(name), index | PluralFlag);
    }
}

const PhraseTable& languageTerms()
{
    static const PhraseTable table = [] {
        PhraseTable made;
        addTerms(made, ClassName | ElementClass | PropertyName | ConstantName);
        // Spellings that stand for other terms.
        made.add("app", static_cast<std::size_t>(Symbol::Application));
        made.add("alias list", static_cast<std::size_t>(Symbol::List));
        made.add("text item delimiter", static_cast<std::size_t>(Symbol::TextItemDelimiters));
        return made;
    }();
    return table;
}

const PhraseTable& fileApplicationTerms()
{
    static const PhraseTable table = [] {
        PhraseTable made;
        addTerms(made, FileApplicationProperty);
        return made;
    }();
    return table;
}

} // namespace

void PhraseTable::add(std::string_view phrase, std::size_t value)
{
    std::vector<Symbol> words;
    while (!phrase.empty()) {
        const std::size_t end = std::min(phrase.find(' '), phrase.size());
        words.push_back(symbolOfPlainName(String::fromLatin1(phrase.substr(0, end))));
        phrase.remove_prefix(std::min(end + 1, phrase.size()));
    }
    auto& entries = m_entries[words.front()];
    entries.push_back({ std::move(words), value });
    std::ranges::stable_sort(
        entries, std::ranges::greater {}, [](const Entry& entry) { return entry.words.size(); });
}

PhraseTable::Match PhraseTable::longest(std::span<const Symbol> words) const
{
    const auto found = words.empty() ? m_entries.end() : m_entries.find(words.front());
    if (found == m_entries.end())
        return {};
    for (const Entry& entry : found->second) {
        if (entry.words.size() <= words.size()
            && std::ranges::equal(entry.words, words.first(entry.words.size())))
            return { entry.value, entry.words.size() };
    }
    return {};
}

TermMatch matchTerm(std::span<const Symbol> words, bool inFileApplication)
{
    PhraseTable::Match match = languageTerms().longest(words);
    if (!match.words && inFileApplication)
        match = fileApplicationTerms().longest(words);
    if (!match.words)
        return {};
    return { static_cast<Symbol>(match.value & ~PluralFlag), match.words, (match.value & PluralFlag) != 0 };
}

} // namespace caddis::applescript
