#pragma once

#include "platform/web/WebArchive.h"

#include <optional>
#include <span>

/// What is asked of saved pages: their markup, their text, and the resource behind a URL.
namespace caddis {
inline namespace WebKitAdditions {

/// Whether the extension is "webarchive" in any case.
bool isWebArchiveExtension(const std::optional<String>& extension);
bool isWebArchiveFile(const String& path);
std::span<const std::u16string_view> webArchiveFileTypes();

/// The resource's data as text; nil unless its type is HTML or XML. Its encoding is the one that the archive
/// names, failing that what the markup itself says, failing that ISO Latin 1.
std::optional<String> documentSource(const WebResource& resource);

/// The main resource's, and its URL.
std::optional<String> documentSource(const WebArchive& archive);
const URL& baseURL(const WebArchive& archive);

struct DocumentSource {
    std::optional<String> source;
    std::optional<URL> baseURL;
};
/// Both nil for a file that can't be read, holds nothing, or is no archive.
DocumentSource documentSourceOfFile(const String& path);

/// The main resource, a subresource, or one of the subframe archives', in this order; null for none.
const WebResource* subresourceForURL(const WebArchive& archive, const URL& url);
/// The archive, or one inside it, whose main resource has the URL; null for none.
const WebArchive* subArchiveForURL(const WebArchive& archive, const std::optional<URL>& url);

} // namespace WebKitAdditions

inline namespace SearchableText {

/// The plain text of the page and then of its frames, in order; two line feeds stand before each text that
/// there is. Empty where there is none.
String searchableText(const WebArchive& archive);

struct ArchiveText {
    std::optional<String> text;
    std::optional<URL> baseURL;
    std::optional<String> source;
};
/// The text and the main resource's markup.
ArchiveText searchableTextAndSource(const WebArchive& archive);
/// All nil for a file that can't be read, holds nothing, or is no archive.
ArchiveText searchableTextOfFile(const std::optional<String>& path);

} // namespace SearchableText
} // namespace caddis
