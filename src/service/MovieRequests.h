#pragma once

#include "platform/base/Value.h"

/// The requests about movies and sound.
namespace caddis {

class FileArgument;

/// "Duration" (seconds, single precision) and "Size" always; "Thumbnail" (the poster frame as TIFF), "Lyrics"
/// and "Metadata" (common key to value, the last of several counting) when the file has any. A file that
/// can't be opened as a movie has the duration 0 and the zero size. Access to the file ends before the reply
/// is made.
Dictionary posterImageForMovie(FileArgument file);

} // namespace caddis
