#include "platform/image/codecs/pict/QuickTimeImage.h"

#include "platform/image/ImageSource.h"
#include "platform/image/Limits.h"
#include "platform/image/engine/Bytes.h"

#include <algorithm>
#include <array>
#include <vector>

namespace caddis::image {

namespace {

std::optional<Bitmap> plainColours(std::uint32_t wide, std::uint32_t high, std::uint32_t depth, Bytes data)
{
    const std::size_t step = depth / 8;
    const bool isKnown = depth == 24 || depth == 32;
    if (!isKnown || !limits::allows(wide, high, limits::MostPixelsInMemory / 2)
        || !data.has(0, std::size_t { wide } * high * step))
        return std::nullopt;
    std::vector<std::uint8_t> pixels;
    pixels.reserve(std::size_t { wide } * high * 4);
    for (std::size_t place = step - 3; pixels.size() < std::size_t { wide } * high * 4; place += step) {
        pixels.insert(pixels.end(), data.at(place), data.at(place) + 3);
        pixels.push_back(255);
    }
    return Bitmap { wide, high, false, Data::adopt(std::move(pixels)) };
}

// Not a picture of the kind that this is part of: that would go on and on.
bool isOtherFile(std::string_view data)
{
    using namespace std::string_view_literals;
    constexpr std::array starts { "\xFF\xD8"sv, "\x89PNG"sv, "II*\0"sv, "MM\0*"sv, "GIF8"sv, "BM"sv };
    return std::any_of(starts.begin(), starts.end(), [&](auto start) { return data.starts_with(start); });
}

} // namespace

std::optional<Bitmap> readQuickTimeImage(std::string_view description, std::string_view data)
{
    if (isOtherFile(data)) {
        const auto source = ImageSource::createWithData(Data::copyOf(data));
        return source ? source->imageAtIndex(0) : std::nullopt;
    }
    const Bytes head(description);
    if (!head.isAt(4, "raw "))
        return std::nullopt;
    return plainColours(head.be16(32), head.be16(34), head.be16(82), Bytes(data));
}

} // namespace caddis::image
