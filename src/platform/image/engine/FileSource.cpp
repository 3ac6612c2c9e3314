#include "platform/image/engine/FileSource.h"

#include "platform/image/Fit.h"
#include "platform/image/engine/Readers.h"
#include "platform/image/engine/Shrinker.h"

#include <algorithm>

namespace caddis::image {

namespace {

struct Format {
    const char16_t* type;
    std::string_view signature; // At the file's start; "?" stands for any byte.
    OpenReader* open;
};

constexpr Format formats[] = {
    { u"public.jpeg", "\xFF\xD8\xFF", openJPEG },
    { u"public.png", "\x89PNG\r\n\x1A\n", openPNG },
    { u"com.compuserve.gif", "GIF8?a", openGIF },
    { u"public.tiff", std::string_view("II*\0", 4), openTIFF },
    { u"public.tiff", std::string_view("MM\0*", 4), openTIFF },
    { u"public.tiff", std::string_view("II+\0", 4), openTIFF },
    { u"public.tiff", std::string_view("MM\0+", 4), openTIFF },
    { u"org.webmproject.webp", "RIFF????WEBP", openWebP },
};

bool isAtStart(std::string_view signature, std::string_view bytes)
{
    return bytes.size() >= signature.size()
        && std::equal(signature.begin(), signature.end(), bytes.begin(),
            [](char wanted, char byte) { return wanted == '?' || wanted == byte; });
}

// Whatever a library throws, it is the file's fault: no answer.
template <typename Work> std::invoke_result_t<Work&> answered(Work&& work)
{
    try {
        return work();
    } catch (const std::exception&) {
        return {};
    }
}

Target targetFor(const ImageInfo& info, std::uint32_t maxPixelSize)
{
    const Size size { static_cast<double>(info.pixelsWide), static_cast<double>(info.pixelsHigh) };
    const double most = maxPixelSize;
    const Size fit = maxPixelSize ? fitted({ most, most }, size) : size;
    return { static_cast<std::uint32_t>(fit.width), static_cast<std::uint32_t>(fit.height) };
}

const char16_t* nameOf(ColorModel model)
{
    static constexpr const char16_t* names[] = { u"RGB", u"Gray", u"CMYK", u"Lab" };
    return names[static_cast<int>(model)];
}

} // namespace

FileSource* FileSource::open(const Data& data)
{
    for (const Format& format : formats) {
        if (!isAtStart(format.signature, data.chars()))
            continue;
        auto reader = answered([&] { return format.open(data); });
        return reader ? new FileSource(format.type, std::move(reader)) : nullptr;
    }
    return nullptr;
}

std::size_t FileSource::count() const
{
    return answered([&] { return std::min(m_reader->count(), limits::MostFrames); });
}

std::optional<ImageInfo> FileSource::info(std::size_t index) const
{
    if (index >= count())
        return std::nullopt;
    const auto info = answered([&] { return m_reader->info(index); });
    return info && limits::allows(info->pixelsWide, info->pixelsHigh) ? info : std::nullopt;
}

Dictionary FileSource::properties(std::size_t index) const
{
    const auto found = info(index);
    if (!found)
        return {};
    Dictionary properties { { u"PixelWidth"_s, found->pixelsWide }, { u"PixelHeight"_s, found->pixelsHigh },
        { u"Depth"_s, found->depth }, { u"ColorModel"_s, String(nameOf(found->colorModel)) } };
    const auto add = [&](const String& key, bool isSaid, Value value) {
        if (isSaid)
            properties.set(key, std::move(value));
    };
    add(u"Orientation"_s, found->orientation > 0, found->orientation);
    add(u"DPIWidth"_s, found->dpiWidth > 0, found->dpiWidth);
    add(u"DPIHeight"_s, found->dpiHeight > 0, found->dpiHeight);
    add(u"HasAlpha"_s, found->hasAlpha, true);
    add(u"IsIndexed"_s, found->isIndexed, true);
    add(u"IsFloat"_s, found->isFloat, true);
    for (const auto& [key, value] : answered([&] { return m_reader->properties(index); }))
        properties.set(key, value);
    return properties;
}

std::optional<Bitmap> FileSource::embedded(std::size_t index, const ImageRequest& request) const
{
    const auto data = answered([&] { return m_reader->embedded(index); });
    const std::unique_ptr<FileSource> source(data ? open(*data) : nullptr);
    return source ? source->image(0, { .maxPixelSize = request.maxPixelSize, .isUpright = false })
                  : std::nullopt;
}

std::optional<Bitmap> FileSource::image(std::size_t index, const ImageRequest& request) const
{
    const auto found = info(index);
    if (!found)
        return std::nullopt;
    auto bitmap = request.allowsEmbedded ? embedded(index, request) : std::nullopt;
    if (!bitmap) {
        const Target target = targetFor(*found, request.maxPixelSize);
        Shrinker shrinker(target);
        // Of a damaged file, the rows before the damage show.
        answered([&] { return m_reader->decode(index, target, shrinker), true; });
        bitmap = answered([&] { return shrinker.take(); });
    }
    return bitmap && request.isUpright ? oriented(*bitmap, found->orientation) : bitmap;
}

} // namespace caddis::image
