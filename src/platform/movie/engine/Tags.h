#pragma once

#include "platform/movie/MovieTypes.h"
#include "platform/movie/engine/FFmpeg.h"

#include <optional>
#include <vector>

namespace caddis::movie {

/// What the file's tags say, whatever its container calls them.
class Tags {
public:
    explicit Tags(const AVFormatContext& format)
        : m_format(format)
    {
    }

    std::optional<String> lyrics() const;
    std::vector<MetadataItem> common() const;

private:
    std::vector<const AVDictionary*> dictionaries() const;
    std::optional<String> text(const char* name) const;
    std::optional<Data> artwork() const;

    const AVFormatContext& m_format;
};

} // namespace caddis::movie
