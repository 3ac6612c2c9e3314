#include "media/MovieFrames.h"

#include "platform/base/Exception.h"

#include <algorithm>
#include <cmath>

namespace caddis {

namespace {

constexpr double LatestPoster = 15; // Seconds.

std::shared_ptr<PlayerItem> itemWithFile(const String& path)
{
    if (!path.view().starts_with(u'/'))
        return nullptr;
    return std::make_shared<PlayerItem>(URL::fileURLWithPath(path));
}

} // namespace

inline namespace OstraAVAssetExtensions {

double movieDuration(const Asset& asset) { return asset.duration().seconds(); }

Size movieSize(const Asset& asset)
{
    const auto tracks = asset.videoTracks();
    return tracks.empty() ? Size() : tracks.front().naturalSize;
}

std::optional<Bitmap> frameImageAtTime(const Asset& asset, Time time) { return asset.copyImageAtTime(time); }

} // namespace OstraAVAssetExtensions

inline namespace OstraAVPlayerItemVideoOutputExtensions {

std::optional<Bitmap> frameImageAtTime(const PlayerItemVideoOutput& output, Time time)
{
    return output.copyPixelBufferForItemTime(time);
}

} // namespace OstraAVPlayerItemVideoOutputExtensions

inline namespace OstraAVPlayerItemExtensions {

std::optional<Bitmap> thumbnailImage(const PlayerItem& item)
{
    const double middle = std::clamp(movieDuration(item.asset()) * 0.5, 0.0, LatestPoster);
    auto image = frameImageAtTime(item, Time::withSeconds(std::floor(middle), 1));
    return image ? image : currentFrameImage(item);
}

std::optional<Bitmap> currentFrameImage(const PlayerItem& item)
{
    return frameImageAtTime(item, item.currentTime());
}

std::optional<Bitmap> frameImageAtTime(const PlayerItem& item, Time time)
{
    if (!item.outputs().empty()) {
        if (auto image = frameImageAtTime(item.outputs().front(), time))
            return image;
    }
    return frameImageAtTime(item.asset(), time);
}

void addVideoOutputWithPixelFormatType(PlayerItem& item, PixelFormatType type) { item.addOutput(type); }

MovieThumbnail thumbnailImageForItemWithFile(const String& path)
{
    MovieThumbnail result;
    guarded(u"thumbnailImageForItemWithFile:size:duration:lyrics:commonMetadata:", u"AVPlayerItem", [&] {
        const auto item = itemWithFile(path);
        if (!item)
            return;
        const Asset& asset = item->asset();
        result.image = thumbnailImage(*item);
        result.size = movieSize(asset);
        result.duration = movieDuration(asset);
        result.lyrics = asset.lyrics();
        auto metadata = asset.commonMetadata();
        if (!metadata.empty())
            result.commonMetadata = std::move(metadata);
    });
    return result;
}

std::optional<MovieDimensions> getSizeAndDurationAtPath(const String& path)
{
    return guarded(u"getSize:duration:atPath:", u"AVPlayerItem", [&]() -> std::optional<MovieDimensions> {
        const auto item = itemWithFile(path);
        if (!item)
            return std::nullopt;
        return MovieDimensions { movieSize(item->asset()), movieDuration(item->asset()) };
    });
}

} // namespace OstraAVPlayerItemExtensions

inline namespace OstraAVPlayerExtensions {

std::optional<Bitmap> thumbnailImage(const Player& player)
{
    return player.currentItem() ? thumbnailImage(*player.currentItem()) : std::nullopt;
}

std::optional<Bitmap> currentFrameImage(const Player& player)
{
    return player.currentItem() ? currentFrameImage(*player.currentItem()) : std::nullopt;
}

std::optional<Bitmap> frameImageAtTime(const Player& player, Time time)
{
    return player.currentItem() ? frameImageAtTime(*player.currentItem(), time) : std::nullopt;
}

bool isPlaying(const Player& player) { return player.rate() > 0; }

double movieTime(const Player& player) { return player.currentTime().seconds(); }

void setMovieTime(Player& player, double seconds) { player.seekToTime(Time::withSeconds(seconds, 1)); }

double movieDuration(const Player& player)
{
    return player.currentItem() ? movieDuration(player.currentItem()->asset()) : 0;
}

Size movieSize(const Player& player)
{
    return player.currentItem() ? movieSize(player.currentItem()->asset()) : Size();
}

} // namespace OstraAVPlayerExtensions

} // namespace caddis
