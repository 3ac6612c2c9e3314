#pragma once

#include "Command.h"
#include "platform/image/Bitmap.h"

namespace caddis::tool {

/// The picture as a file of the kind that the name's extension says: PNG, JPEG or BMP, else TIFF. False, and
/// said why on standard error: it can't be written.
bool writePicture(const Bitmap& picture, const std::optional<std::string>& file);
/// The same of TIFF data.
bool writePicture(const Data& tiff, const std::optional<std::string>& file);

/// Where the picture of `file` goes: -o itself, or in the folder that it is the file's name with ".png". Nil
/// without -o.
std::optional<std::string> pictureFile(const Invocation& invocation, const std::string& file);

/// Several pictures need a folder to go to; false, and said so, when -o names none.
bool hasPlaceForAll(const Invocation& invocation);

} // namespace caddis::tool
