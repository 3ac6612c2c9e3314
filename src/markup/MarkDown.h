#pragma once

#include "platform/base/String.h"

#include <span>

/// Markdown files and text bundles by their names; case does not matter. A text bundle is a folder
/// "name.textbundle" with a text in it, or that folder zipped as "name.textpack".
namespace caddis {
inline namespace MarkDown {

/// Each extension in lower case and right behind it in upper case.
std::span<const std::u16string_view> MarkDownFileTypes();
std::span<const std::u16string_view> TextBundleFileTypes();

bool isMarkDownExtension(std::u16string_view extension);
bool isTextBundleExtension(std::u16string_view extension);

bool isMarkDownFile(const String& path);
bool isTextBundleFile(const String& path);

} // namespace MarkDown
} // namespace caddis
