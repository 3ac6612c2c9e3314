#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <optional>
#include <vector>

/// Kinds of picture by extension, HFS type ("'PDF '", with its quotes), MIME type and content.
namespace caddis {

inline namespace NSBitmapImageRepOstraExtensions {

/// "tiff", "bmp", "gif", "jpg", "png", "jp2" for 0 to 5; nil for others.
std::optional<String> pathExtensionForBitmapImageFileType(std::int64_t type);

} // namespace NSBitmapImageRepOstraExtensions

inline namespace NSImageOstraExtensions {

/// The extension for an HFS type or a MIME type. Nil: an unknown HFS type, a MIME type without a usable
/// subtype. Same: any other text without exactly one slash.
std::optional<String> pathExtensionForType(const String& type);

/// The extensions of pictures that can be read, in lower and upper case, and "jpe", "ps", "eps", "ai" in
/// both.
const std::vector<String>& ImageFileTypes();
/// By extension, whatever its case, or by HFS type.
bool isImageExtension(const String& extension, const String& type);
bool isImageFile(const String& path);

/// The extension by the first signature of a list that stands anywhere in the first 1024 bytes.
std::optional<String> pathExtensionForData(const Data& data);

bool isRealPDFExtension(const String& extension, const String& type);
bool isRealPDFFile(const String& path);
bool isPDFExtension(const String& extension, const String& type);
bool isPDFFile(const String& path);
bool isPostScriptExtension(const String& extension);
bool isPostScriptFile(const String& path);
bool isWebImageExtension(const String& extension);
std::vector<String> PDFFileTypes();

std::vector<String> PDFBundleTypes();
bool isPDFBundleExtension(const String& extension);
bool isPDFBundle(const String& path);
bool isSkimPDFBundle(const String& path);
bool isLocalizedPDFBundle(const String& path);
/// The PDF file inside a PDF bundle. Same: a path that is no bundle, and a ".pdfd" without a PDF. Nil: a
/// ".lpdf" without one.
std::optional<String> pathToPDF(const String& path);

} // namespace NSImageOstraExtensions

} // namespace caddis
