#include "platform/image/engine/FileSource.h"

#include "platform/image/Fit.h"
#include "platform/image/engine/Colours.h"
#include "platform/image/engine/Formats.h"
#include "platform/image/engine/Metadata.h"
#include "platform/image/engine/Shrinker.h"

namespace caddis::image {

namespace {

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

std::optional<Bitmap> drawn(Reader& reader, std::size_t index, std::uint32_t maxPixelSize)
{
    const auto info = answered([&] { return reader.info(index); });
    if (!info || !limits::allows(info->pixelsWide, info->pixelsHigh))
        return std::nullopt;
    const Target target = targetFor(*info, maxPixelSize);
    Shrinker shrinker(target);
    // Of a damaged file, the rows before the damage show.
    answered([&] { return reader.decode(index, target, shrinker), true; });
    const auto profile = answered([&] { return reader.profile(index); });
    return answered([&] { return shrinker.take(profile); });
}

} // namespace

FileSource* FileSource::open(const Data& data)
{
    const Format* const format = formatOf(data.chars());
    auto reader = format ? answered([&] { return opened(*format, data); }) : nullptr;
    return reader ? new FileSource(format->type, data, std::move(reader)) : nullptr;
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
    const auto profile = answered([&] { return m_reader->profile(index); });
    const String profileName = profile ? nameOfProfile(*profile) : String();
    add(u"ProfileName"_s, !profileName.isEmpty(), profileName);
    add(u"HasAlpha"_s, found->hasAlpha, true);
    add(u"IsIndexed"_s, found->isIndexed, true);
    add(u"IsFloat"_s, found->isFloat, true);
    for (const Dictionary& group : { answered([&] { return m_reader->properties(index); }),
             answered([&] { return index == 0 ? readMetadata(m_data) : Dictionary(); }) })
        for (const auto& [key, value] : group)
            properties.set(key, value);
    return properties;
}

std::optional<Bitmap> FileSource::image(std::size_t index, const ImageRequest& request) const
{
    const auto found = info(index);
    if (!found)
        return std::nullopt;
    const auto small = request.allowsEmbedded ? answered([&] { return m_reader->embedded(index); }) : nullptr;
    auto bitmap = small ? drawn(*small, 0, request.maxPixelSize) : std::nullopt;
    if (!bitmap)
        bitmap = drawn(*m_reader, index, request.maxPixelSize);
    return bitmap && request.isUpright ? oriented(*bitmap, found->orientation) : bitmap;
}

} // namespace caddis::image
