// QuickDraw pictures: lists of drawing operators, drawn upon white paper at the size that is wanted.

#include "platform/image/CodecModule.h"
#include "platform/image/codecs/pict/Interpreter.h"

namespace caddis::image {

namespace {

constexpr std::size_t EmptyHead = 512;
constexpr std::uint32_t ExtendedVersion = 0xFFFE;

class PICTReader final : public Reader {
public:
    explicit PICTReader(const Data& data)
        : m_data(data)
        , m_start(Bytes(m_data), EmptyHead + 2)
    {
        m_frame = m_start.box();
        m_isVersion2 = m_start.u8() == 0;
        m_start.skip(m_isVersion2 ? 3 : 1);
        if (m_frame.isEmpty())
            throw Broken();
        m_info.pixelsWide = static_cast<std::uint32_t>(m_frame.wide());
        m_info.pixelsHigh = static_cast<std::uint32_t>(m_frame.high());
        readExtendedHead(m_start);
    }

    std::optional<ImageInfo> info(std::size_t) override { return m_info; }

    void decode(std::size_t, Target target, RowSink& sink) override
    {
        if (!limits::allows(target.wide, target.high, limits::MostPixelsInMemory / 2))
            throw Broken();
        Canvas canvas(target.wide, target.high, m_frame);
        try {
            Interpreter(m_start, m_isVersion2, canvas).run();
        } catch (const Broken&) { // What was drawn before shows.
        }
        sink.begin(target.wide, target.high, PixelLayout::Opaque);
        std::vector<std::uint8_t> row(std::size_t { target.wide } * 4);
        for (std::uint32_t y = 0; y < target.high; ++y) {
            const std::uint8_t* drawn = canvas.row(y);
            for (std::size_t x = 0; x < target.wide; ++x)
                for (std::size_t component = 0; component < 3; ++component)
                    row[x * 4 + component] = drawn[x * 4 + 2 - component];
            sink.row(row.data());
        }
    }

private:
    // Drawn at another resolution, the picture has its coordinates in a frame of their own.
    void readExtendedHead(Cursor cursor)
    {
        constexpr std::uint32_t headCode = 0x0C00;
        if (!m_isVersion2 || cursor.u16() != headCode || cursor.u16() != ExtendedVersion)
            return;
        cursor.skip(2 + 4 + 4);
        const Box own = cursor.box();
        if (!own.isEmpty())
            m_frame = own;
    }

    Data m_data;
    Cursor m_start; // Behind the version.
    Box m_frame;
    bool m_isVersion2 = false;
    ImageInfo m_info;
};

} // namespace

} // namespace caddis::image

caddis::image::Reader* caddisOpenReader(const caddis::Data& data)
{
    return std::make_unique<caddis::image::PICTReader>(data).release();
}
