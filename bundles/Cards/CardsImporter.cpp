#include "bundles/Cards/ContentLines.h"
#include "bundles/support/Importer.h"
#include "bundles/support/InputFile.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"
#include "platform/unicode/PlainText.h"

namespace caddis::bundles {

namespace {

// A row's attribute takes the value of each line of that name; the first title is the file's.
struct Row {
    std::string_view name;
    const char* key;
    bool isList = true;
};
constexpr Row Rows[] = {
    { "FN", "kMDItemAuthors" },
    { "EMAIL", "kMDItemEmailAddresses" },
    { "TEL", "kMDItemPhoneNumbers" },
    { "IMPP", "kMDItemInstantMessageAddresses" },
    { "ORG", "kMDItemOrganizations" },
    { "CATEGORIES", "kMDItemKeywords" },
    { "ATTENDEE", "kMDItemParticipants" },
    { "UID", "kMDItemIdentifier", false },
    { "DESCRIPTION", "kMDItemDescription", false },
};
// What people would search for in such a file.
constexpr std::string_view TextNames[]
    = { "FN", "NICKNAME", "ORG", "TITLE", "ROLE", "EMAIL", "TEL", "ADR", "URL", "NOTE", "BDAY", "SUMMARY",
          "DESCRIPTION", "LOCATION", "COMMENT", "CATEGORIES", "ATTENDEE", "ORGANIZER" };

// "20260301T093000Z" as ISO 8601 with its signs.
std::optional<double> readStamp(std::string_view stamp)
{
    if (stamp.size() < 8)
        return std::nullopt;
    std::string text(stamp.substr(0, 4));
    text.append("-").append(stamp.substr(4, 2)).append("-").append(stamp.substr(6, 2));
    if (stamp.size() >= 15 && stamp[8] == 'T')
        text.append("T")
            .append(stamp.substr(9, 2))
            .append(":")
            .append(stamp.substr(11, 2))
            .append(":")
            .append(stamp.substr(13));
    return readDate(text);
}

// "CN=Ada Lovelace" of the parameters, else the address without its scheme.
std::string personOf(const ContentLine& line)
{
    std::string_view parameters = line.parameters;
    while (!parameters.empty()) {
        std::string_view parameter = takeUntil(parameters, ';');
        if (startsWithNoCase(parameter, "CN=")) {
            parameter.remove_prefix(3);
            if (parameter.size() >= 2 && parameter.starts_with('"') && parameter.ends_with('"'))
                parameter = parameter.substr(1, parameter.size() - 2);
            return std::string(parameter);
        }
    }
    return unescaped(startsWithNoCase(line.value, "mailto:") ? line.value.substr(7) : line.value);
}

// Structured values show their parts apart by spaces.
std::string readable(const ContentLine& line)
{
    if (equalsNoCase(line.name, "ATTENDEE") || equalsNoCase(line.name, "ORGANIZER"))
        return personOf(line);
    std::string text;
    for (std::string_view rest = line.value; !rest.empty();) {
        const std::string part = takePart(rest, ';');
        text.append(text.empty() || part.empty() ? "" : " ").append(part);
    }
    return text;
}

class CardReader {
public:
    CardReader(Attributes& attributes, TextSink& text)
        : m_attributes(attributes)
        , m_text(text)
    {
    }

    bool operator()(const ContentLine& line)
    {
        const std::string value = readable(line);
        if (!m_hasTitle && (equalsNoCase(line.name, "FN") || equalsNoCase(line.name, "SUMMARY"))) {
            m_hasTitle = true;
            m_attributes.setString("kMDItemTitle", value);
        }
        for (const Row& row : Rows) {
            if (!equalsNoCase(row.name, line.name))
                continue;
            row.isList ? m_attributes.addString(row.key, value) : m_attributes.setString(row.key, value);
        }
        if (equalsNoCase(line.name, "DTSTART"))
            m_attributes.setDate("kMDItemContentCreationDate", readStamp(line.value));
        if (equalsNoCase(line.name, "DUE") || equalsNoCase(line.name, "DTEND"))
            m_attributes.setDate("kMDItemDueDate", readStamp(line.value));
        for (const std::string_view name : TextNames) {
            if (equalsNoCase(name, line.name))
                m_text.appendLine(value);
        }
        return !m_text.isFull() && !m_attributes.shouldStop();
    }

private:
    Attributes& m_attributes;
    TextSink& m_text;
    bool m_hasTitle = false;
};

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    const auto bytes = readFile(path);
    if (!bytes)
        return false;
    TextSink text(attributes);
    CardReader reader(attributes, text);
    readContentLines(plainTextOfData(*bytes).text.utf8(), reader);
    return !text.isEmpty();
}

} // namespace caddis::bundles
