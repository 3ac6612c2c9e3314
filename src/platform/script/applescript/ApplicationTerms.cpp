#include "platform/script/applescript/ApplicationTerms.h"

#include "platform/base/Format.h"
#include "platform/script/MacRoman.h"
#include "platform/script/applescript/FileSuite.h"
#include "platform/script/applescript/RemoteObjects.h"

namespace caddis::applescript {

ApplicationTerms::ApplicationTerms(std::shared_ptr<const ScriptableApplication> application)
    : m_application(std::move(application))
{
    const ScriptingDictionary& dictionary = m_application->dictionary();
    for (const auto& entry : dictionary.classes) {
        add(TermRole::Class, ClassName | ElementClass, entry.name, entry.code);
        addPhrase(entry.plural, symbolOfPlainName(entry.name), ClassName | ElementClass, true);
    }
    for (const auto& property : dictionary.properties)
        add(TermRole::Property, PropertyName, property.name, property.code);
    for (const auto& enumerator : dictionary.enumerators)
        add(TermRole::Enumerator, ConstantName, enumerator.name, enumerator.code);
    for (const auto& command : dictionary.commands)
        addCommand(command);
}

// The first code of a name counts, and the first name of a code: synonyms come later.
void ApplicationTerms::add(TermRole role, unsigned kinds, const String& name, FourCharCode code)
{
    const Symbol symbol = symbolOfPlainName(name);
    Codes& codes = m_codes[static_cast<std::size_t>(role)];
    codes.codes.try_emplace(symbol, code);
    codes.names.try_emplace(code, symbol);
    addPhrase(name, symbol, kinds, false);
}

void ApplicationTerms::addPhrase(const String& phrase, Symbol symbol, unsigned kinds, bool isPlural)
{
    if (kindsOf(symbolOfPlainName(phrase)) & ReservedWord)
        return;
    const std::size_t value = m_phrases.add(phrase, m_matches.size());
    if (value == m_matches.size())
        m_matches.push_back({ .symbol = symbol, .isPlural = isPlural });
    if (m_matches[value].symbol == symbol)
        m_matches[value].kinds |= kinds | (kindsOf(symbol) & ~FileApplicationProperty);
}

void ApplicationTerms::addCommand(const ScriptingDictionary::Command& command)
{
    RemoteCommand& made = m_commands.emplace_back();
    made.eventClass = command.eventClass;
    made.eventID = command.eventID;
    made.name = command.name.utf8();
    for (const auto& parameter : command.parameters) {
        made.phrases.add(parameter.name, made.codes.size());
        made.codes.push_back(parameter.code);
        made.parameters.push_back({ made.labels.emplace_back(parameter.name.utf8()), parameter.isBoolean });
    }
    made.spec = { .name = made.name,
        .perform = sendCommand,
        .parameters = made.parameters,
        .takesContainer = true,
        .remote = &made };
    m_commandNames.add(command.name, m_commands.size() - 1);
}

TermMatch ApplicationTerms::match(std::span<const Symbol> words) const
{
    const PhraseTable::Match found = m_phrases.longest(words);
    if (!found.words)
        return {};
    TermMatch match = m_matches[found.value];
    match.words = found.words;
    return match;
}

CommandMatch ApplicationTerms::matchCommand(std::span<const Symbol> words) const
{
    const PhraseTable::Match found = m_commandNames.longest(words);
    return found.words ? CommandMatch { &m_commands[found.value].spec, found.words } : CommandMatch();
}

FourCharCode ApplicationTerms::code(TermRole role, Symbol name) const
{
    const auto& codes = m_codes[static_cast<std::size_t>(role)].codes;
    const auto found = codes.find(name);
    return found != codes.end() ? found->second : 0;
}

Symbol ApplicationTerms::name(TermRole role, FourCharCode code) const
{
    const auto& names = m_codes[static_cast<std::size_t>(role)].names;
    const auto found = names.find(code);
    return found != names.end() ? found->second : Symbol::None;
}

std::shared_ptr<const ApplicationTerms> ApplicationTable::named(const String& name)
{
    if (const auto known = m_terms.find(name); known != m_terms.end())
        return known->second;
    auto application = isFileApplication(name) ? nullptr : ScriptableApplication::named(name);
    auto terms = application ? std::make_shared<const ApplicationTerms>(std::move(application)) : nullptr;
    return m_terms.emplace(name, std::move(terms)).first->second;
}

void ApplicationTable::forgetUnknown()
{
    std::erase_if(m_terms, [](const auto& entry) { return entry.second == nullptr; });
}

namespace {

// «class docu»: the last four characters.
FourCharCode rawCode(Symbol name)
{
    const String text = plainName(name);
    const std::size_t length = text.length();
    if (length < 6 || text[0] != u'«' || text[length - 1] != u'»')
        return 0;
    FourCharCode code = 0;
    for (std::size_t index = length - 5; index < length - 1; ++index)
        code = code << 8 | macRomanByte(text[index]).value_or('?');
    return code;
}

} // namespace

FourCharCode codeOf(const ApplicationTerms* terms, TermRole role, Symbol name)
{
    if (const FourCharCode own = terms ? terms->code(role, name) : 0)
        return own;
    const FourCharCode code = codeOf(name);
    return code ? code : rawCode(name);
}

Symbol nameWithCode(const ApplicationTerms* terms, TermRole role, FourCharCode code)
{
    if (const Symbol own = terms ? terms->name(role, code) : Symbol::None; own != Symbol::None)
        return own;
    if (const Symbol term = termWithCode(code); term != Symbol::None)
        return term;
    constexpr std::u16string_view Kinds[] = { u"class", u"property", u"constant" };
    return symbolOfUserName(
        format(u"«%@ %@»", Kinds[static_cast<std::size_t>(role)], stringFromMacRoman(codeCharacters(code))));
}

} // namespace caddis::applescript
