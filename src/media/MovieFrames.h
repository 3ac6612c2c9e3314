#pragma once

#include "platform/movie/Player.h"

/// What a movie shows and says of itself. Nothing here throws: a movie that can't be read has no frame, no
/// size and no duration.
namespace caddis {

inline namespace OstraAVAssetExtensions {

/// Seconds; 0 when unknown.
double movieDuration(const Asset& asset);
/// Of the first video track; the zero size without one.
Size movieSize(const Asset& asset);
/// The exact frame at the time. It takes as long as decoding from the key frame before it takes, within the
/// asset's patience.
std::optional<Bitmap> frameImageAtTime(const Asset& asset, Time time);

} // namespace OstraAVAssetExtensions

inline namespace OstraAVPlayerItemVideoOutputExtensions {

std::optional<Bitmap> frameImageAtTime(const PlayerItemVideoOutput& output, Time time);

} // namespace OstraAVPlayerItemVideoOutputExtensions

/// A movie's picture and what is told with it. All of it is empty when the file can't be read.
struct MovieThumbnail {
    std::optional<Bitmap> image;
    Size size;
    double duration = 0; ///< seconds
    std::optional<String> lyrics;
    std::optional<std::vector<MetadataItem>> commonMetadata; ///< nil when there is none
};

struct MovieDimensions {
    Size size;
    double duration = 0; ///< seconds
};

inline namespace OstraAVPlayerItemExtensions {

/// The poster frame: that at half the duration, rounded down to whole seconds and never later than 15 s;
/// failing that, the current one.
std::optional<Bitmap> thumbnailImage(const PlayerItem& item);
std::optional<Bitmap> currentFrameImage(const PlayerItem& item);
/// From the item's first video output, failing that from its asset.
std::optional<Bitmap> frameImageAtTime(const PlayerItem& item, Time time);
void addVideoOutputWithPixelFormatType(PlayerItem& item, PixelFormatType type);

/// The poster frame of a movie file. What was obtained before an exception (logged) is returned.
MovieThumbnail thumbnailImageForItemWithFile(const String& path);
/// Nil: an empty path, no absolute one, or an exception (logged).
std::optional<MovieDimensions> getSizeAndDurationAtPath(const String& path);

} // namespace OstraAVPlayerItemExtensions

inline namespace OstraAVPlayerExtensions {

// Each is that of the current item; nothing, or 0, without one.
std::optional<Bitmap> thumbnailImage(const Player& player);
std::optional<Bitmap> currentFrameImage(const Player& player);
std::optional<Bitmap> frameImageAtTime(const Player& player, Time time);
bool isPlaying(const Player& player);
/// Seconds.
double movieTime(const Player& player);
/// To whole seconds.
void setMovieTime(Player& player, double seconds);
double movieDuration(const Player& player);
Size movieSize(const Player& player);

} // namespace OstraAVPlayerExtensions

} // namespace caddis
