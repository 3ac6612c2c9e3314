#include "platform/image/engine/Exif.h"

#include "platform/image/engine/Bytes.h"

namespace caddis::image {

namespace {

enum Tag : std::uint32_t {
    Orientation = 0x112,
    XResolution = 0x11A,
    YResolution = 0x11B,
    ResolutionUnit = 0x128,
    ThumbnailOffset = 0x201,
    ThumbnailLength = 0x202,
};

class Directory {
public:
    Directory(Bytes bytes, bool isBig, std::size_t place)
        : m_bytes(bytes)
        , m_isBig(isBig)
        , m_place(place)
    {
    }

    // The 12-byte entry's value field, as the number in it; 0 when there is no such entry.
    std::uint32_t number(Tag tag) const
    {
        const auto entry = find(tag);
        const bool isShort = entry && u16(*entry + 2) == 3;
        return !entry ? 0 : isShort ? u16(*entry + 8) : u32(*entry + 8);
    }
    double rational(Tag tag) const
    {
        const std::uint32_t place = number(tag);
        const std::uint32_t divisor = place ? u32(std::size_t { place } + 4) : 0;
        return divisor ? static_cast<double>(u32(place)) / divisor : 0;
    }
    std::size_t next() const { return u32(m_place + 2 + std::size_t { count() } * 12); }

private:
    std::uint32_t u16(std::size_t at) const { return m_isBig ? m_bytes.be16(at) : m_bytes.le16(at); }
    std::uint32_t u32(std::size_t at) const { return m_isBig ? m_bytes.be32(at) : m_bytes.le32(at); }
    std::uint32_t count() const { return u16(m_place); }
    std::optional<std::size_t> find(Tag tag) const
    {
        for (std::size_t index = 0; index < count(); ++index) {
            const std::size_t entry = m_place + 2 + index * 12;
            if (u16(entry) == tag)
                return entry;
        }
        return std::nullopt;
    }

    Bytes m_bytes;
    bool m_isBig;
    std::size_t m_place;
};

} // namespace

ExifSummary readExif(std::string_view block)
{
    const Bytes bytes(block);
    const bool isBig = bytes.isAt(0, "MM");
    if (!isBig && !bytes.isAt(0, "II"))
        return {};
    const Directory first(bytes, isBig, isBig ? bytes.be32(4) : bytes.le32(4));
    ExifSummary summary;
    const std::uint32_t orientation = first.number(Orientation);
    summary.orientation = orientation <= 8 ? static_cast<int>(orientation) : 0;
    const double unit = first.number(ResolutionUnit) == 3 ? 2.54 : 1;
    summary.dpiWidth = first.rational(XResolution) * unit;
    summary.dpiHeight = first.rational(YResolution) * unit;
    if (first.next()) {
        const Directory second(bytes, isBig, first.next());
        const Range thumbnail { second.number(ThumbnailOffset), second.number(ThumbnailLength) };
        if (thumbnail.length > 0 && bytes.has(thumbnail.location, thumbnail.length))
            summary.thumbnail = thumbnail;
    }
    return summary;
}

} // namespace caddis::image
