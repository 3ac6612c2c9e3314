// JPEG 2000, as a file (JP2) or a bare code stream, by OpenJPEG. A smaller picture costs only the resolutions
// that it needs.

#include "platform/image/CodecModule.h"

#include <algorithm>
#include <cstring>
#include <openjpeg.h>
#include <vector>

namespace caddis::image {

namespace {

struct Input {
    std::string_view bytes;
    std::size_t place = 0;
};

OPJ_SIZE_T read(void* out, OPJ_SIZE_T count, void* user)
{
    auto& input = *static_cast<Input*>(user);
    const std::size_t some = std::min(count, input.bytes.size() - input.place);
    std::memcpy(out, input.bytes.data() + input.place, some);
    input.place += some;
    return some > 0 ? some : static_cast<OPJ_SIZE_T>(-1);
}

OPJ_OFF_T skip(OPJ_OFF_T count, void* user)
{
    auto& input = *static_cast<Input*>(user);
    const auto rest = static_cast<OPJ_OFF_T>(input.bytes.size() - input.place);
    const OPJ_OFF_T some = std::min(count, rest);
    if (some < 0)
        return -1;
    input.place += static_cast<std::size_t>(some);
    return some;
}

OPJ_BOOL seek(OPJ_OFF_T place, void* user)
{
    auto& input = *static_cast<Input*>(user);
    if (place < 0 || static_cast<std::size_t>(place) > input.bytes.size())
        return OPJ_FALSE;
    input.place = static_cast<std::size_t>(place);
    return OPJ_TRUE;
}

// The codec behind the file's header.
class Decoder {
public:
    explicit Decoder(std::string_view bytes)
        : m_input { bytes }
        , m_stream(opj_stream_default_create(OPJ_TRUE), opj_stream_destroy)
        , m_codec(opj_create_decompress(isBare(bytes) ? OPJ_CODEC_J2K : OPJ_CODEC_JP2), opj_destroy_codec)
        , m_image(nullptr, opj_image_destroy)
    {
        opj_stream_set_user_data(m_stream.get(), &m_input, nullptr);
        opj_stream_set_user_data_length(m_stream.get(), bytes.size());
        opj_stream_set_read_function(m_stream.get(), read);
        opj_stream_set_skip_function(m_stream.get(), skip);
        opj_stream_set_seek_function(m_stream.get(), seek);
        opj_dparameters_t parameters;
        opj_set_default_decoder_parameters(&parameters);
        opj_image_t* image = nullptr;
        const bool isRead = opj_setup_decoder(m_codec.get(), &parameters)
            && opj_decoder_set_strict_mode(m_codec.get(), OPJ_FALSE)
            && opj_read_header(m_stream.get(), m_codec.get(), &image);
        m_image.reset(image);
        if (!isRead || !image || image->numcomps == 0)
            throw Broken();
    }

    const opj_image_t& image() const { return *m_image; }

    /// Halvings of the size that the code stream holds.
    std::uint32_t halvings() const
    {
        opj_codestream_info_v2_t* information = opj_get_cstr_info(m_codec.get());
        std::uint32_t least = 1;
        if (information && information->m_default_tile_info.tccp_info) {
            least = 33;
            for (OPJ_UINT32 index = 0; index < information->nbcomps; ++index)
                least = std::min(least, information->m_default_tile_info.tccp_info[index].numresolutions);
        }
        opj_destroy_cstr_info(&information);
        return least > 0 ? least - 1 : 0;
    }

    /// What could be read of a damaged file is there, too.
    void decode(std::uint32_t halvings)
    {
        if (!opj_set_decoded_resolution_factor(m_codec.get(), halvings))
            throw Broken();
        opj_decode(m_codec.get(), m_stream.get(), m_image.get());
    }

private:
    static bool isBare(std::string_view bytes) { return bytes.starts_with("\xFF\x4F\xFF\x51"); }

    Input m_input;
    std::unique_ptr<opj_stream_t, void (*)(opj_stream_t*)> m_stream;
    std::unique_ptr<opj_codec_t, void (*)(opj_codec_t*)> m_codec;
    std::unique_ptr<opj_image_t, void (*)(opj_image_t*)> m_image;
};

std::uint8_t shade(const opj_image_comp_t& component, std::uint32_t x, std::uint32_t y)
{
    const std::size_t column = std::min(x / std::max(component.dx, 1U), component.w - 1);
    const std::size_t row = std::min(y / std::max(component.dy, 1U), component.h - 1);
    std::int64_t value = component.data[row * component.w + column];
    if (component.sgnd)
        value += std::int64_t { 1 } << (component.prec - 1);
    const std::int64_t most = (std::int64_t { 1 } << component.prec) - 1;
    return static_cast<std::uint8_t>(std::clamp<std::int64_t>(value, 0, most) * 255 / most);
}

std::uint8_t cut(double value) { return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0)); }

