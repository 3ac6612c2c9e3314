#pragma once

#include "platform/movie/MovieTypes.h"

#include <optional>
#include <vector>

/// The boundary between the classes in this folder and the shared module `caddis-movie`, which holds the
/// libraries. Only our own types cross it.
namespace caddis::movie {

/// An opened movie or sound file.
class Reader {
public:
    virtual ~Reader() = default;

    /// Invalid when the file doesn't say.
    virtual Time duration() const = 0;
    /// Of the first video track; nil without one. A cover picture is no video track.
    virtual std::optional<Size> naturalSize() const = 0;
    virtual std::optional<Bitmap> frame(Time time) = 0;
    virtual std::optional<String> lyrics() const = 0;
    virtual std::vector<MetadataItem> commonMetadata() const = 0;
};

/// The module's entry `caddisOpenMovie`. Null: not a readable movie or sound file.
using OpenMovie = Reader*(const String& path);

} // namespace caddis::movie
