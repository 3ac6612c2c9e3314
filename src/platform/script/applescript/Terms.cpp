#include "platform/script/applescript/Terms.h"

#include "platform/base/Format.h"

#include <algorithm>

namespace caddis::applescript {

namespace {

constexpr std::size_t PluralFlag = std::size_t { 1 } << 32;

String pluralOf(const String& name)
{
    const bool hisses = name.view().ends_with(u's') || name.view().ends_with(u'x');
    return hisses ? format(u"%@es", name) : format(u"%@s", name);
}

void addTerms(PhraseTable& table, unsigned kinds)
{
    for (auto index = 1U; index < static_cast<unsigned>(Symbol::FirstUserSymbol); ++index) {
        const auto symbol = static_cast<Symbol>(index);
        const unsigned itsKinds = kindsOf(symbol);
        if (!(itsKinds & kinds) || (itsKinds & ReservedWord))
            continue;
        const String name = plainName(symbol);
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
        made.add(u"app", static_cast<std::size_t>(Symbol::Application));
        made.add(u"alias list", static_cast<std::size_t>(Symbol::List));
        made.add(u"text item delimiter", static_cast<std::size_t>(Symbol::TextItemDelimiters));
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

std::size_t PhraseTable::add(std::u16string_view phrase, std::size_t value)
{
    std::size_t place = 0;
    while (!phrase.empty()) {
        const std::size_t end = std::min(phrase.find(u' '), phrase.size());
        const auto [next, isNew]
            = m_next.try_emplace(step(place, m_symbolOfWord(phrase.substr(0, end))), m_values.size());
        if (isNew)
            m_values.emplace_back();
        place = next->second;
        phrase.remove_prefix(std::min(end + 1, phrase.size()));
    }
    if (!m_values[place])
        m_values[place] = value;
    return *m_values[place];
}

PhraseTable::Match PhraseTable::longest(std::span<const Symbol> words) const
{
    Match match;
    std::size_t place = 0;
    for (std::size_t count = 1; count <= words.size(); ++count) {
        const auto next = m_next.find(step(place, words[count - 1]));
        if (next == m_next.end())
            break;
        place = next->second;
        if (m_values[place])
            match = { *m_values[place], count };
    }
    return match;
}

std::size_t matchEventHandler(std::span<const Symbol> words)
{
    static const PhraseTable names = [] {
        PhraseTable table;
        for (const char16_t* name :
            { u"adding folder items to", u"removing folder items from", u"opening folder",
                u"closing folder window for", u"moving folder window for", u"open location", u"will quit" })
            table.add(name, 0);
        return table;
    }();
    return names.longest(words).words;
}

TermMatch matchTerm(std::span<const Symbol> words, bool inFileApplication)
{
    PhraseTable::Match match = languageTerms().longest(words);
    if (!match.words && inFileApplication)
        match = fileApplicationTerms().longest(words);
    if (!match.words)
        return {};
    const auto symbol = static_cast<Symbol>(match.value & ~PluralFlag);
    return { symbol, kindsOf(symbol), match.words, (match.value & PluralFlag) != 0 };
}

} // namespace caddis::applescript
