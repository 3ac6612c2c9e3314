#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Readers.h"

#include <algorithm>
#include <cstring>
#include <gif_lib.h>

namespace caddis::image {

namespace {

constexpr std::uint32_t ImageSeparator = 0x2C;
constexpr std::uint32_t ExtensionIntroducer = 0x21;

std::size_t bytesOfColourTable(std::uint32_t flags) { return flags & 0x80 ? 3U << ((flags & 7) + 1) : 0; }

// Behind the chain of sub-blocks that starts at `place`: each its length, then its bytes, until one of none.
std::size_t behindSubBlocks(const Bytes& bytes, std::size_t place)
{
    while (place < bytes.size() && bytes.u8(place) != 0)
        place += 1 + bytes.u8(place);
    return place + 1;
}

struct Survey {
    std::size_t frames = 0;
    bool hasAlpha
        = false; // A frame of it has a transparent colour, or the first leaves a part of the canvas.
    std::uint32_t delay = 0; // Of the first frame, hundredths of a second.
};

// Graphic Control Extension: GIF89a, 23.
void readControl(const Bytes& bytes, std::size_t place, Survey& survey)
{
    if (bytes.u8(place + 1) != 0xF9 || bytes.u8(place + 2) != 4)
        return;
    survey.hasAlpha = survey.hasAlpha || (bytes.u8(place + 3) & 1) != 0;
    if (survey.frames == 0)
        survey.delay = bytes.le16(place + 4);
}

// The blocks of the file; nothing is unpacked. GIF89a, 20 to 24.
Survey surveyOf(const Bytes& bytes)
{
    Survey survey;
    std::size_t place = 13 + bytesOfColourTable(bytes.u8(10));
    while (place < bytes.size() && survey.frames < limits::MostFrames) {
        const std::uint32_t kind = bytes.u8(place);
        if (kind == ExtensionIntroducer) {
            readControl(bytes, place, survey);
            place = behindSubBlocks(bytes, place + 2);
        } else if (kind == ImageSeparator && bytes.has(place, 11)) {
            const bool isWhole = bytes.le32(place + 1) == 0 && bytes.le32(place + 5) == bytes.le32(6);
            survey.hasAlpha = survey.hasAlpha || (survey.frames == 0 && !isWhole);
            ++survey.frames;
            place = behindSubBlocks(bytes, place + 11 + bytesOfColourTable(bytes.u8(place + 9)));
        } else {
            break;
        }
    }
    return survey;
}

struct Input {
    std::string_view rest;
};

int read(GifFileType* gif, GifByteType* out, int count)
{
    auto& rest = static_cast<Input*>(gif->UserData)->rest;
    const std::size_t some = std::min(static_cast<std::size_t>(count), rest.size());
    std::memcpy(out, rest.data(), some);
    rest.remove_prefix(some);
    return static_cast<int>(some);
}

// Frames drawn one after the other onto one canvas.
class Canvas {
public:
    Canvas(std::string_view bytes, std::uint32_t wide, std::uint32_t high)
        : m_input { bytes }
        , m_gif(DGifOpen(&m_input, read, nullptr), [](GifFileType* gif) { DGifCloseFile(gif, nullptr); })
        , m_wide(wide)
        , m_high(high)
        , m_pixels(std::size_t { wide } * high * 4)
    {
        if (!m_gif)
            throw Broken();
    }

    /// Draws the next frame; throws Broken when there is none. One that is cut short shows as far as it goes.
    void drawNext()
    {
        dispose();
        m_control = {};
        m_control.TransparentColor = NO_TRANSPARENT_COLOR;
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        while (DGifGetRecordType(m_gif.get(), &record) == GIF_OK && record == EXTENSION_RECORD_TYPE)
            readExtension();
        if (record != IMAGE_DESC_RECORD_TYPE || DGifGetImageDesc(m_gif.get()) != GIF_OK)
            throw Broken();
        if (m_control.DisposalMode == DISPOSE_PREVIOUS)
            m_previous = m_pixels;
        drawRows();
    }

    const std::uint8_t* row(std::uint32_t y) const
    {
        return m_pixels.data() + std::size_t { y } * m_wide * 4;
    }

private:
    void readExtension()
    {
        int code = 0;
        GifByteType* block = nullptr;
        int status = DGifGetExtension(m_gif.get(), &code, &block);
        while (status == GIF_OK && block) {
            if (code == GRAPHICS_EXT_FUNC_CODE && block[0] == 4)
                DGifExtensionToGCB(block[0], block + 1, &m_control);
            status = DGifGetExtensionNext(m_gif.get(), &block);
        }
        if (status != GIF_OK)
            throw Broken();
    }

