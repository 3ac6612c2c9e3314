// HEIC, AVIF and their kin by libheif. It turns and mirrors pictures itself, as the file's boxes say; an Exif
// orientation beside them counts nothing.

#include "platform/image/CodecModule.h"

#include <algorithm>
#include <libheif/heif.h>
#include <vector>

namespace caddis::image {

namespace {

constexpr int LongestSide = 65'535;

void check(heif_error error)
{
    if (error.code != heif_error_Ok)
        throw Broken();
}

using Handle = std::unique_ptr<heif_image_handle, void (*)(const heif_image_handle*)>;

class HEIFReader final : public Reader {
public:
    explicit HEIFReader(const Data& data)
        : m_data(data)
        , m_context(heif_context_alloc(), heif_context_free)
    {
        heif_context_set_max_decoding_threads(m_context.get(), 0);
        heif_context_set_maximum_image_size_limit(m_context.get(), LongestSide);
        check(heif_context_read_from_memory_without_copy(
            m_context.get(), m_data.bytes(), m_data.size(), nullptr));
        const int count = heif_context_get_number_of_top_level_images(m_context.get());
        m_pictures.resize(static_cast<std::size_t>(std::max(count, 0)));
        heif_context_get_list_of_top_level_image_IDs(m_context.get(), m_pictures.data(), count);
        heif_item_id primary = 0;
        if (heif_context_get_primary_image_ID(m_context.get(), &primary).code == heif_error_Ok)
            std::stable_partition(
                m_pictures.begin(), m_pictures.end(), [&](heif_item_id id) { return id == primary; });
    }

    std::size_t count() override { return m_pictures.size(); }

    std::optional<ImageInfo> info(std::size_t index) override { return infoOf(*picture(index)); }

    void decode(std::size_t index, Target, RowSink& sink) override { decodeHandle(*picture(index), sink); }

    std::optional<Data> profile(std::size_t index) override
    {
        const Handle handle = picture(index);
        const std::size_t size = heif_image_handle_get_raw_color_profile_size(handle.get());
        if (size == 0 || size > limits::MostProfileBytes)
            return std::nullopt;
        std::vector<std::uint8_t> bytes(size);
        check(heif_image_handle_get_raw_color_profile(handle.get(), bytes.data()));
        return Data::adopt(std::move(bytes));
    }

    std::unique_ptr<Reader> embedded(std::size_t index) override;

    static ImageInfo infoOf(const heif_image_handle& handle)
    {
        ImageInfo info;
        info.pixelsWide = static_cast<std::uint32_t>(std::max(heif_image_handle_get_width(&handle), 0));
        info.pixelsHigh = static_cast<std::uint32_t>(std::max(heif_image_handle_get_height(&handle), 0));
        info.hasAlpha = heif_image_handle_has_alpha_channel(&handle) != 0;
        const int bits = heif_image_handle_get_luma_bits_per_pixel(&handle);
        info.depth = bits > 0 ? static_cast<std::uint32_t>(bits) : 8;
        return info;
    }

    static void decodeHandle(const heif_image_handle& handle, RowSink& sink)
    {
        const ImageInfo info = infoOf(handle);
        if (!limits::allows(info.pixelsWide, info.pixelsHigh, limits::MostPixelsInMemory))
            throw Broken();
        const std::unique_ptr<heif_decoding_options, void (*)(heif_decoding_options*)> options(
            heif_decoding_options_alloc(), heif_decoding_options_free);
        options->convert_hdr_to_8bit = 1;
        heif_image* decoded = nullptr;
        const heif_error error = heif_decode_image(
            &handle, &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, options.get());
        const std::unique_ptr<heif_image, void (*)(const heif_image*)> image(decoded, heif_image_release);
        check(error);
        int stride = 0;
        const std::uint8_t* row = heif_image_get_plane_readonly(decoded, heif_channel_interleaved, &stride);
        const int wide = heif_image_get_width(decoded, heif_channel_interleaved);
        const int high = heif_image_get_height(decoded, heif_channel_interleaved);
        if (!row || wide <= 0 || high <= 0)
            throw Broken();
        const bool isMultiplied = heif_image_is_premultiplied_alpha(decoded) != 0;
        sink.begin(static_cast<std::uint32_t>(wide), static_cast<std::uint32_t>(high),
            !info.hasAlpha     ? PixelLayout::Opaque
                : isMultiplied ? PixelLayout::Premultiplied
                               : PixelLayout::Straight);
        for (int y = 0; y < high; ++y, row += stride)
            sink.row(row);
    }

private:
    Handle picture(std::size_t index) const
    {
        heif_image_handle* handle = nullptr;
        check(heif_context_get_image_handle(m_context.get(), m_pictures[index], &handle));
        return { handle, heif_image_handle_release };
    }

    Data m_data;
    std::unique_ptr<heif_context, void (*)(heif_context*)> m_context;
    std::vector<heif_item_id> m_pictures; // The file's main picture first.
};

// The handle keeps what it needs of its file alive, but not the bytes.
class HEIFThumbnail final : public Reader {
public:
    HEIFThumbnail(Data data, Handle handle)
        : m_data(std::move(data))
        , m_handle(std::move(handle))
    {
    }
    std::optional<ImageInfo> info(std::size_t) override { return HEIFReader::infoOf(*m_handle); }
    void decode(std::size_t, Target, RowSink& sink) override { HEIFReader::decodeHandle(*m_handle, sink); }

private:
    Data m_data;
    Handle m_handle;
};

std::unique_ptr<Reader> HEIFReader::embedded(std::size_t index)
{
    const Handle whole = picture(index);
    heif_item_id id = 0;
    heif_image_handle* thumbnail = nullptr;
    if (heif_image_handle_get_list_of_thumbnail_IDs(whole.get(), &id, 1) < 1
        || heif_image_handle_get_thumbnail(whole.get(), id, &thumbnail).code != heif_error_Ok)
        return nullptr;
    return std::make_unique<HEIFThumbnail>(m_data, Handle(thumbnail, heif_image_handle_release));
}

} // namespace

} // namespace caddis::image

caddis::image::Reader* caddisOpenReader(const caddis::Data& data)
{
    return std::make_unique<caddis::image::HEIFReader>(data).release();
}
