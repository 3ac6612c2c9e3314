// JPEG XL by libjxl, which also applies the orientation.

#include "platform/image/CodecModule.h"

#include <cstdlib>
#include <jxl/decode.h>
#include <vector>

namespace caddis::image {

namespace {

// The library's memory, counted: what a file claims may be far from what it holds.
class CountedMemory {
public:
    JxlMemoryManager manager()
    {
        return { this,
            [](void* self, std::size_t size) { return static_cast<CountedMemory*>(self)->take(size); },
            [](void* self, void* block) { static_cast<CountedMemory*>(self)->giveBack(block); } };
    }

private:
    static constexpr std::size_t Head = 64; // Keeps the alignment that the library may expect.

    void* take(std::size_t size)
    {
        if (size > limits::MostBytesInMemory - m_used)
            return nullptr;
        auto* block = static_cast<std::size_t*>(std::malloc(size + Head));
        if (!block)
            return nullptr;
        *block = size;
        m_used += size;
        return reinterpret_cast<char*>(block) + Head;
    }
    void giveBack(void* block)
    {
        if (!block)
            return;
        auto* head = reinterpret_cast<std::size_t*>(static_cast<char*>(block) - Head);
        m_used -= *head;
        std::free(head);
    }

    std::size_t m_used = 0;
};

class Decoder {
public:
    Decoder(const Data& data, int events)
        : m_manager(m_memory.manager())
        , m_decoder(JxlDecoderCreate(&m_manager), JxlDecoderDestroy)
    {
        if (!m_decoder || JxlDecoderSubscribeEvents(get(), events) != JXL_DEC_SUCCESS
            || JxlDecoderSetInput(get(), data.bytes(), data.size()) != JXL_DEC_SUCCESS)
            throw Broken();
    }
    JxlDecoder* get() const { return m_decoder.get(); }
    /// The next event, which must be this one.
    void expect(JxlDecoderStatus event) const
    {
        if (JxlDecoderProcessInput(get()) != event)
            throw Broken();
    }

private:
    CountedMemory m_memory;
    JxlMemoryManager m_manager;
    std::unique_ptr<JxlDecoder, void (*)(JxlDecoder*)> m_decoder;
};

class JPEGXLReader final : public Reader {
public:
    explicit JPEGXLReader(const Data& data)
        : m_data(data)
    {
        const Decoder decoder(m_data, JXL_DEC_BASIC_INFO);
        decoder.expect(JXL_DEC_BASIC_INFO);
        if (JxlDecoderGetBasicInfo(decoder.get(), &m_basic) != JXL_DEC_SUCCESS)
            throw Broken();
    }

    std::size_t count() override
    {
        if (!m_basic.have_animation)
            return 1;
        const Decoder decoder(m_data, JXL_DEC_FRAME);
        std::size_t count = 0;
        while (count < limits::MostFrames && JxlDecoderProcessInput(decoder.get()) == JXL_DEC_FRAME)
            ++count;
        return count;
    }

    std::optional<ImageInfo> info(std::size_t) override
    {
        ImageInfo info;
        info.pixelsWide = m_basic.xsize;
        info.pixelsHigh = m_basic.ysize;
        info.depth = m_basic.bits_per_sample;
        info.isFloat = m_basic.exponent_bits_per_sample > 0;
        info.hasAlpha = m_basic.alpha_bits > 0;
        info.colorModel = m_basic.num_color_channels == 1 ? ColorModel::Gray : ColorModel::RGB;
        return info;
    }

    void decode(std::size_t index, Target, RowSink& sink) override
    {
        // Half of the memory: the library works in at least as much again.
        if (!limits::allows(m_basic.xsize, m_basic.ysize, limits::MostPixelsInMemory / 2))
            throw Broken();
        const Decoder decoder(m_data, JXL_DEC_FULL_IMAGE);
        if (index > 0)
            JxlDecoderSkipFrames(decoder.get(), index);
        decoder.expect(JXL_DEC_NEED_IMAGE_OUT_BUFFER);
        std::vector<std::uint8_t> pixels(std::size_t { m_basic.xsize } * m_basic.ysize * 4);
        const JxlPixelFormat format { 4, JXL_TYPE_UINT8, JXL_NATIVE_ENDIAN, 0 };
        if (JxlDecoderSetImageOutBuffer(decoder.get(), &format, pixels.data(), pixels.size())
            != JXL_DEC_SUCCESS)
            throw Broken();
        decoder.expect(JXL_DEC_FULL_IMAGE);
        const bool hasAlpha = m_basic.alpha_bits > 0;
        sink.begin(m_basic.xsize, m_basic.ysize,
            !hasAlpha                         ? PixelLayout::Opaque
                : m_basic.alpha_premultiplied ? PixelLayout::Premultiplied
                                              : PixelLayout::Straight);
        for (std::uint32_t y = 0; y < m_basic.ysize; ++y)
            sink.row(pixels.data() + std::size_t { y } * m_basic.xsize * 4);
    }

    std::optional<Data> profile(std::size_t) override
    {
        const Decoder decoder(m_data, JXL_DEC_COLOR_ENCODING);
        decoder.expect(JXL_DEC_COLOR_ENCODING);
        const JxlPixelFormat format { 4, JXL_TYPE_UINT8, JXL_NATIVE_ENDIAN, 0 };
        std::size_t size = 0;
        if (JxlDecoderGetICCProfileSize(decoder.get(), &format, JXL_COLOR_PROFILE_TARGET_DATA, &size)
                != JXL_DEC_SUCCESS
            || size == 0 || size > limits::MostProfileBytes)
            return std::nullopt;
        std::vector<std::uint8_t> bytes(size);
        if (JxlDecoderGetColorAsICCProfile(
                decoder.get(), &format, JXL_COLOR_PROFILE_TARGET_DATA, bytes.data(), size)
            != JXL_DEC_SUCCESS)
            return std::nullopt;
        return Data::adopt(std::move(bytes));
    }

private:
    Data m_data;
    JxlBasicInfo m_basic {};
};

} // namespace

} // namespace caddis::image

caddis::image::Reader* caddisOpenReader(const caddis::Data& data)
{
    return std::make_unique<caddis::image::JPEGXLReader>(data).release();
}
