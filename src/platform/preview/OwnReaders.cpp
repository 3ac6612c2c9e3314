#include "platform/preview/OwnReaders.h"

#include "platform/files/MappedFile.h"
#include "platform/image/AreaAverage.h"
#include "platform/image/Fit.h"
#include "platform/movie/Asset.h"
#include "platform/preview/Picture.h"

#include <algorithm>

namespace caddis {

namespace {

using namespace std::string_view_literals;

struct Signature {
    std::size_t place;
    std::string_view bytes;
};

// Containers of movies and sound; it is dear to ask the libraries about anything else.
constexpr Signature mediaSignatures[] = {
    { 4, "ftyp"sv }, // ISO 14496-12
    { 4, "moov"sv }, // QuickTime without a brand
    { 4, "mdat"sv },
    { 4, "wide"sv },
    { 0, "\x1A\x45\xDF\xA3"sv }, // Matroska, WebM
    { 8, "AVI "sv },
    { 8, "WAVE"sv },
    { 8, "AIFF"sv },
    { 8, "AIFC"sv },
    { 0, "OggS"sv },
    { 0, "fLaC"sv },
    { 0, "ID3"sv },
    { 0, "\0\0\1\xBA"sv }, // MPEG program stream
    { 0, "\0\0\1\xB3"sv }, // MPEG video
    { 0, "FLV\1"sv },
    { 0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv }, // ASF
    { 0, "MAC "sv }, // Monkey's Audio
    { 0, "wvpk"sv },
    { 0, "caff"sv },
};
constexpr std::size_t TransportPacket = 188; // Bytes; each begins with "G".
constexpr double LatestFrame = 15; // Seconds.

bool isMedia(std::string_view bytes)
{
    const auto isAt = [&](const Signature& signature) {
        return bytes.size() > signature.place && bytes.substr(signature.place).starts_with(signature.bytes);
    };
    const bool isTransportStream = bytes.size() > 2 * TransportPacket && bytes[0] == 'G'
        && bytes[TransportPacket] == 'G' && bytes[2 * TransportPacket] == 'G';
    return isTransportStream || std::ranges::any_of(mediaSignatures, isAt);
}

Bitmap shrunk(const Bitmap& bitmap, Size maximum)
{
    const Size size = fitted(maximum, bitmap.size());
    if (size == bitmap.size())
        return bitmap;
    const auto wide = static_cast<std::uint32_t>(size.width);
    const auto high = static_cast<std::uint32_t>(size.height);
    AreaAverage average(bitmap.pixelsWide, bitmap.pixelsHigh, wide, high);
    for (std::size_t y = 0; y < bitmap.pixelsHigh; ++y)
        average.addRow(bitmap.row(y));
    return { wide, high, bitmap.hasAlpha, Data::adopt(average.take()) };
}

std::optional<Bitmap> cover(const Asset& asset, Size maximum)
{
    for (const MetadataItem& item : asset.commonMetadata()) {
        if (const auto* const data = item.value.as<Data>(); data && item.commonKey == u"artwork")
            return ownPicture(*data, maximum);
    }
    return std::nullopt;
}

std::optional<Bitmap> posterOrCover(const String& path, Size maximum)
{
    const Asset asset(URL::fileURLWithPath(path));
    if (asset.videoTracks().empty())
        return cover(asset, maximum);
    const double middle = std::clamp(asset.duration().seconds() / 2, 0.0, LatestFrame);
    auto frame = asset.copyImageAtTime(Time::withSeconds(middle, 1));
    if (!frame)
        frame = asset.copyImageAtTime(Time::zero());
    return frame ? std::optional(shrunk(*frame, maximum)) : std::nullopt;
}

} // namespace

std::optional<Bitmap> ownPicture(const Data& data, Size maximum)
{
    const auto picture = Picture::initWithData(data);
    return picture ? picture->bitmapWithPixelSize(fitted(maximum, picture->pixelSize())) : std::nullopt;
}

std::optional<Bitmap> ownPicture(const String& path, Size maximum)
{
    const auto data = MappedFile::open(path);
    if (!data)
        return std::nullopt;
    if (auto bitmap = ownPicture(*data, maximum))
        return bitmap;
    return isMedia(data->chars()) ? posterOrCover(path, maximum) : std::nullopt;
}

} // namespace caddis
