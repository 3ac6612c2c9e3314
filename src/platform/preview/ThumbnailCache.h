#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <optional>
#include <string>

/// The thumbnails that the desktop's programs share: Thumbnail Managing Standard 0.9. It is only read: what
/// the helper is asked for is nobody else's business.
namespace caddis {

/// The PNG file that others have made of the file at `path`, from the smallest folder of `cache` whose
/// pictures are at least `side` pixels long, or the next one; beyond the largest one, that one. Nil: none, or
/// one of an older state of the file.
std::optional<Data> cachedThumbnail(const String& cache, const String& path, double side);

/// A PNG file's text under a keyword (PNG 1.2, tEXt); nil when it has none.
std::optional<std::string> textInPNG(const Data& png, std::string_view keyword);

} // namespace caddis
