#include "platform/preview/OwnReaders.h"

#include "platform/files/MappedFile.h"
#include "platform/image/Fit.h"
#include "platform/image/Image.h"
#include "platform/movie/Asset.h"

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

constexpr std::chrono::seconds DrawingTimeout { 8 };

Bitmap shrunk(const Bitmap& bitmap, Size size)
{
    if (size == bitmap.size())
        return bitmap;
    return resampled(bitmap, { 0, 0, bitmap.pixelsWide, bitmap.pixelsHigh },
        static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height),
        ImageInterpolation::High);
}

std::optional<Bitmap> drawn(const PDFImageRep& page, Size maximum)
{
    const Size size = fitted(maximum, page.size());
    if (!(size.width >= 1) || !(size.height >= 1))
        return std::nullopt;
    const auto raster = page.raster({ .pixelsWide = static_cast<std::uint32_t>(size.width),
        .pixelsHigh = static_cast<std::uint32_t>(size.height),
        .deadline = std::chrono::steady_clock::now() + DrawingTimeout });
    return raster ? std::optional(Bitmap { raster->pixelsWide, raster->pixelsHigh, false, raster->pixels })
                  : std::nullopt;
}

std::optional<Bitmap> drawn(const EPSImageRep& program, Size maximum)
{
    const auto page = program.initializePDFImageRep();
    return page ? drawn(*page, maximum) : std::nullopt;
}

std::optional<Bitmap> drawn(const BitmapImageRep& picture, Size maximum)
{
    const Size pixels { double(picture.pixelsWide()), double(picture.pixelsHigh()) };
    const Size size = fitted(maximum, pixels);
    const auto bitmap = picture.bitmapOfAtLeast(size);
    return bitmap ? std::optional(shrunk(*bitmap, size)) : std::nullopt;
}

std::optional<Bitmap> drawn(const PICTImageRep& picture, Size maximum)
{
    return drawn(picture.picture, maximum);
}

std::optional<Bitmap> drawn(const IconImageRep& icon, Size maximum) { return drawn(icon.picture, maximum); }

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
    return frame ? std::optional(shrunk(*frame, fitted(maximum, frame->size()))) : std::nullopt;
}

} // namespace

std::optional<Bitmap> ownPicture(const Data& data, Size maximum)
{
    const auto image = Image::initWithData(data);
    const ImageRep* const best
        = image ? image->bestRepresentationForRect({ 0, 0, maximum.width, maximum.height }) : nullptr;
    return best ? std::visit([&](const auto& rep) { return drawn(rep, maximum); }, *best) : std::nullopt;
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