    void drawRows()
    {
        const GifImageDesc& frame = m_gif->Image;
        const auto high = static_cast<std::uint32_t>(frame.Height);
        std::vector<GifPixelType> indexes(static_cast<std::size_t>(frame.Width));
        static constexpr std::uint32_t starts[] = { 0, 4, 2, 1 };
        static constexpr std::uint32_t steps[] = { 8, 8, 4, 2 };
        for (std::size_t pass = 0; pass < (frame.Interlace ? 4U : 1U); ++pass) {
            const std::uint32_t step = frame.Interlace ? steps[pass] : 1;
            for (std::uint32_t y = frame.Interlace ? starts[pass] : 0; y < high; y += step) {
                if (DGifGetLine(m_gif.get(), indexes.data(), frame.Width) != GIF_OK)
                    return;
                drawRow(indexes, static_cast<std::uint32_t>(frame.Top) + y);
            }
        }
    }

    void drawRow(const std::vector<GifPixelType>& indexes, std::uint32_t y)
    {
        const ColorMapObject* colours = m_gif->Image.ColorMap ? m_gif->Image.ColorMap : m_gif->SColorMap;
        const auto left = static_cast<std::uint32_t>(m_gif->Image.Left);
        for (std::uint32_t x = 0; y < m_high && x < indexes.size() && left + x < m_wide; ++x) {
            if (indexes[x] == m_control.TransparentColor)
                continue;
            std::uint8_t* pixel = &m_pixels[(std::size_t { y } * m_wide + left + x) * 4];
            const bool hasColour = colours && indexes[x] < colours->ColorCount;
            const GifColorType colour = hasColour ? colours->Colors[indexes[x]] : GifColorType {};
            pixel[0] = colour.Red;
            pixel[1] = colour.Green;
            pixel[2] = colour.Blue;
            pixel[3] = 255;
        }
    }

    // What the frame that was drawn last wants done before the next.
    void dispose()
    {
        if (m_control.DisposalMode == DISPOSE_PREVIOUS)
            m_pixels = m_previous;
        if (m_control.DisposalMode != DISPOSE_BACKGROUND)
            return;
        const GifImageDesc& frame = m_gif->Image;
        const auto left = std::min(static_cast<std::uint32_t>(frame.Left), m_wide);
        const auto right = std::min(left + static_cast<std::uint32_t>(frame.Width), m_wide);
        const auto bottom = std::min(static_cast<std::uint32_t>(frame.Top + frame.Height), m_high);
        for (auto y = static_cast<std::uint32_t>(frame.Top); y < bottom; ++y) {
            std::uint8_t* row = m_pixels.data() + std::size_t { y } * m_wide * 4;
            std::fill(row + std::size_t { left } * 4, row + std::size_t { right } * 4, std::uint8_t { 0 });
        }
    }

    Input m_input;
    std::unique_ptr<GifFileType, void (*)(GifFileType*)> m_gif;
    std::uint32_t m_wide;
    std::uint32_t m_high;
    GraphicsControlBlock m_control {};
    std::vector<std::uint8_t> m_pixels;
    std::vector<std::uint8_t> m_previous;
};

class GIFReader final : public Reader {
public:
    explicit GIFReader(const Data& data)
        : m_data(data)
        , m_survey(surveyOf(Bytes(data)))
    {
    }

    std::size_t count() override { return m_survey.frames; }

    std::optional<ImageInfo> info(std::size_t) override
    {
        const Bytes bytes(m_data);
        ImageInfo info;
        info.pixelsWide = bytes.le16(6);
        info.pixelsHigh = bytes.le16(8);
        info.isIndexed = true;
        info.hasAlpha = m_survey.hasAlpha;
        return info;
    }

    void decode(std::size_t index, Target, RowSink& sink) override
    {
        const ImageInfo canvasInfo = *info(0);
        const std::uint32_t high = canvasInfo.pixelsHigh;
        // Half of the memory: a frame may ask for the canvas before it.
        if (!limits::allows(canvasInfo.pixelsWide, high, limits::MostPixelsInMemory / 2))
            throw Broken();
        Canvas canvas(m_data.chars(), canvasInfo.pixelsWide, high);
        const auto end = std::chrono::steady_clock::now() + limits::MostTime;
        for (std::size_t frame = 0; frame <= index; ++frame) {
            canvas.drawNext();
            if (std::chrono::steady_clock::now() > end)
                throw Broken();
        }
        // Later frames may have cleared parts of the canvas.
        const bool hasAlpha = m_survey.hasAlpha || index > 0;
        sink.begin(canvasInfo.pixelsWide, high, hasAlpha ? PixelLayout::Straight : PixelLayout::Opaque);
        for (std::uint32_t y = 0; y < high; ++y)
            sink.row(canvas.row(y));
    }

    Dictionary properties(std::size_t) override
    {
        // A delay too short to be meant is shown as a tenth of a second.
        const double delay = m_survey.delay / 100.0;
        Dictionary gif { { u"DelayTime"_s, delay < 0.02 ? 0.1 : delay }, { u"UnclampedDelayTime"_s, delay },
            { u"HasGlobalColorMap"_s, (Bytes(m_data).u8(10) & 0x80) != 0 } };
        return { { u"{GIF}"_s, std::move(gif) } };
    }

private:
    Data m_data;
    Survey m_survey;
};

} // namespace

std::unique_ptr<Reader> openGIF(const Data& data) { return std::make_unique<GIFReader>(data); }

} // namespace caddis::image
