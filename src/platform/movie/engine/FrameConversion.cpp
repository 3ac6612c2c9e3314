#include "platform/movie/engine/FrameConversion.h"

#include <bit>
#include <cmath>
#include <cstdlib>

namespace caddis::movie {

namespace {

using ScalerPointer = std::unique_ptr<SwsContext, decltype(&sws_freeContext)>;

constexpr int FirstHighDefinitionHeight = 720;
constexpr std::size_t BytesPerPixel = 4;
constexpr std::size_t Overrun = 64; // The converters write whole vectors.

// Decoders store the numbers of damaged files in fields of enumerations, which know fewer.
template <typename Enumeration> int numberIn(const Enumeration& field) { return std::bit_cast<int>(field); }

bool isFullRange(const AVFrame& frame)
{
    switch (frame.format) {
    case AV_PIX_FMT_YUVJ411P:
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ440P:
    case AV_PIX_FMT_YUVJ444P:
        return true;
    default:
        return numberIn(frame.color_range) == AVCOL_RANGE_JPEG;
    }
}

int colorspaceOf(const AVFrame& frame)
{
    const int stated = numberIn(frame.colorspace);
    if (stated != AVCOL_SPC_UNSPECIFIED && stated != AVCOL_SPC_RGB)
        return stated;
    return frame.height >= FirstHighDefinitionHeight ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

ScalerPointer scalerFor(const AVFrame& frame, int width)
{
    const auto format = static_cast<AVPixelFormat>(frame.format);
    ScalerPointer scaler(sws_getContext(frame.width, frame.height, format, width, frame.height,
                             AV_PIX_FMT_RGBA, SWS_BILINEAR | SWS_ACCURATE_RND, nullptr, nullptr, nullptr),
        sws_freeContext);
    // It fails for RGB sources, which need no such thing.
    if (scaler)
        sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(colorspaceOf(frame)),
            isFullRange(frame) ? 1 : 0, sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    return scaler;
}

// The converters keep colours apart from alpha.
void multiplyByAlpha(std::uint8_t* pixels, std::size_t bytes)
{
    for (std::uint8_t* pixel = pixels; pixel < pixels + bytes; pixel += BytesPerPixel) {
        for (std::size_t component = 0; component < 3; ++component)
            pixel[component] = static_cast<std::uint8_t>((pixel[component] * pixel[3] + 127) / 255);
    }
}

} // namespace

Size shownSize(int width, int height, AVRational sampleAspectRatio)
{
    const bool isKnown = sampleAspectRatio.num > 0 && sampleAspectRatio.den > 0;
    return { isKnown ? std::round(width * av_q2d(sampleAspectRatio)) : width, double(height) };
}

std::optional<Bitmap> pictureOf(const AVFrame& frame, AVRational sampleAspectRatio)
{
    const Size size = shownSize(frame.width, frame.height, sampleAspectRatio);
    const auto* const layout = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (!layout || size.width < 1 || size.height < 1 || size.width * size.height > double(MostPixels))
        return std::nullopt;
    const auto scaler = scalerFor(frame, static_cast<int>(size.width));
    const auto rowBytes = static_cast<std::size_t>(size.width) * BytesPerPixel;
    const std::size_t bytes = rowBytes * static_cast<std::size_t>(frame.height);
    auto* const pixels = scaler ? static_cast<std::uint8_t*>(std::malloc(bytes + Overrun)) : nullptr;
    if (!pixels)
        return std::nullopt;
    Bitmap result { static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(frame.height),
        (layout->flags & AV_PIX_FMT_FLAG_ALPHA) != 0, Data::adoptMalloc(pixels, bytes) };
    std::uint8_t* const planes[] = { pixels, nullptr, nullptr, nullptr };
    const int strides[] = { static_cast<int>(rowBytes), 0, 0, 0 };
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, strides) != frame.height)
        return std::nullopt;
    if (result.hasAlpha)
        multiplyByAlpha(pixels, bytes);
    return result;
}

} // namespace caddis::movie
