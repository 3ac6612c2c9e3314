// Camera raw files by the pictures that the camera has put in them: sensors are not developed here.

#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Metadata.h"
#include "platform/image/engine/Readers.h"

namespace caddis::image {

namespace {

class RAWReader final : public Reader {
public:
    explicit RAWReader(const RawPreviews& previews)
        : m_previews(previews)
        , m_picture(openJPEG(previews.large))
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
        return m_previews.small ? openJPEG(*m_previews.small) : nullptr;
    }
    std::optional<Data> profile(std::size_t) override { return m_picture->profile(0); }

private:
    RawPreviews m_previews;
    std::unique_ptr<Reader> m_picture;
};

} // namespace

// Many raw files are TIFF files: Adobe's say so in a tag, Canon's behind the header; those of the others
// start with a small picture, tell their maker and keep the sensor's data in a directory below.
bool isRawTIFF(std::string_view file)
{
    enum Tag : std::uint32_t { NewSubfileType = 0xFE, Make = 0x10F, SubIFDs = 0x14A, DNGVersion = 0xC612 };
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
    for (std::size_t index = 0; index < u16(directory); ++index) {
        const std::size_t entry = directory + 2 + index * 12;
        const std::uint32_t tag = u16(entry);
        if (tag == DNGVersion)
            return true;
        isReduced = isReduced || (tag == NewSubfileType && (u32(entry + 8) & 1) != 0);
        hasMake = hasMake || tag == Make;
        hasDirectories = hasDirectories || tag == SubIFDs;
    }
    return isReduced && hasMake && hasDirectories;
}

std::unique_ptr<Reader> openRAW(const Data& data)
{
    if (const auto previews = readRawPreviews(data))
        return std::make_unique<RAWReader>(*previews);
    const bool isTIFF
        = data.chars().starts_with("II*") || data.chars().starts_with(std::string_view("MM\0*", 4));
    return isTIFF ? openTIFF(data) : nullptr;
}

} // namespace caddis::image
