#include "facts/Facts.h"

#include "media/ImageThumbnails.h"
#include "platform/image/ImageSource.h"

#include <array>
#include <cstdio>

namespace caddis::facts {

namespace {

String sizeText(std::uint32_t wide, std::uint32_t high)
{
    return String::fromLatin1(std::to_string(wide) + "x" + std::to_string(high));
}

// The mean colours of the four quarters: top left, top right, bottom left, bottom right.
String quadrantMeans(const Bitmap& bitmap)
{
    std::string text;
    for (std::size_t quarter = 0; quarter < 4; ++quarter) {
        const std::size_t left = quarter % 2 * (bitmap.pixelsWide / 2);
        const std::size_t top = quarter / 2 * (bitmap.pixelsHigh / 2);
        std::array<double, 3> sums {};
        for (std::size_t y = top; y < top + bitmap.pixelsHigh / 2; ++y)
            for (std::size_t x = left; x < left + bitmap.pixelsWide / 2; ++x)
                for (std::size_t component = 0; component < 3; ++component)
                    sums[component] += bitmap.row(y)[x * 4 + component];
        const std::size_t pixels = std::size_t { bitmap.pixelsWide / 2 } * (bitmap.pixelsHigh / 2);
        const auto count = static_cast<double>(pixels);
        char mean[64];
        std::snprintf(
            mean, sizeof mean, "%.0f,%.0f,%.0f ", sums[0] / count, sums[1] / count, sums[2] / count);
        text += mean;
    }
    return String::fromLatin1(text);
}

Answer thumbnailFact(const Question& question)
{
    const auto most = question.key == u"thumb64.transformed" ? 64 : 4096;
    const auto thumbnail
        = thumbnailForFile(question.path, most, { .alwaysFromImage = true, .withTransform = true });
    if (!thumbnail.image)
        return std::nullopt;
    return most == 64 ? sizeText(thumbnail.image->pixelsWide, thumbnail.image->pixelsHigh)
                      : quadrantMeans(*thumbnail.image);
}

} // namespace

// pixelSize, frames, Animated, orientation, thumb64.transformed, quadrantMeans.transformed.
Answer imageFact(const Question& question)
{
    const auto source = ImageSource::createWithFile(question.path);
    if (!source)
        return Answer::skip("no codec for this kind of file");
    const auto info = source->infoAtIndex(0);
    if (!info)
        return std::nullopt;
    if (question.key == u"pixelSize")
        return sizeText(info->pixelsWide, info->pixelsHigh);
    if (question.key == u"frames")
        return decimal(source->count());
    if (question.key == u"orientation")
        return decimal(static_cast<std::size_t>(info->orientation));
    if (question.key == u"Animated")
        return source->count() >= 2 && question.path.view().ends_with(u".gif") ? Answer(u"YES"_s)
                                                                               : std::nullopt;
    if (question.key.view().ends_with(u".transformed"))
        return thumbnailFact(question);
    return Answer::skip("no such key");
}

} // namespace caddis::facts
