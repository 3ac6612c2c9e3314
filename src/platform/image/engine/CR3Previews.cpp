// Where Canon's CR3 files keep pictures to be shown. They are boxes as in ISO/IEC 14496-12: "THMB" among the
// maker's boxes in "moov", "PRVW" in a box of its own, and the largest as the only sample of the first track.

#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Exif.h"
#include "platform/image/engine/Metadata.h"

namespace caddis::image {

namespace {

constexpr std::size_t IdentifierBytes = 16; // Of a "uuid" box.
constexpr std::size_t PreviewHead = 8; // What stands before the boxes of the preview's.

// The body of the first box of a kind among those in a range; empty when there is none.
Range find(const Bytes& bytes, Range in, std::string_view type)
{
    for (std::size_t place = in.location; place + 8 <= in.end() && bytes.has(place, 8);) {
        const bool isLong = bytes.be32(place) == 1;
        const std::size_t head = isLong ? 16 : 8;
        const std::size_t said = isLong ? bytes.be32(place + 12) : bytes.be32(place);
        const std::size_t size = said == 0 ? in.end() - place : said;
        if (size < head)
            break;
        if (bytes.isAt(place + 4, type))
            return { place + head, std::min(size, in.end() - place) - head };
        place += size;
    }
    return {};
}

Range without(Range range, std::size_t head)
{
    const std::size_t some = std::min(head, range.length);
    return { range.location + some, range.length - some };
}

// The JPEG file behind a box's few numbers.
std::optional<Data> jpegIn(const Data& data, Range box)
{
    constexpr std::size_t mostHead = 64;
    const std::size_t start
        = data.chars().substr(box.location, std::min(box.length, mostHead)).find("\xFF\xD8\xFF");
    if (box.length == 0 || start == std::string_view::npos)
        return std::nullopt;
    return data.slice(without(box, start));
}

std::optional<Data> firstSample(const Data& data, Range movie)
{
    const Bytes bytes(data);
    Range table = movie;
    for (const std::string_view type : { "trak", "mdia", "minf", "stbl" })
        table = find(bytes, table, type);
    const Range sizes = find(bytes, table, "stsz");
    const Range places = find(bytes, table, "co64");
    const std::size_t same = bytes.be32(sizes.location + 4);
    const std::size_t size = same ? same : bytes.be32(sizes.location + 12);
    const std::size_t place = bytes.be32(places.location + 12);
    if (sizes.length == 0 || places.length == 0 || bytes.be32(places.location + 8) != 0
        || !bytes.has(place, size))
        return std::nullopt;
    return jpegIn(data, { place, size });
}

} // namespace

std::optional<RawPreviews> readCR3Previews(const Data& data)
{
    const Bytes bytes(data);
    const Range all { 0, data.size() };
    const Range movie = find(bytes, all, "moov");
    const Range maker = without(find(bytes, movie, "uuid"), IdentifierBytes);
    auto large = firstSample(data, movie);
    for (Range box = find(bytes, all, "uuid"); !large && box.length > 0;) {
        large = jpegIn(data, find(bytes, without(box, IdentifierBytes + PreviewHead), "PRVW"));
        box = find(bytes, { box.end(), all.end() - box.end() }, "uuid");
    }
    const auto thumbnail = jpegIn(data, find(bytes, maker, "THMB"));
    if (!large && !thumbnail)
        return std::nullopt;
    const Range exif = find(bytes, maker, "CMT1");
    return RawPreviews { large ? *large : *thumbnail, thumbnail,
        readExif(bytes.run(exif.location, exif.length)).orientation };
}

} // namespace caddis::image
