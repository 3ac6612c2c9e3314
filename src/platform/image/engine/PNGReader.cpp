#include "platform/image/engine/Bytes.h"
#include "platform/image/engine/Exif.h"
#include "platform/image/engine/ReadPages.h"
#include "platform/image/engine/Readers.h"

#include <cstring>
#include <png.h>

// Errors leave libpng as exceptions, as in JPEGReader.cpp.

namespace caddis::image {

namespace {

constexpr png_alloc_size_t MostBytesOfChunk = 16 << 20;

// Owns libpng's two records from before the first call that may throw.
struct Records {
    png_structp png = nullptr;
    png_infop info = nullptr;

    Records() = default;
    ~Records() { png_destroy_read_struct(&png, &info, nullptr); }
    Records(const Records&) = delete;
    Records& operator=(const Records&) = delete;
};

class Decoder : public Records {
public:
    explicit Decoder(const Data& data)
        : m_rest(data.chars())
    {
        png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, fail, ignore);
        info = png_create_info_struct(png);
        png_set_read_fn(png, this, read);
        png_set_user_limits(png, 0x7FFFFFFF, 0x7FFFFFFF);
        png_set_chunk_malloc_max(png, MostBytesOfChunk);
        png_set_crc_action(png, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
        png_set_benign_errors(png, 1);
        png_read_info(png, info);
    }

private:
    [[noreturn]] static void fail(png_structp, png_const_charp) { throw Broken(); }
    static void ignore(png_structp, png_const_charp) { }
    static void read(png_structp png, png_bytep out, std::size_t count)
    {
        auto& self = *static_cast<Decoder*>(png_get_io_ptr(png));
        if (count > self.m_rest.size())
            throw Broken();
        std::memcpy(out, self.m_rest.data(), count);
        self.m_pages.add(self.m_rest.substr(0, count));
        self.m_rest.remove_prefix(count);
    }

    std::string_view m_rest;
    ReadPages m_pages;
};

bool hasAlpha(const Decoder& decoder)
{
    return (png_get_color_type(decoder.png, decoder.info) & PNG_COLOR_MASK_ALPHA) != 0
        || png_get_valid(decoder.png, decoder.info, PNG_INFO_tRNS) != 0;
}

// Four bytes a pixel, whatever is stored.
void transform(const Decoder& decoder)
{
    png_set_scale_16(decoder.png);
    png_set_expand(decoder.png);
    png_set_gray_to_rgb(decoder.png);
    if (!hasAlpha(decoder))
        png_set_filler(decoder.png, 0xFF, PNG_FILLER_AFTER);
}

class PNGReader final : public Reader {
public:
    explicit PNGReader(const Data& data)
        : m_data(data)
    {
    }

    std::optional<ImageInfo> info(std::size_t) override
    {
        const Decoder decoder(m_data);
        const int colour = png_get_color_type(decoder.png, decoder.info);
        ImageInfo info;
        info.pixelsWide = png_get_image_width(decoder.png, decoder.info);
        info.pixelsHigh = png_get_image_height(decoder.png, decoder.info);
        info.depth = png_get_bit_depth(decoder.png, decoder.info);
        info.hasAlpha = hasAlpha(decoder);
        info.isIndexed = colour == PNG_COLOR_TYPE_PALETTE;
        info.colorModel = colour & PNG_COLOR_MASK_COLOR ? ColorModel::RGB : ColorModel::Gray;
        info.dpiWidth = png_get_x_pixels_per_meter(decoder.png, decoder.info) * 0.0254;
        info.dpiHeight = png_get_y_pixels_per_meter(decoder.png, decoder.info) * 0.0254;
        png_bytep exif = nullptr;
        png_uint_32 length = 0;
        if (png_get_eXIf_1(decoder.png, decoder.info, &length, &exif))
            info.orientation = readExif({ reinterpret_cast<const char*>(exif), length }).orientation;
        return info;
    }

