#include "facts/Facts.h"

#include "media/MovieFileTypes.h"
#include "media/MovieFrames.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace caddis::facts {

namespace {

template <typename... Arguments> String printed(const char* pattern, Arguments... arguments)
{
    char text[64];
    std::snprintf(text, sizeof text, pattern, arguments...);
    return String::fromLatin1(text);
}

// "R,G,B" of a part of the picture, sides as fractions of it.
String meanOf(const Bitmap& frame, double left, double top, double part)
{
    const auto column = [&](double x) { return static_cast<std::size_t>(x * frame.pixelsWide); };
    const auto row = [&](double y) { return static_cast<std::size_t>(y * frame.pixelsHigh); };
    std::array<double, 3> sums {};
    double count = 0;
    for (std::size_t y = row(top); y < row(top + part); ++y) {
        for (std::size_t x = column(left); x < column(left + part); ++x, ++count) {
            const std::uint8_t* const pixel = frame.pixels.bytes() + (y * frame.pixelsWide + x) * 4;
            for (std::size_t i = 0; i < sums.size(); ++i)
                sums[i] += pixel[i];
        }
    }
    return printed("%.0f,%.0f,%.0f", sums[0] / count, sums[1] / count, sums[2] / count);
}

String quadrantsOf(const Bitmap& frame)
{
    std::string text;
    for (const double top : { 0.0, 0.5 }) {
        for (const double left : { 0.0, 0.5 })
            text += (text.empty() ? "" : " ") + meanOf(frame, left, top, 0.5).utf8();
    }
    return String::fromUtf8(text);
}

std::u16string_view commonKey(std::u16string_view name)
{
    return name == u"album" ? std::u16string_view(u"albumName") : name;
}

Answer metadata(const MovieThumbnail& movie, std::u16string_view name)
{
    if (!movie.commonMetadata)
        return std::nullopt;
    for (const MetadataItem& item : *movie.commonMetadata) {
        const auto* const text = item.value.as<String>();
        if (text && item.commonKey == commonKey(name))
            return *text;
    }
    return std::nullopt;
}

} // namespace

// reply, supportsFile, Duration, Size, Lyrics, Metadata.NAME, poster.meanRGB, poster.quadrantMeans,
// posterTime.
Answer movieFact(const Question& question)
{
    const std::u16string_view key = question.key.view();
    if (key == u"supportsFile")
        return yesOrNo(supportsFile(question.path));
    const MovieThumbnail movie = thumbnailImageForItemWithFile(question.path);
    if (key == u"reply")
        return String(u"a reply");
    if (key == u"Duration")
        return printed("%.6g", movie.duration);
    if (key == u"Size")
        return printed("%.6gx%.6g", movie.size.width, movie.size.height);
    if (key == u"posterTime")
        return printed("%.0f", std::floor(std::min(movie.duration / 2, 15.0)));
    if (key == u"Lyrics")
        return movie.lyrics;
    if (key.starts_with(u"Metadata."))
        return metadata(movie, key.substr(9));
    if (key == u"poster.meanRGB")
        return movie.image ? Answer(meanOf(*movie.image, 0, 0, 1)) : std::nullopt;
    if (key == u"poster.quadrantMeans")
        return movie.image ? Answer(quadrantsOf(*movie.image)) : std::nullopt;
    return Answer::skip("no such key");
}

} // namespace caddis::facts
