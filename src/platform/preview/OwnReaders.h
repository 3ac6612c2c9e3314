#pragma once

#include "platform/image/Bitmap.h"

#include <optional>

/// Documents that need nobody else to be shown.
namespace caddis {

/// A file of a kind that is read here: a picture, a page, a movie's frame, the cover in a sound file; at most
/// as large as `maximum`. Only the bytes tell what it is.
std::optional<Bitmap> ownPicture(const String& path, Size maximum);

/// The same of bytes: pictures and pages only.
std::optional<Bitmap> ownPicture(const Data& data, Size maximum);

} // namespace caddis
