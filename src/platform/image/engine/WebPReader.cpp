#include "platform/image/engine/Exif.h"
#include "platform/image/engine/Readers.h"

#include <memory>
#include <webp/decode.h>
#include <webp/demux.h>

namespace caddis::image {

namespace {

class WebPReader final : public Reader {
public:
    explicit WebPReader(const Data& data)
        : m_data(data)
    {
        const WebPData bytes { data.bytes(), data.size() };
        m_demuxer.reset(WebPDemux(&bytes));
        if (!m_demuxer)
            throw Broken();
    }

    std::size_t count() override { return of(WEBP_FF_FRAME_COUNT); }

    std::optional<ImageInfo> info(std::size_t) override
    {
        ImageInfo info;
        info.pixelsWide = of(WEBP_FF_CANVAS_WIDTH);
        info.pixelsHigh = of(WEBP_FF_CANVAS_HEIGHT);
        info.hasAlpha = (of(WEBP_FF_FORMAT_FLAGS) & ALPHA_FLAG) != 0;
        WebPChunkIterator chunk {};
        if (WebPDemuxGetChunk(m_demuxer.get(), "EXIF", 1, &chunk)) {
            std::string_view exif(reinterpret_cast<const char*>(chunk.chunk.bytes), chunk.chunk.size);
            // Some writers put JPEG's marker in front.
            if (exif.starts_with(std::string_view("Exif\0\0", 6)))
                exif.remove_prefix(6);
            info.orientation = readExif(exif).orientation;
        }
        WebPDemuxReleaseChunkIterator(&chunk);
        return info;
    }

    void decode(std::size_t index, Target target, RowSink& sink) override
    {
        if (of(WEBP_FF_FORMAT_FLAGS) & ANIMATION_FLAG)
            decodeFrame(index, sink);
        else
            decodeStill(target, sink);
    }

    std::optional<Data> profile(std::size_t) override
    {
        WebPChunkIterator chunk {};
        std::optional<Data> found;
        if (WebPDemuxGetChunk(m_demuxer.get(), "ICCP", 1, &chunk))
            found = Data::copyOf({ reinterpret_cast<const char*>(chunk.chunk.bytes), chunk.chunk.size });
        WebPDemuxReleaseChunkIterator(&chunk);
        return found;
    }

private:
    std::uint32_t of(WebPFormatFeature feature) const { return WebPDemuxGetI(m_demuxer.get(), feature); }

    // libwebp shrinks as it unpacks, row by row.
    void decodeStill(Target target, RowSink& sink)
    {
        WebPDecoderConfig config;
        WebPInitDecoderConfig(&config);
        if (!limits::allows(target.wide, target.high, limits::MostPixelsInMemory))
            throw Broken();
        config.options.use_scaling = 1;
        config.options.scaled_width = static_cast<int>(target.wide);
        config.options.scaled_height = static_cast<int>(target.high);
        config.output.colorspace = MODE_rgbA;
        const auto status = WebPDecode(m_data.bytes(), m_data.size(), &config);
        const std::unique_ptr<WebPDecBuffer, void (*)(WebPDecBuffer*)> output(
            &config.output, WebPFreeDecBuffer);
        if (status != VP8_STATUS_OK)
            throw Broken();
        const bool hasAlpha = (of(WEBP_FF_FORMAT_FLAGS) & ALPHA_FLAG) != 0;
        sink.begin(target.wide, target.high, hasAlpha ? PixelLayout::Premultiplied : PixelLayout::Opaque);
        for (std::uint32_t y = 0; y < target.high; ++y)
            sink.row(
                output->u.RGBA.rgba + std::size_t { y } * static_cast<std::size_t>(output->u.RGBA.stride));
    }

    // A frame is what stands on the canvas when all before it have been drawn.
    void decodeFrame(std::size_t index, RowSink& sink)
    {
        const std::uint32_t wide = of(WEBP_FF_CANVAS_WIDTH);
        const std::uint32_t high = of(WEBP_FF_CANVAS_HEIGHT);
        if (!limits::allows(wide, high, limits::MostPixelsInMemory / 4))
            throw Broken();
        WebPAnimDecoderOptions options;
        WebPAnimDecoderOptionsInit(&options);
        options.color_mode = MODE_rgbA;
        const WebPData bytes { m_data.bytes(), m_data.size() };
        const std::unique_ptr<WebPAnimDecoder, void (*)(WebPAnimDecoder*)> decoder(
            WebPAnimDecoderNew(&bytes, &options), WebPAnimDecoderDelete);
        const auto end = std::chrono::steady_clock::now() + limits::MostTime;
        std::uint8_t* canvas = nullptr;
        int time = 0;
        for (std::size_t frame = 0; frame <= index; ++frame)
            if (!decoder || !WebPAnimDecoderGetNext(decoder.get(), &canvas, &time)
                || std::chrono::steady_clock::now() > end)
                throw Broken();
        sink.begin(wide, high, PixelLayout::Premultiplied);
        for (std::uint32_t y = 0; y < high; ++y)
            sink.row(canvas + std::size_t { y } * wide * 4);
    }

    Data m_data;
    std::unique_ptr<WebPDemuxer, void (*)(WebPDemuxer*)> m_demuxer { nullptr, WebPDemuxDelete };
};

} // namespace

std::unique_ptr<Reader> openWebP(const Data& data) { return std::make_unique<WebPReader>(data); }

} // namespace caddis::image
