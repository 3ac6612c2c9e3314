#include "platform/image/engine/JPEGSegments.h"

#include <cstring>

namespace caddis::image {

namespace {

constexpr std::uint8_t StartOfScan = 0xDA;
constexpr std::uint8_t EndOfImage = 0xD9;

bool standsAlone(std::uint32_t marker) { return (marker >= 0xD0 && marker <= 0xD9) || marker == 0x01; }

} // namespace

JPEGSegment segmentAt(const Bytes& bytes, std::size_t place)
{
    while (place < bytes.size() && (bytes.u8(place) != 0xFF || bytes.u8(place + 1) == 0xFF))
        ++place;
    const std::uint32_t marker = bytes.u8(place + 1);
    const std::size_t length = standsAlone(marker) ? 0 : std::max<std::size_t>(bytes.be16(place + 2), 2);
    return { static_cast<std::uint8_t>(marker), std::min(place, bytes.size()),
        std::min(place + 2 + length, bytes.size()) };
}

std::size_t endOfScan(const Bytes& bytes, std::size_t place)
{
    while (place < bytes.size()) {
        const void* found = std::memchr(bytes.at(place), 0xFF, bytes.size() - place);
        if (!found)
            return bytes.size();
        place = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes.at(0));
        const std::uint32_t next = bytes.u8(place + 1);
        if (next != 0 && next != 0xFF && !(next >= 0xD0 && next <= 0xD7))
            return place;
        place += next == 0xFF ? 1 : 2;
    }
    return bytes.size();
}

std::vector<JPEGSegment> segmentsOfHeader(const Bytes& bytes)
{
    std::vector<JPEGSegment> segments;
    for (std::size_t place = 2; place + 1 < bytes.size();) {
        segments.push_back(segmentAt(bytes, place));
        if (segments.back().marker == StartOfScan || segments.back().marker == EndOfImage)
            break;
        place = segments.back().end;
    }
    return segments;
}

} // namespace caddis::image
