#include "markup/WebArchiveText.h"

#include "foundation/MIMETypes.h"
#include "foundation/ObjectExtensions.h"
#include "markup/Html2Text.h"
#include "markup/MarkupData.h"
#include "platform/base/MutableString.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr std::u16string_view fileTypes[] = { u"webarchive", u"WEBARCHIVE" };

std::optional<WebArchive> archiveOfFile(const String& path)
{
    const auto data = FileSystem::contentsOfFile(path);
    return data && !data->isEmpty() ? WebArchive::initWithData(*data) : std::nullopt;
}

} // namespace

inline namespace WebKitAdditions {

bool isWebArchiveExtension(const std::optional<String>& extension)
{
    return extension
        && std::ranges::equal(extension->view(), fileTypes[0],
            [](char16_t left, char16_t right) { return left == right || left == (right & ~0x20); });
}

bool isWebArchiveFile(const String& path) { return isWebArchiveExtension(pathExtension(path)); }

std::span<const std::u16string_view> webArchiveFileTypes() { return fileTypes; }

std::optional<String> documentSource(const WebResource& resource)
{
    if (!isMarkupMIMEType(resource.MIMEType()))
        return std::nullopt;
    if (safeRespondsToSelector(resource, u"_stringValue")) {
        const String text = resource._stringValue();
        if (!text.isEmpty())
            return text;
    }
    return stringWithMarkupData(resource.data(), resource.textEncodingName(), NSStringEncoding::ISOLatin1,
        resource.url().absoluteString());
}

std::optional<String> documentSource(const WebArchive& archive)
{
    return documentSource(archive.mainResource());
}

const URL& baseURL(const WebArchive& archive) { return archive.mainResource().url(); }

DocumentSource documentSourceOfFile(const String& path)
{
    const auto archive = archiveOfFile(path);
    return archive ? DocumentSource { documentSource(*archive), baseURL(*archive) } : DocumentSource();
}

const WebResource* subresourceForURL(const WebArchive& archive, const URL& url)
{
    if (baseURL(archive) == url)
        return &archive.mainResource();
    const auto found = std::ranges::find(archive.subresources(), url, &WebResource::url);
    if (found != archive.subresources().end())
        return &*found;
    for (const WebArchive& subframe : archive.subframeArchives()) {
        if (const WebResource* resource = subresourceForURL(subframe, url))
            return resource;
    }
    return nullptr;
}

const WebArchive* subArchiveForURL(const WebArchive& archive, const std::optional<URL>& url)
{
    if (!url)
        return nullptr;
    if (baseURL(archive) == *url)
        return &archive;
    for (const WebArchive& subframe : archive.subframeArchives()) {
        if (const WebArchive* found = subArchiveForURL(subframe, url))
            return found;
    }
    return nullptr;
}

} // namespace WebKitAdditions

inline namespace SearchableText {

namespace {

void appendSearchableText(const WebArchive& archive, MutableString& text)
{
    if (const auto source = documentSource(archive)) {
        const String plain = stringByConvertingHtml2PlainTextNonUmlauted(
            *source, false, { .reformat = true, .onlyBody = true })
                                 .text;
        // The converter hands the markup itself back where it finds no text.
        if (!plain.isEmpty() && !plain.isIdenticalTo(*source))
            text.append(u"\n\n").append(plain);
    }
    for (const WebArchive& subframe : archive.subframeArchives())
        appendSearchableText(subframe, text);
}

} // namespace

String searchableText(const WebArchive& archive)
{
    MutableString text;
    appendSearchableText(archive, text);
    return std::move(text).take();
}

ArchiveText searchableTextAndSource(const WebArchive& archive)
{
    return { searchableText(archive), baseURL(archive), documentSource(archive) };
}

ArchiveText searchableTextOfFile(const std::optional<String>& path)
{
    const auto archive = path ? archiveOfFile(*path) : std::nullopt;
    return archive ? searchableTextAndSource(*archive) : ArchiveText();
}

} // namespace SearchableText
} // namespace caddis
