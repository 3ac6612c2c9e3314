#pragma once

#include "platform/base/URL.h"
#include "platform/movie/MovieTypes.h"

#include <memory>
#include <optional>
#include <vector>

namespace caddis {

namespace movie {
class Reader;
}

/// One track that shows pictures.
struct VideoTrack {
    Size naturalSize; ///< pixels, not rotated, stretched to square ones
};

/// What a movie or sound file is, without playing it.
///
/// The libraries behind it are a shared module opened with the first asset; without it, and for a file that
/// is no movie, every answer is the empty one. Files are read by this process alone: an asset never follows a
/// reference into another file or onto the network. Used by one thread at a time.
class Asset {
public:
    explicit Asset(const URL& url);
    Asset(const Asset&) = delete;
    Asset& operator=(const Asset&) = delete;
    ~Asset();

    /// Invalid when unknown.
    Time duration() const;
    /// Cover pictures don't count. At most the first one is listed.
    std::vector<VideoTrack> videoTracks() const;

    /// The very frame that is shown at `time`: the last one that begins at or before it; before the first
    /// frame, the first. Nil: no video track, or nothing could be decoded within 9 seconds (counted over all
    /// calls since the last that gave a frame, opening the file included).
    std::optional<Bitmap> copyImageAtTime(Time time) const;

    std::optional<String> lyrics() const;
    /// Texts, but "artwork" is the bytes of an image file.
    std::vector<MetadataItem> commonMetadata() const;

private:
    std::unique_ptr<movie::Reader> m_reader;
};

} // namespace caddis
