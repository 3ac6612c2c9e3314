#include "bundles/support/Importer.h"
#include "bundles/support/InputFile.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"
#include "bundles/support/ZipPackage.h"
#include "markup/JSONEscapes.h"
#include "platform/unicode/PlainText.h"

namespace caddis::bundles {

namespace {

constexpr std::size_t MaximumJson = 16 * 1024 * 1024;

// The head of an OPML file (OPML 2.0).
constexpr Property HeadProperties[] = {
    { "title", "kMDItemTitle" },
    { "ownerName", "kMDItemAuthors", Form::Strings },
    { "ownerEmail", "kMDItemAuthorEmailAddresses", Form::Strings },
    { "ownerId", "kMDItemIdentifier" },
};

// The texts of topics, a line each: attributes in OPML and in FreeMind's maps, which have their longer texts
// and notes as XHTML; elements in XMind's.
class TopicReader : public XmlHandler {
public:
    TopicReader(Attributes& attributes, TextSink& text)
        : m_text(text)
        , m_head(attributes, HeadProperties)
    {
    }

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "head" && m_depth == 1)
            m_isInHead = true;
        ++m_depth;
        if (m_isInHead)
            m_head.startElement(name, tag);
        else if (name == "outline" || name == "node")
            appendTopic(tag[name == "node" ? "TEXT" : "text"], tag["_note"]);
        m_isText = !m_isInHead && (name == "title" || name == "p" || name == "plain" || m_isText);
    }
    void endElement(std::string_view name) override
    {
        --m_depth;
        if (m_isInHead)
            m_head.endElement(name);
        m_isInHead = m_isInHead && name != "head";
        if (name == "title" || name == "p" || name == "plain") {
            m_text.endLine();
            m_isText = false;
        }
    }
    void characters(std::string_view text) override
    {
        if (m_isInHead)
            m_head.characters(text);
        else if (m_isText)
            m_text.append(text);
    }
    bool isDone() const override { return m_text.isFull(); }

private:
    void appendTopic(std::string_view topic, std::string_view note)
    {
        m_text.appendLine(topic);
        if (!note.empty())
            m_text.appendLine(note);
    }

    TextSink& m_text;
    PropertyReader m_head;
    int m_depth = 0;
    bool m_isInHead = false;
    bool m_isText = false;
};

// What follows `text`, which begins behind a quotation mark, up to the closing one.
std::string_view jsonString(std::string_view text)
{
    std::size_t end = 0;
    while (end < text.size() && text[end] != '"')
        end += text[end] == '\\' ? 2 : 1;
    return text.substr(0, end);
}

// Newer XMind maps: the titles and plain notes of all topics, in the order of the file. The rest of the
// vocabulary does not matter here, so the text is searched and not parsed.
void readMap(std::string_view json, TextSink& text)
{
    constexpr std::string_view Keys[] = { "\"title\":\"", "\"content\":\"" };
    for (std::size_t at = json.find('"'); at != json.npos && !text.isFull(); at = json.find('"', at)) {
        std::string_view rest = json.substr(at);
        std::size_t length = 0;
        for (const std::string_view key : Keys)
            length = rest.starts_with(key) ? key.size() : length;
        if (length > 0) {
            const std::string_view found = jsonString(rest.substr(length));
            text.appendLine(stringByConvertingJSONToCharacters(String::fromUtf8(found)).utf8());
            at += length + found.size();
        }
        ++at;
    }
}

bool isSource(const std::string& path)
{
    constexpr std::size_t HeadSize = 64;
    const auto head = endsWithNoCase(path, ".mm") ? readFile(path, HeadSize) : std::nullopt;
    return head && !trimmed(*head).starts_with('<');
}

bool readSource(const std::string& path, TextSink& text)
{
    const auto bytes = readFile(path);
    return bytes && text.append(plainTextOfData(*bytes).text.view());
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    TextSink text(attributes);
    TopicReader reader(attributes, text);
    const auto package = ZipPackage::open(path);
    if (!package)
        return isSource(path) ? readSource(path, text) : parseXmlFile(path, reader, attributes);
    if (const auto json = package->read("content.json", MaximumJson)) {
        readMap(*json, text);
        return true;
    }
    return package->parseXml("content.xml", reader, attributes);
}

} // namespace caddis::bundles
