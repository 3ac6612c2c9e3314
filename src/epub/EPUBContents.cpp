// What the rest of the system wants from a book: its table of contents, its first page and cover, its text,
// and one HTML document of all of it. Each document of the spine is read, used and dropped before the next
// one.

#include "epub/EPUBParser.h"

#include "epub/EmbedHandler.h"
#include "epub/NCXParser.h"
#include "epub/NavigationTree.h"
#include "foundation/URLResolution.h"
#include "html/HTMLImport.h"
#include "markup/Entities.h"
#include "markup/Html2Text.h"
#include "markup/LinkTitles.h"
#include "markup/MarkupData.h"
#include "platform/base/LeftOut.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {

namespace {

// More than any book has: what hostile ones go on with is left out.
constexpr std::size_t MostTextUnits = std::size_t(64) << 20;
constexpr std::uint64_t MostReadBytes = std::uint64_t(128) << 20;
constexpr std::uint64_t LeastChargedBytes = 4096; // A million empty documents take their time, too.

// Of one document: each byte costs up to six in memory until its text is made. A thick novel has two million.
constexpr std::size_t MostMarkupBytes = std::size_t(16) << 20;

std::optional<String> markupText(std::optional<Data> data)
{
    if (!data)
        return std::nullopt;
    if (data->size() > MostMarkupBytes) {
        noteLeftOut(u"what a document of the book has beyond 16 MiB");
        data = data->slice({ 0, MostMarkupBytes });
    }
    return stringWithMarkupData(*data, NSStringEncoding::UTF8);
}

} // namespace

// A spine may name one document a million times, so what is read for one result has a limit.
std::optional<String> EPUBParser::documentText(const String& path, std::uint64_t& allowance)
{
    if (allowance == 0) {
        noteLeftOut(u"documents of the book beyond 128 MiB");
        return std::nullopt;
    }
    const auto data = dataForNamedFile(path);
    allowance -= std::min(allowance, std::max<std::uint64_t>(data ? data->size() : 0, LeastChargedBytes));
    return markupText(data);
}

const std::optional<Array>& EPUBParser::rootChildren()
{
    if (!m_children)
        m_children = makeRootChildren();
    return *m_children;
}

std::optional<Array> EPUBParser::makeRootChildren()
{
    std::optional<Array> ncx;
    if (const auto data = m_ncxFile ? dataForNamedFile(*m_ncxFile) : std::nullopt)
        ncx = NCXParser(*data).children();
    if (countChildren(ncx.value_or(Array())) >= m_spines.size())
        return ncx;
    std::uint64_t allowance = MostReadBytes;
    const auto base = tableOfContentsURL();
    const auto titles = linkTitles(base, allowance);
    const auto titleOf = [&](const String& content) {
        const auto url = base ? URLRelativeTo(*base, content) : std::nullopt;
        const auto title = url ? titles.find(url->absoluteString()) : titles.end();
        return title != titles.end() ? title->second : titleOfDocument(content, allowance);
    };
    return treeOfSpine(ncx.value_or(Array()), spineContents(), titleOf);
}

// The members of the spine relative to the OPF folder; ids that the manifest lacks are passed over.
std::vector<String> EPUBParser::spineContents() const
{
    std::vector<String> contents;
    for (const String& id : m_spines) {
        const auto item = m_items.find(id);
        if (item != m_items.end())
            contents.push_back(item->second);
    }
    return contents;
}

// Where the table of contents would lie in an unpacked copy; nothing is unpacked.
std::optional<URL> EPUBParser::tableOfContentsURL() const
{
    const auto folder = m_tocFile ? epubFolder() : std::nullopt;
    return folder ? std::optional(URL::fileURLWithPath(stringByAppendingPathComponent(*folder, *m_tocFile)))
                  : std::nullopt;
}

