// Kinds of pictures that are met once in a thousand files: by a program of ours in a bounded process
// (platform/image/rare), since the library behind it is large, and its codecs are not trusted with this one.

#include "platform/files/FileSystem.h"
#include "platform/image/RarePicture.h"
#include "platform/image/engine/Readers.h"
#include "platform/modules/Module.h"
#include "platform/task/BoundedChild.h"

#include <cstring>
#include <fstream>

namespace caddis::image {

namespace {

constexpr ChildLimits Limits { std::chrono::seconds(6), 1ULL << 30, limits::MostBytesInMemory + 4096 };
constexpr std::chrono::milliseconds Deadline { 7'000 };

bool write(const String& path, const Data& data)
{
    std::ofstream file(path.utf8(), std::ios::binary);
    file.write(data.chars().data(), static_cast<std::streamsize>(data.size()));
    file.close();
    return file.good();
}

Data pictureOf(const char* coder, const Data& data)
{
    const auto program = installedFile("caddis-rare-picture");
    const ScratchFolder scratch;
    const String input = scratch.pathOf(u"input"_s);
    const String output = scratch.pathOf(u"output"_s);
    if (!program || !scratch.exists() || !write(input, data))
        throw Broken();
    const auto result
        = runBounded({ *program, coder, input.utf8(), output.utf8() }, scratch, Limits, Deadline);
    const auto picture = result.succeeded() ? FileSystem::contentsOfFile(output) : std::nullopt;
    if (!picture || picture->size() < sizeof(RarePicture))
        throw Broken();
    return *picture;
}

class RareReader final : public Reader {
public:
    RareReader(const char* coder, const Data& data)
        : m_picture(pictureOf(coder, data))
    {
        std::memcpy(&m_head, m_picture.bytes(), sizeof m_head);
        const std::size_t pixels = (m_picture.size() - sizeof m_head) / 4;
        if (m_head.pixelsWide == 0 || m_head.pixelsHigh == 0
            || m_head.pixelsWide > pixels / m_head.pixelsHigh)
            throw Broken();
    }

    std::optional<ImageInfo> info(std::size_t) override
    {
        ImageInfo info;
        info.pixelsWide = m_head.pixelsWide;
        info.pixelsHigh = m_head.pixelsHigh;
        info.hasAlpha = m_head.hasAlpha != 0;
        info.depth = m_head.depth;
        return info;
    }

    void decode(std::size_t, Target, RowSink& sink) override
    {
        sink.begin(m_head.pixelsWide, m_head.pixelsHigh,
            m_head.hasAlpha ? PixelLayout::Straight : PixelLayout::Opaque);
        const std::uint8_t* row = m_picture.bytes() + sizeof m_head;
        for (std::uint32_t y = 0; y < m_head.pixelsHigh; ++y, row += std::size_t { m_head.pixelsWide } * 4)
            sink.row(row);
    }

private:
    Data m_picture;
    RarePicture m_head {};
};

} // namespace

std::unique_ptr<Reader> openRare(const char* coder, const Data& data)
{
    return std::make_unique<RareReader>(coder, data);
}

} // namespace caddis::image
