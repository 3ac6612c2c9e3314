#include "platform/movie/Asset.h"

#include "platform/modules/Module.h"
#include "platform/movie/MovieEngine.h"

#include <cmath>

namespace caddis {

namespace {

movie::Reader* open(const URL& url)
{
    static const Module module("caddis-movie");
    auto* const openMovie = module.entry<movie::OpenMovie>("caddisOpenMovie");
    const auto path = url.isFileURL() ? url.path() : std::nullopt;
    return openMovie && path ? openMovie(*path) : nullptr;
}

} // namespace

Time Time::withSeconds(double seconds, std::int32_t timescale)
{
    constexpr double Most = 9e18;
    const double value = std::floor(seconds * timescale);
    if (!(std::abs(value) < Most) || timescale <= 0)
        return {};
    return { static_cast<std::int64_t>(value), timescale, true };
}

double Time::seconds() const { return isValid ? static_cast<double>(value) / timescale : 0; }

Asset::Asset(const URL& url)
    : m_reader(open(url))
{
}

Asset::~Asset() = default;

Time Asset::duration() const { return m_reader ? m_reader->duration() : Time(); }

std::vector<VideoTrack> Asset::videoTracks() const
{
    const auto size = m_reader ? m_reader->naturalSize() : std::nullopt;
    return size ? std::vector<VideoTrack> { { *size } } : std::vector<VideoTrack>();
}

std::optional<Bitmap> Asset::copyImageAtTime(Time time) const
{
    return m_reader && time.isValid ? m_reader->frame(time) : std::nullopt;
}

std::optional<String> Asset::lyrics() const { return m_reader ? m_reader->lyrics() : std::nullopt; }

std::vector<MetadataItem> Asset::commonMetadata() const
{
    return m_reader ? m_reader->commonMetadata() : std::vector<MetadataItem>();
}

} // namespace caddis