    void decode(std::size_t, Target, RowSink& sink) override
    {
        Decoder decoder(m_data);
        const std::uint32_t wide = png_get_image_width(decoder.png, decoder.info);
        const std::uint32_t high = png_get_image_height(decoder.png, decoder.info);
        const auto layout = hasAlpha(decoder) ? PixelLayout::Straight : PixelLayout::Opaque;
        const bool isInterlaced = png_get_interlace_type(decoder.png, decoder.info) != PNG_INTERLACE_NONE;
        if (isInterlaced && !limits::allows(wide, high, limits::MostPixelsInMemory))
            throw Broken();
        transform(decoder);
        const int passes = png_set_interlace_handling(decoder.png);
        png_read_update_info(decoder.png, decoder.info);
        if (png_get_rowbytes(decoder.png, decoder.info) != std::size_t { wide } * 4)
            throw Broken();
        sink.begin(wide, high, layout);
        const std::size_t bytesPerRow = std::size_t { wide } * 4;
        std::vector<std::uint8_t> rows(isInterlaced ? bytesPerRow * high : bytesPerRow);
        // Of a damaged interlaced file the passes that could be read show.
        try {
            for (int pass = 1; pass < passes; ++pass)
                for (std::uint32_t y = 0; y < high; ++y)
                    png_read_row(decoder.png, rows.data() + y * bytesPerRow, nullptr);
        } catch (const Broken&) {
            for (std::uint32_t y = 0; y < high; ++y)
                sink.row(rows.data() + y * bytesPerRow);
            return;
        }
        for (std::uint32_t y = 0; y < high; ++y) {
            std::uint8_t* row = rows.data() + (isInterlaced ? y * bytesPerRow : 0);
            png_read_row(decoder.png, row, nullptr);
            sink.row(row);
        }
    }

    std::optional<Data> profile(std::size_t) override
    {
        const Decoder decoder(m_data);
        png_charp name = nullptr;
        png_bytep bytes = nullptr;
        int method = 0;
        png_uint_32 size = 0;
        if (!png_get_iCCP(decoder.png, decoder.info, &name, &method, &bytes, &size))
            return std::nullopt;
        return Data::copyOf({ reinterpret_cast<const char*>(bytes), size });
    }

    Dictionary properties(std::size_t) override
    {
        const Decoder decoder(m_data);
        Dictionary png;
        double gamma = 0;
        if (png_get_gAMA(decoder.png, decoder.info, &gamma))
            png.set(u"Gamma"_s, Value(gamma));
        png.set(u"InterlaceType"_s, Value(png_get_interlace_type(decoder.png, decoder.info)));
        if (png_get_valid(decoder.png, decoder.info, PNG_INFO_pHYs)) {
            png.set(u"XPixelsPerMeter"_s, Value(png_get_x_pixels_per_meter(decoder.png, decoder.info)));
            png.set(u"YPixelsPerMeter"_s, Value(png_get_y_pixels_per_meter(decoder.png, decoder.info)));
        }
        int intent = 0;
        if (png_get_sRGB(decoder.png, decoder.info, &intent))
            png.set(u"sRGBIntent"_s, Value(intent));
        addTexts(decoder, png);
        return { { u"{PNG}"_s, std::move(png) } };
    }

private:
    static void addTexts(const Decoder& decoder, Dictionary& png)
    {
        static constexpr std::string_view keys[][2] = { { "Title", "Title" }, { "Author", "Author" },
            { "Description", "Description" }, { "Copyright", "Copyright" }, { "Software", "Software" },
            { "Creation Time", "CreationTime" } };
        png_textp texts = nullptr;
        int count = 0;
        png_get_text(decoder.png, decoder.info, &texts, &count);
        for (int index = 0; index < count; ++index)
            for (const auto& key : keys)
                if (key[0] == texts[index].key && texts[index].text)
                    png.set(String::fromUtf8(key[1]),
                        Value(texts[index].compression > 0 ? String::fromUtf8(texts[index].text)
                                                           : String::fromLatin1(texts[index].text)));
    }

    Data m_data;
};

} // namespace

std::unique_ptr<Reader> openPNG(const Data& data) { return std::make_unique<PNGReader>(data); }

} // namespace caddis::image
