#include "platform/script/applications/ScriptingDictionary.h"

#include "platform/base/Format.h"
#include "platform/script/MacRoman.h"
#include "platform/script/applications/StandardSuite.h"
#include "platform/xml/XMLParser.h"

#include <algorithm>
#include <charconv>

namespace caddis {

namespace {

constexpr std::size_t LongestName = 100; // units
constexpr std::size_t MostWords = 5;

// "docu", or "0x646f6375": COUNT codes in a row.
template <std::size_t Count> std::optional<std::array<FourCharCode, Count>> codesFrom(const String& text)
{
    std::string bytes;
    for (const char16_t unit : text)
        bytes += static_cast<char>(macRomanByte(unit).value_or('?'));
    std::array<FourCharCode, Count> codes {};
    const bool isHex = bytes.size() == 2 + 8 * Count && bytes.starts_with("0x");
    if (!isHex && bytes.size() != 4 * Count)
        return std::nullopt;
    for (std::size_t index = 0; index < Count; ++index) {
        if (!isHex) {
            for (std::size_t at = 0; at < 4; ++at)
                codes[index] = codes[index] << 8 | static_cast<unsigned char>(bytes[4 * index + at]);
            continue;
        }
        const char* digits = bytes.data() + 2 + 8 * index;
        if (std::from_chars(digits, digits + 8, codes[index], 16).ptr != digits + 8)
            return std::nullopt;
    }
    return codes;
}

bool isWordUnit(char16_t unit)
{
    return unit == u'_' || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z')
        || (unit >= u'0' && unit <= u'9') || unit >= 0xC0;
}

// Words that a script can write, one blank between each two.
bool isName(const String& name)
{
    std::size_t words = 0;
    char16_t before = u' ';
    for (const char16_t unit : name) {
        const bool starts = before == u' ';
        if (unit == u' ' ? starts : !isWordUnit(unit) || (starts && unit >= u'0' && unit <= u'9'))
            return false;
        words += starts && unit != u' ';
        before = unit;
    }
    return before != u' ' && words <= MostWords && name.length() <= LongestName;
}

class DictionaryReader final : public XMLParserDelegate {
public:
    void didStartElement(std::string_view name, const XMLAttributes& attributes) override
    {
        if (name == "dictionary")
            m_found = true;
        else if (name == "class" || name == "class-extension" || name == "record-type")
            addClass(attributes);
        else if (name == "property" || name == "contents")
            addTerm(m_dictionary.properties, attributes);
        else if (name == "enumerator")
            addTerm(m_dictionary.enumerators, attributes);
        else if (name == "command")
            addCommand(attributes);
        else if (name == "parameter")
            addParameter(attributes);
        else if (name == "type" && m_isParameter)
            m_dictionary.commands.back().parameters.back().isBoolean
                = attributes.value("type") == String(u"boolean");
        else if (name.ends_with("include"))
            include(attributes);
    }
    void didEndElement(std::string_view name) override
    {
        if (name == "command")
            m_isCommand = false;
        if (name == "parameter")
            m_isParameter = false;
    }
    void foundCharacters(const String&) override { }

    std::optional<ScriptingDictionary> take()
    {
        if (!m_found || m_terms > MaximumDictionaryTerms)
            return std::nullopt;
        return std::move(m_dictionary);
    }

private:
    std::optional<ScriptingDictionary::Term> termFrom(const XMLAttributes& attributes)
    {
        const auto name = attributes.value("name");
        const auto code = codesFrom<1>(attributes.value("code").value_or(String()));
        if (!name || !code || !isName(*name) || ++m_terms > MaximumDictionaryTerms)
            return std::nullopt;
        return ScriptingDictionary::Term { *name, code->front() };
    }

    void addTerm(std::vector<ScriptingDictionary::Term>& terms, const XMLAttributes& attributes)
    {
        if (auto term = termFrom(attributes))
            terms.push_back(*std::move(term));
    }

    void addClass(const XMLAttributes& attributes)
    {
        auto term = termFrom(attributes);
        if (!term)
            return;
        String plural = attributes.value("plural").value_or(String());
        if (!isName(plural))
            plural = format(u"%@s", term->name);
        m_dictionary.classes.push_back({ term->name, plural, term->code });
    }

    void addCommand(const XMLAttributes& attributes)
    {
        const auto name = attributes.value("name");
        const auto codes = codesFrom<2>(attributes.value("code").value_or(String()));
        m_isCommand = name && codes && isName(*name) && ++m_terms <= MaximumDictionaryTerms;
        if (m_isCommand)
            m_dictionary.commands.push_back({ *name, codes->front(), codes->back(), {} });
    }

    void addParameter(const XMLAttributes& attributes)
    {
        auto term = m_isCommand ? termFrom(attributes) : std::nullopt;
        m_isParameter = term.has_value();
        if (m_isParameter)
            m_dictionary.commands.back().parameters.push_back(
                { term->name, term->code, attributes.value("type") == String(u"boolean") });
    }

    void include(const XMLAttributes& attributes)
    {
        const String place = attributes.value("href").value_or(String());
        if (m_hasStandardSuite || !place.view().ends_with(StandardFile))
            return;
        m_hasStandardSuite = true;
        XMLParser::parse(Data::copyOf(StandardSuite), *this);
    }

    static constexpr std::u16string_view StandardFile = u"/CocoaStandard.sdef";

    ScriptingDictionary m_dictionary;
    std::size_t m_terms = 0;
    bool m_found = false;
    bool m_isCommand = false; ///< inside the last command
    bool m_isParameter = false; ///< inside its last parameter
    bool m_hasStandardSuite = false;
};

} // namespace

std::optional<ScriptingDictionary> scriptingDictionary(const Data& xml)
{
    DictionaryReader reader;
    if (!XMLParser::parse(xml, reader))
        return std::nullopt;
    auto dictionary = reader.take();
    if (!dictionary)
        return std::nullopt;
    DictionaryReader required;
    XMLParser::parse(Data::copyOf(RequiredSuite), required);
    auto commands = required.take()->commands;
    std::ranges::move(commands, std::back_inserter(dictionary->commands));
    return dictionary;
}

} // namespace caddis
