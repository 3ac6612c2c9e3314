#include "epub/EmbedHandler.h"

#include "foundation/Base64.h"
#include "foundation/FileExtensions.h"
#include "foundation/MIMETypes.h"
#include "foundation/URLResolution.h"
#include "markup/Entities.h"
#include "markup/StringURL.h"
#include "markup/TagAttributes.h"
#include "platform/base/Format.h"
#include "platform/base/LeftOut.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/unicode/PlainText.h"
#include "text/StringUtilities.h"

namespace caddis {

namespace {

void appendReplacing(MutableString& out, std::u16string_view text, std::u16string_view part, const String& by)
{
    for (std::size_t found = text.find(part); found != text.npos; found = text.find(part)) {
        out.append(text.substr(0, found)).append(by);
        text.remove_prefix(found + part.size());
    }
    out.append(text);
}

} // namespace

Scan EmbedHandler::operator()(const TagEvent& event)
{
    const bool isBody = event.nameIs("BODY");
    if (notFirst ? isBody : event.nameIs("HTML")) {
        copying = event.isStartTag();
        return Scan::Continue;
    }
    if (!copying)
        return Scan::Continue;
    output.append(event.units(event.text));
    if (event.nameIs("IMG"))
        embedImage(event);
    else if (event.nameIs("A"))
        rewriteLink(event);
    else if (event.nameIs("LINK"))
        embedStyleSheet(event);
    else
        copyTag(event);
    // Kept on purpose: only the first document's body tag comes here, so only it gets an anchor.
    if (isBody && anchorName) {
        output.append(format(u"<a name=\"%@\"/>\n", *anchorName));
        anchorName.reset();
    }
    return Scan::Continue;
}

void EmbedHandler::copyTag(const TagEvent& event) { output.append(event.units(event.tag)); }

// A picture that the book lacks, or that is empty, is dropped.
void EmbedHandler::embedImage(const TagEvent& event)
{
    const auto url = fileURLOfAttribute(event, "SRC");
    if (!url)
        return copyTag(event);
    const auto data = contentsOfURL(*url);
    if (!data || data->isEmpty())
        return;
    const String type
        = MIMETypeForExtension(pathExtension(*url->path())).value_or(u"application/octet-stream"_s);
    const String source = format(u"data:%@;base64,%@", type, base64EncodedString(*data));
    const std::u16string_view tag = event.units(event.tag);
    appendReplacing(output, tag, *attributeOfTagCharacters(tag, "SRC"), source);
}

void EmbedHandler::rewriteLink(const TagEvent& event)
{
    const auto url = fileURLOfAttribute(event, "HREF");
    const auto path = url ? url->path() : std::nullopt;
    if (!path)
        return copyTag(event);
    const String name = stringByConvertingCharactersToStandardEntities(lastPathComponent(*path));
    output.append(format(u"<a href=\"#%@\">\n", name));
}

void EmbedHandler::embedStyleSheet(const TagEvent& event)
{
    const auto relation = attributeOfTagCharacters(event.units(event.tag), "REL");
    const bool isStyleSheet = relation && isEqualNoCase(*relation, u"stylesheet");
    const auto url = isStyleSheet ? fileURLOfAttribute(event, "HREF") : std::nullopt;
    if (!url)
        return copyTag(event);
    if (const auto data = contentsOfURL(*url))
        output.append(format(u"<style><!--\n%@\n--></style>\n", plainTextOfData(data->chars()).text));
}

// Nil when the attribute is missing, or means no file beside the document.
std::optional<URL> EmbedHandler::fileURLOfAttribute(const TagEvent& event, UpperAscii name) const
{
    const auto value = attributeOfTagCharacters(event.units(event.tag), name);
    const auto reference = value ? normalizedStringURL(*value) : std::nullopt;
    const auto url = reference ? URLRelativeTo(baseURL, *reference) : std::nullopt;
    return url && url->isFileURL() ? url : std::nullopt;
}

std::optional<Data> EmbedHandler::contentsOfURL(const URL& url)
{
    const auto name = url.path();
    const auto path = name ? FileSystem::canonicalPath(*name) : std::nullopt;
    if (!path || !pathIsInDirectory(*path, bookFolder))
        return std::nullopt;
    if (FileSystem::sizeOfFile(*path) > MostEmbeddedBytes - embeddedBytes) {
        noteLeftOut(u"pictures of the book beyond 256 MiB");
        return std::nullopt;
    }
    auto data = FileSystem::contentsOfFile(*path);
    embeddedBytes += data ? data->size() : 0;
    return data;
}

} // namespace caddis