// ITU-R BT.601, all values from 0 to 255.
void convertFromYCC(std::uint8_t* pixel)
{
    const double y = pixel[0];
    const double cb = pixel[1] - 128.0;
    const double cr = pixel[2] - 128.0;
    pixel[0] = cut(y + 1.402 * cr);
    pixel[1] = cut(y - 0.344136 * cb - 0.714136 * cr);
    pixel[2] = cut(y + 1.772 * cb);
}

class JPEG2000Reader final : public Reader {
public:
    explicit JPEG2000Reader(const Data& data)
        : m_data(data)
    {
        const Decoder decoder(m_data.chars());
        const opj_image_t& image = decoder.image();
        m_info.pixelsWide = image.x1 > image.x0 ? image.x1 - image.x0 : 0;
        m_info.pixelsHigh = image.y1 > image.y0 ? image.y1 - image.y0 : 0;
        m_info.depth = image.comps[0].prec;
        const bool isCMYK = image.color_space == OPJ_CLRSPC_CMYK && image.numcomps >= 4;
        m_info.colorModel = isCMYK ? ColorModel::CMYK
            : image.numcomps <= 2  ? ColorModel::Gray
                                   : ColorModel::RGB;
        m_info.hasAlpha = !isCMYK && (image.numcomps == 2 || image.numcomps >= 4);
    }

    std::optional<ImageInfo> info(std::size_t) override { return m_info; }

    void decode(std::size_t, Target target, RowSink& sink) override
    {
        Decoder decoder(m_data.chars());
        const opj_image_t& image = decoder.image();
        std::uint32_t halvings = 0;
        while (halvings < decoder.halvings() && halved(m_info.pixelsWide, halvings + 1) >= target.wide
            && halved(m_info.pixelsHigh, halvings + 1) >= target.high)
            ++halvings;
        // The library keeps 4 bytes for each sample, and works in as many again.
        const std::uint64_t most = limits::MostBytesInMemory / 4 / std::max(image.numcomps, 1U);
        if (!limits::allows(halved(m_info.pixelsWide, halvings), halved(m_info.pixelsHigh, halvings), most))
            throw Broken();
        decoder.decode(halvings);
        hand(image, halvings, sink);
    }

    std::optional<Data> profile(std::size_t) override
    {
        const Decoder decoder(m_data.chars());
        const opj_image_t& image = decoder.image();
        if (!image.icc_profile_buf || image.icc_profile_len == 0
            || image.icc_profile_len > limits::MostProfileBytes)
            return std::nullopt;
        return Data::copyOf({ reinterpret_cast<const char*>(image.icc_profile_buf), image.icc_profile_len });
    }

private:
    static std::uint32_t halved(std::uint32_t side, std::uint32_t halvings)
    {
        return static_cast<std::uint32_t>(
            (std::uint64_t { side } + (std::uint64_t { 1 } << halvings) - 1) >> halvings);
    }

    void hand(const opj_image_t& image, std::uint32_t halvings, RowSink& sink) const
    {
        const std::uint32_t used = std::min(image.numcomps, 4U);
        for (std::uint32_t index = 0; index < used; ++index) {
            const opj_image_comp_t& component = image.comps[index];
            if (!component.data || component.w == 0 || component.h == 0 || component.prec == 0
                || component.prec > 31)
                throw Broken();
        }
        const bool isCMYK = m_info.colorModel == ColorModel::CMYK;
        const bool isGrey = m_info.colorModel == ColorModel::Gray;
        const bool isYCC = !isGrey && !isCMYK
            && (image.color_space == OPJ_CLRSPC_SYCC || image.comps[1].dx > image.comps[0].dx);
        const std::uint32_t wide = halved(m_info.pixelsWide, halvings);
        const std::uint32_t high = halved(m_info.pixelsHigh, halvings);
        sink.begin(wide, high,
            isCMYK                ? PixelLayout::InvertedCMYK
                : m_info.hasAlpha ? PixelLayout::Straight
                                  : PixelLayout::Opaque);
        std::vector<std::uint8_t> row(std::size_t { wide } * 4, 255);
        for (std::uint32_t y = 0; y < high; ++y) {
            for (std::uint32_t x = 0; x < wide; ++x) {
                std::uint8_t* pixel = &row[std::size_t { x } * 4];
                for (std::uint32_t index = 0; index < (isGrey ? 1 : used); ++index)
                    pixel[index] = shade(image.comps[index], x, y);
                if (isGrey)
                    pixel[1] = pixel[2] = pixel[0];
                if (isGrey && used > 1)
                    pixel[3] = shade(image.comps[1], x, y);
                if (isYCC)
                    convertFromYCC(pixel);
                for (std::uint32_t index = 0; isCMYK && index < 4; ++index)
                    pixel[index] = static_cast<std::uint8_t>(255 - pixel[index]);
            }
            sink.row(row.data());
        }
    }

    Data m_data;
    ImageInfo m_info;
};

} // namespace

} // namespace caddis::image

caddis::image::Reader* caddisOpenReader(const caddis::Data& data)
{
    return std::make_unique<caddis::image::JPEG2000Reader>(data).release();
}
