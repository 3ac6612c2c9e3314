// Apple's icon files: elements of a four-letter type and a length, each a picture of one size: a whole PNG or
// JPEG 2000 file, or runs of bytes, one colour after the other, with the alpha in an element of its own. The
// largest stands first here. The old one-bit and palette elements are left out; files that have only these
// are older than 1998.

#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Readers.h"

#include <algorithm>
#include <vector>

namespace caddis::image {

namespace {

struct Kind {
    std::string_view type;
    std::uint32_t side;
    std::string_view mask; // The type of the element that holds the alpha; empty: the element is a file.
};

constexpr Kind kinds[] = {
    { "is32", 16, "s8mk" },
    { "il32", 32, "l8mk" },
    { "ih32", 48, "h8mk" },
    { "it32", 128, "t8mk" },
    { "icp4", 16, "s8mk" },
    { "icp5", 32, "l8mk" },
    { "icp6", 64, "" },
    { "ic07", 128, "" },
    { "ic08", 256, "" },
    { "ic09", 512, "" },
    { "ic10", 1024, "" },
    { "ic11", 32, "" },
    { "ic12", 64, "" },
    { "ic13", 256, "" },
    { "ic14", 512, "" },
    { "ic04", 16, "ARGB" },
    { "ic05", 32, "ARGB" },
};

// One component of all pixels: bytes as they are, or one byte many times.
std::size_t unpack(
    const Bytes& bytes, std::size_t place, std::vector<std::uint8_t>& out, std::size_t component)
{
    const std::size_t pixels = out.size() / 4;
    for (std::size_t at = 0; at < pixels && place < bytes.size();) {
        const std::uint32_t packet = bytes.u8(place++);
        const bool isRun = packet >= 0x80;
        const std::size_t count = std::min<std::size_t>(isRun ? packet - 125 : packet + 1, pixels - at);
        for (std::size_t index = 0; index < count; ++index)
            out[(at + index) * 4 + component]
                = static_cast<std::uint8_t>(bytes.u8(place + (isRun ? 0 : index)));
        place += isRun ? 1 : count;
        at += count;
    }
    return place;
}

class ICNSReader final : public Reader {
public:
    explicit ICNSReader(const Data& data)
        : m_data(data)
    {
        const Bytes bytes(m_data);
        for (std::size_t place = 8; bytes.has(place, 8) && m_all.size() < MostElements;) {
            const std::size_t length = bytes.be32(place + 4);
            if (length < 8 || !bytes.has(place, length))
                break;
            m_all.push_back({ bytes.run(place, 4), nullptr, { place + 8, length - 8 } });
            place += length;
        }
        for (Element element : m_all) {
            const auto* const kind = std::find_if(std::begin(kinds), std::end(kinds),
                [&](const Kind& one) { return one.type == element.type; });
            element.kind = kind;
            if (kind != std::end(kinds) && element.range.length > 0)
                m_pictures.push_back(element);
        }
        if (m_pictures.empty())
            throw Broken();
        std::stable_sort(m_pictures.begin(), m_pictures.end(),
            [](const Element& left, const Element& right) { return left.kind->side > right.kind->side; });
    }

    std::size_t count() override { return m_pictures.size(); }

    std::optional<ImageInfo> info(std::size_t index) override
    {
        const Element& element = m_pictures[index];
        if (auto file = fileIn(element))
            return file->info(0);
        ImageInfo info;
        info.pixelsWide = element.kind->side;
        info.pixelsHigh = element.kind->side;
        info.hasAlpha = true;
        return info;
    }

    void decode(std::size_t index, Target target, RowSink& sink) override
    {
        const Element& element = m_pictures[index];
        if (auto file = fileIn(element))
            file->decode(0, target, sink);
        else
            decodeRuns(element, sink);
    }

private:
    static constexpr std::size_t MostElements = 1024;

    struct Element {
        std::string_view type;
        const Kind* kind;
        Range range;
    };

    std::unique_ptr<Reader> fileIn(const Element& element) const
    {
        const Data data = m_data.slice(element.range);
        if (data.chars().starts_with("\x89PNG"))
            return openPNG(data);
        if (data.size() > 12 && (Bytes(data).isAt(4, "jP  ") || data.chars().starts_with("\xFF\x4F\xFF\x51")))
            return openJPEG2000(data);
        if (element.kind->mask.empty())
            throw Broken();
        return nullptr;
    }

    void decodeRuns(const Element& element, RowSink& sink) const
    {
        const std::uint32_t side = element.kind->side;
        const Bytes bytes(m_data.slice(element.range));
        std::vector<std::uint8_t> pixels(std::size_t { side } * side * 4, 255);
        const bool hasOwnAlpha = bytes.isAt(0, "ARGB");
        // The largest kind starts with four zero bytes.
        std::size_t place = hasOwnAlpha || (element.type == "it32" && bytes.be32(0) == 0) ? 4 : 0;
        if (hasOwnAlpha)
            place = unpack(bytes, place, pixels, 3);
        for (std::size_t component = 0; component < 3; ++component)
            place = unpack(bytes, place, pixels, component);
        if (!hasOwnAlpha)
            setAlpha(element.kind->mask, pixels);
        sink.begin(side, side, PixelLayout::Straight);
        for (std::size_t y = 0; y < side; ++y)
            sink.row(pixels.data() + y * side * 4);
    }

    void setAlpha(std::string_view type, std::vector<std::uint8_t>& pixels) const
    {
        const auto mask = std::find_if(
            m_all.begin(), m_all.end(), [&](const Element& element) { return element.type == type; });
        if (mask == m_all.end() || mask->range.length < pixels.size() / 4)
            return;
        for (std::size_t pixel = 0; pixel < pixels.size() / 4; ++pixel)
            pixels[pixel * 4 + 3] = m_data.bytes()[mask->range.location + pixel];
    }

    Data m_data;
    std::vector<Element> m_all;
    std::vector<Element> m_pictures;
};

} // namespace

std::unique_ptr<Reader> openICNS(const Data& data) { return std::make_unique<ICNSReader>(data); }

} // namespace caddis::image