std::unordered_map<String, String> EPUBParser::linkTitles(
    const std::optional<URL>& base, std::uint64_t& allowance)
{
    const auto html = base ? documentText(*m_tocFile, allowance) : std::nullopt;
    return html ? getLinkTitles(*html, *base) : std::unordered_map<String, String>();
}

// The first line of its text, else its file's name.
String EPUBParser::titleOfDocument(const String& content, std::uint64_t& allowance)
{
    const auto html = documentText(pathInOPFFolder(content), allowance);
    const String text = html ? stringByConvertingHtml2PlainTextNonUmlauted(
                            *html, false, { .reformat = true, .onlyBody = true, .googleTags = true })
                                   .text
                             : String();
    const String title = stringByTrimmingWhiteSpaces(firstLine(text));
    return title.isEmpty() ? stringByDeletingPathExtension(lastPathComponent(content)) : title;
}

const std::optional<String>& EPUBParser::firstPage()
{
    if (m_firstPage || (!m_ncxFile && !m_tocFile) || hasDRM() || !rootChildren() || rootChildren()->empty())
        return m_firstPage;
    const auto content = rootChildren()->front().as<Dictionary>()->stringForKey(u"content");
    if (content && unzippedEPUB())
        m_firstPage = stringByAppendingPathComponent(*unzippedEPUB(), pathInOPFFolder(*content));
    return m_firstPage;
}

std::optional<Image> EPUBParser::cover()
{
    const auto data = m_coverPath ? dataForNamedFile(pathInOPFFolder(*m_coverPath)) : std::nullopt;
    return data ? Image::initWithData(*data) : std::nullopt;
}

std::optional<Image> EPUBParser::coverForFile(const std::optional<String>& path)
{
    return path ? EPUBParser(*path).cover() : std::nullopt;
}

std::optional<String> EPUBParser::textContents()
{
    if (hasDRM())
        return std::nullopt;
    MutableString text;
    std::uint64_t allowance = MostReadBytes;
    for (const String& content : spineContents()) {
        if (text.length() > MostTextUnits) {
            noteLeftOut(u"a book's text beyond 64 million characters");
            break;
        }
        const auto html = documentText(pathInOPFFolder(content), allowance);
        if (!html)
            continue;
        text.append(stringByConvertingHtml2PlainTextNonUmlauted(
            *html, false, { .onlyBody = true, .googleTags = true })
                        .text);
        text.append(u'\n');
    }
    return std::move(text).take();
}

std::optional<String> EPUBParser::htmlContents()
{
    if (hasDRM())
        return std::nullopt;
    MutableString html;
    html.append(u"<html>\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=UTF-8\"/>\n");
    const auto folder = unzippedEPUB() ? FileSystem::canonicalPath(*m_epubFolder) : std::nullopt;
    std::size_t embeddedBytes = 0;
    std::uint64_t allowance = MostReadBytes;
    bool notFirst = false;
    for (const String& content : folder ? spineContents() : std::vector<String>()) {
        const auto text = documentText(pathInOPFFolder(content), allowance);
        if (!text)
            continue;
        const String path = stringByAppendingPathComponent(*folder, pathInOPFFolder(content));
        const URL base = URL::fileURLWithPath(path);
        EmbedHandler handler { base, *folder, embeddedBytes, MutableString(text->length()),
            stringByConvertingCharactersToStandardEntities(lastPathComponent(path)), notFirst };
        parseXmlWithHandler(*text, handler);
        if (notFirst)
            html.append(u"<body>\n").append(handler.output.view()).append(u"\n</body>");
        else
            html.append(handler.output.view());
        notFirst = true;
    }
    html.append(u"</html>");
    return std::move(html).take();
}

std::optional<AttributedString> EPUBParser::richTextContents()
{
    const auto html = htmlContents();
    if (!html || html->isEmpty())
        return std::nullopt;
    AttributedString text = attributedStringWithHTML(Data::adopt(html->utf8()));
    text.documentAttributes = {};
    return text;
}

} // namespace caddis
