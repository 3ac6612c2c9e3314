// Camera raw files by the pictures that the camera has put in them: sensors are not developed here.

#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Metadata.h"
#include "platform/image/engine/Readers.h"

namespace caddis::image {

namespace {

std::unique_ptr<Reader> openedPreview(const Data& data)
{
    return data.chars().starts_with("\xFF\xD8") ? openJPEG(data) : openTIFF(data);
}

class RAWReader final : public Reader {
public:
    explicit RAWReader(const RawPreviews& previews)
        : m_previews(previews)
        , m_picture(openedPreview(previews.large))
    {
    }

    std::optional<ImageInfo> info(std::size_t) override
    {
        auto info = m_picture->info(0);
        if (info && m_previews.orientation > 0 && m_previews.orientation <= 8)
            info->orientation = m_previews.orientation;
        return info;
    }
    void decode(std::size_t, Target target, RowSink& sink) override { m_picture->decode(0, target, sink); }
    std::unique_ptr<Reader> embedded(std::size_t) override
    {
        return m_previews.small ? openedPreview(*m_previews.small) : nullptr;
    }
    std::optional<Data> profile(std::size_t) override { return m_picture->profile(0); }

private:
    RawPreviews m_previews;
    std::unique_ptr<Reader> m_picture;
};

} // namespace

// Many raw files are TIFF files: Adobe's say so in a tag, Canon's behind the header; those of the others
// tell their maker and start with a small picture and keep the sensor's data in a directory below, or start
// with the sensor's data, which are packed in ways of their own.
bool isRawTIFF(std::string_view file)
{
    enum Tag : std::uint32_t {
        NewSubfileType = 0xFE,
        Compression = 0x103,
        Make = 0x10F,
        SubIFDs = 0x14A,
        DNGVersion = 0xC612
    };
    enum Packing : std::uint32_t { Sony = 32'767, Nikon = 34'713, Pentax = 65'535 };
    const Bytes bytes(file);
    const bool isBig = bytes.isAt(0, "MM");
    const auto u16 = [&](std::size_t at) { return isBig ? bytes.be16(at) : bytes.le16(at); };
    const auto u32 = [&](std::size_t at) { return isBig ? bytes.be32(at) : bytes.le32(at); };
    if (bytes.isAt(8, "CR\x02"))
        return true;
    const std::size_t directory = u32(4);
    bool isReduced = false;
    bool hasMake = false;
    bool hasDirectories = false;
    bool isPacked = false;
    for (std::size_t index = 0; index < u16(directory); ++index) {
        const std::size_t entry = directory + 2 + index * 12;
        const std::uint32_t tag = u16(entry);
        if (tag == DNGVersion)
            return true;
        isReduced = isReduced || (tag == NewSubfileType && (u32(entry + 8) & 1) != 0);
        const std::uint32_t packing = tag == Compression ? u16(entry + 8) : 0;
        isPacked = isPacked || packing == Sony || packing == Nikon || packing == Pentax;
        hasMake = hasMake || tag == Make;
        hasDirectories = hasDirectories || tag == SubIFDs;
    }
    return hasMake && ((isReduced && hasDirectories) || isPacked);
}

std::unique_ptr<Reader> openRAW(const Data& data)
{
    const bool isCR3 = Bytes(data).isAt(4, "ftypcrx ");
    if (const auto previews = isCR3 ? readCR3Previews(data) : readRawPreviews(data))
        return std::make_unique<RAWReader>(*previews);
    const bool isTIFF = Bytes(data).isAt(0, "II*") || Bytes(data).isAt(0, std::string_view("MM\0*", 4));
    return isTIFF ? openTIFF(data) : nullptr;
}

// The head says where a whole JPEG file stands.
std::unique_ptr<Reader> openRAF(const Data& data)
{
    const Bytes bytes(data);
    const std::size_t place = bytes.be32(84);
    const std::size_t length = bytes.be32(88);
    return bytes.has(place, length) ? openJPEG(data.slice({ place, length })) : nullptr;
}

} // namespace caddis::image
