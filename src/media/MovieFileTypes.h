#pragma once

#include "platform/base/String.h"

#include <vector>

/// Which files are movies or sound. The tests answer different questions: what can be opened, and what the
/// list of movie types names; they disagree on some types.
namespace caddis {

inline namespace OstraAVPlayerItemExtensions {

/// 150 extensions and HFS type codes, the latter in quotes: "mov", "'MooV'".
const std::vector<String>& QuickTimeFileTypes();

/// The extension in any letter case; the HFS type, in quotes, exactly.
bool isQuickTimeExtension(const String& extension, const String& type);
bool isQuickTimeFile(const String& path);

/// Whether files of this name are opened as movies. It asks for the name alone.
bool supportsFile(const String& path);

} // namespace OstraAVPlayerItemExtensions

} // namespace caddis
