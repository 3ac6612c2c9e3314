#pragma once

#include "platform/base/String.h"

/// Paths with colons, which begin at a disk: "Macintosh HD:Users:me:a.txt". The one disk is named as the
/// platform names its own; a colon in a name and a slash in a name change places.
namespace caddis {

inline constexpr std::u16string_view StartupDiskName = u"Macintosh HD";

/// An absolute path with slashes as one with colons.
String hfsPath(const String& posixPath);
/// A path with colons as one with slashes. A disk other than the startup disk lies under /Volumes.
String posixPath(const String& hfsPath);

} // namespace caddis
