#include "platform/image/engine/Colours.h"

#include <algorithm>
#include <lcms2.h>
#include <memory>

namespace caddis::image {

namespace {

constexpr std::size_t PixelsAtOnce = 4096;

using Profile = std::unique_ptr<void, cmsBool (*)(cmsHPROFILE)>;

Profile opened(const Data& data)
{
    cmsSetLogErrorHandler([](cmsContext, cmsUInt32Number, const char*) {});
    return { cmsOpenProfileFromMem(data.bytes(), static_cast<cmsUInt32Number>(data.size())),
        cmsCloseProfile };
}

String nameOf(const Profile& profile)
{
    char name[256] = {};
    if (!profile
        || !cmsGetProfileInfoASCII(profile.get(), cmsInfoDescription, "en", "US", name, sizeof name - 1))
        return {};
    return String::fromLatin1(name);
}

// lcms's name for pixels of this layout in the profile's colours; 0: they don't fit together.
cmsUInt32Number formatOf(const Profile& profile, PixelLayout layout)
{
    const cmsColorSpaceSignature space = cmsGetColorSpace(profile.get());
    const bool isInk = layout == PixelLayout::InvertedCMYK;
    if (isInk || space == cmsSigCmykData)
        return isInk && space == cmsSigCmykData ? TYPE_CMYK_8_REV : 0;
    if (space == cmsSigGrayData) // Red, green and blue are the same: the first counts, three are skipped.
        return COLORSPACE_SH(PT_GRAY) | EXTRA_SH(3) | CHANNELS_SH(1) | BYTES_SH(1);
    return space == cmsSigRgbData ? TYPE_RGBA_8 : 0;
}

std::uint8_t product(unsigned left, unsigned right)
{
    return static_cast<std::uint8_t>((left * right + 127) / 255);
}

// Colours divided by alpha.
void divide(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels)
{
    for (; pixels > 0; --pixels, from += 4, to += 4) {
        const unsigned alpha = from[3];
        for (std::size_t component = 0; component < 3; ++component)
            to[component] = static_cast<std::uint8_t>(
                alpha ? std::min((from[component] * 255U + alpha / 2) / alpha, 255U) : 0);
        to[3] = from[3];
    }
}

void multiply(std::uint8_t* pixels, std::size_t count)
{
    for (; count > 0; --count, pixels += 4)
        for (std::size_t component = 0; component < 3; ++component)
            pixels[component] = product(pixels[component], pixels[3]);
}

bool convert(std::vector<std::uint8_t>& pixels, PixelLayout layout, const Data& data)
{
    const Profile from = opened(data);
    const cmsUInt32Number format = from ? formatOf(from, layout) : 0;
    if (format == 0 || nameOf(from).view().find(u"sRGB") != std::u16string_view::npos)
        return false;
    const Profile to(cmsCreate_sRGBProfile(), cmsCloseProfile);
    const Profile transform(
        cmsCreateTransform(from.get(), format, to.get(), TYPE_RGBA_8, INTENT_PERCEPTUAL, 0),
        [](void* made) { return cmsDeleteTransform(made), cmsBool { 1 }; });
    if (!transform)
        return false;
    const bool hasAlpha = layout == PixelLayout::Straight || layout == PixelLayout::Premultiplied;
    std::vector<std::uint8_t> some(PixelsAtOnce * 4);
    for (std::size_t at = 0; at < pixels.size(); at += some.size()) {
        std::uint8_t* const out = &pixels[at];
        const std::size_t count = std::min(some.size(), pixels.size() - at) / 4;
        if (hasAlpha)
            divide(out, some.data(), count);
        else
            std::copy_n(out, count * 4, some.begin());
        cmsDoTransform(transform.get(), some.data(), out, static_cast<cmsUInt32Number>(count));
        for (std::size_t pixel = 0; pixel < count; ++pixel)
            out[pixel * 4 + 3] = hasAlpha ? some[pixel * 4 + 3] : 255;
        if (hasAlpha)
            multiply(out, count);
    }
    return true;
}

} // namespace

void makeSRGB(std::vector<std::uint8_t>& pixels, PixelLayout layout, const std::optional<Data>& profile)
{
    if (profile && convert(pixels, layout, *profile))
        return;
    if (layout == PixelLayout::InvertedCMYK)
        multiply(pixels.data(), pixels.size() / 4);
    if (layout == PixelLayout::InvertedCMYK || layout == PixelLayout::Opaque)
        for (std::size_t at = 3; at < pixels.size(); at += 4)
            pixels[at] = 255;
}

String nameOfProfile(const Data& profile) { return nameOf(opened(profile)); }

} // namespace caddis::image
