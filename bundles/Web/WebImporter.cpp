#include "bundles/Web/MhtmlFile.h"
#include "bundles/support/Importer.h"
#include "bundles/support/InputFile.h"
#include "bundles/support/PageText.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"
#include "markup/Entities.h"
#include "markup/Feed.h"
#include "markup/HtmlMetadata.h"
#include "markup/MarkupData.h"
#include "markup/TagStripping.h"
#include "markup/WebArchiveText.h"

namespace caddis::bundles {

namespace {

std::string withoutEntities(const std::optional<String>& text)
{
    return text ? stringByConvertingEntitiesToCharacters(*text).utf8() : std::string();
}

void setPage(const String& html, Attributes& attributes)
{
    attributes.setString("kMDItemTitle", normalizedHtmlTitle(html));
    attributes.setString("kMDItemDescription", withoutEntities(htmlMetaDescription(html)));
    attributes.setString("kMDItemCopyright", withoutEntities(htmlMetaCopyright(html)));
    attributes.setString("kMDItemIdentifier", htmlCanonicalURL(html));
    attributes.addString("kMDItemAuthors", withoutEntities(htmlMetaAuthor(html)));
    attributes.addParts("kMDItemKeywords", withoutEntities(htmlMetaKeywords(html)));
    attributes.addString(
        "kMDItemEncodingApplications", withoutEntities(htmlMetaAttributeWithName(html, u"generator")));
    attributes.setDate("kMDItemContentCreationDate", readDate(withoutEntities(htmlDate(html))));
}

void readPage(const String& html, Attributes& attributes)
{
    setPage(html, attributes);
    TextSink(attributes).append(plainTextOfPage(html).view());
}

void readFeed(const String& text, Attributes& attributes)
{
    attributes.setString("kMDItemTitle", normalizedHtmlTitle(text));
    TextSink sink(attributes);
    for (const Value& value : getItemsOfFeed(text)) {
        const auto* item = value.as<Dictionary>();
        if (!item || sink.isFull())
            continue;
        const auto field
            = [&](std::u16string_view key) { return item->stringForKey(key).value_or(String()); };
        sink.appendLine(withoutEntities(field(u"title")));
        const String content = field(u"content");
        sink.append(plainTextOfPage(content.isEmpty() ? field(u"description") : content).view());
        sink.endLine();
    }
}

// The texts of an XML vocabulary that is not known, and its title if it has one before anything else.
void readXml(const String& text, Attributes& attributes)
{
    attributes.setString("kMDItemTitle", normalizedHtmlTitle(text));
    constexpr std::u16string_view Hidden[] = { u"<style", u"<script" };
    TextSink(attributes)
        .append(
            trimmed(stringByConvertingEntitiesToCharacters(stripTags(stripTagBodies(text, Hidden))).utf8()));
}

// What saved pages hold goes to the host as HTML, which it makes plain by itself for this file name alone.
bool readSavedPage(std::string_view file, const std::string& path, Attributes& attributes)
{
    const auto page = readMhtml(file);
    if (!page)
        return false;
    const String html = stringWithMarkupData(
        Data::copyOf(page->bytes), String::fromUtf8(page->contentType).view(), NSStringEncoding::UTF8);
    setPage(html, attributes);
    attributes.setString("kMDItemIdentifier", page->location);
    if (endsWithNoCase(path, ".mht"))
        TextSink(attributes).append(html.view());
    else
        TextSink(attributes).append(plainTextOfPage(html).view());
    return true;
}

// The page's own properties, and the text of the frames too.
bool readWebArchive(const std::string& path, Attributes& attributes)
{
    const ArchiveText archive = searchableTextOfFile(String::fromUtf8(path));
    if (!archive.text)
        return false;
    if (archive.source)
        setPage(*archive.source, attributes);
    if (archive.baseURL)
        attributes.setString("kMDItemIdentifier", archive.baseURL->absoluteString());
    TextSink(attributes).append(archive.text->view());
    return true;
}

} // namespace

bool importFile(Attributes& attributes, std::string_view contentType, const std::string& path)
{
    if (contentType == "com.apple.webarchive")
        return readWebArchive(path, attributes);
    const auto bytes = readFile(path);
    if (!bytes)
        return false;
    if (contentType == "com.microsoft.word.mhtml")
        return readSavedPage(*bytes, path, attributes);
    const String text = markupTextOfData(*bytes, {}).text;
    if (contentType == "public.html" || contentType == "public.xhtml")
        readPage(text, attributes);
    else if (isFeed(text))
        readFeed(text, attributes);
    else
        readXml(text, attributes);
    return true;
}

} // namespace caddis::bundles
