#include "platform/image/engine/Exif.h"
#include "platform/image/engine/JPEGMeans.h"
#include "platform/image/engine/Readers.h"

#include <csetjmp>
#include <cstdio>
#include <jpeglib.h>
#include <map>

// Errors leave libjpeg as exceptions: the x86-64 ABI has unwind tables for C functions too.

namespace caddis::image {

namespace {

constexpr int MostScans = 500;

[[noreturn]] void fail(j_common_ptr) { throw Broken(); }

void ignore(j_common_ptr) { }

void ignoreMessage(j_common_ptr, int) { }

class Decompressor {
public:
    explicit Decompressor(const Data& data)
    {
        if (data.size() == 0)
            throw Broken(); // What fails in here once the codec is made would leak it.
        codec.err = jpeg_std_error(&m_errors);
        m_errors.error_exit = fail;
        m_errors.output_message = ignore;
        m_errors.emit_message = ignoreMessage;
        jpeg_create_decompress(&codec);
        jpeg_mem_src(&codec, data.bytes(), data.size());
        codec.mem->max_memory_to_use = limits::MostBytesInMemory;
        m_progress.progress_monitor = watch;
        codec.progress = &m_progress;
    }
    ~Decompressor() { jpeg_destroy_decompress(&codec); }
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;

    jpeg_decompress_struct codec {};

private:
    // A small file may hold very many scans over very many blocks.
    static void watch(j_common_ptr common)
    {
        const auto* codec = reinterpret_cast<j_decompress_ptr>(common);
        const auto* self = reinterpret_cast<const Decompressor*>(codec);
        if (codec->input_scan_number > MostScans
            || std::chrono::steady_clock::now() > self->m_start + limits::MostTime)
            throw Broken();
    }

    jpeg_error_mgr m_errors {};
    jpeg_progress_mgr m_progress {};
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

class JPEGReader final : public Reader {
public:
    explicit JPEGReader(const Data& data)
        : m_data(data)
        , m_segments(segmentsOfHeader(Bytes(data)))
    {
        for (const JPEGSegment& segment : m_segments) {
            const std::string_view body = segment.body(Bytes(m_data));
            if (segment.marker == 0xE1 && body.starts_with(std::string_view("Exif\0\0", 6)) && m_exif.empty())
                m_exif = body.substr(6);
        }
        m_summary = readExif(m_exif);
    }

    std::optional<ImageInfo> info(std::size_t) override
    {
        Decompressor decompressor(m_data);
        auto& codec = decompressor.codec;
        jpeg_read_header(&codec, TRUE);
        ImageInfo info;
        info.pixelsWide = codec.image_width;
        info.pixelsHigh = codec.image_height;
        info.orientation = m_summary.orientation;
        info.depth = static_cast<std::uint32_t>(codec.data_precision);
        info.colorModel = codec.num_components == 1 ? ColorModel::Gray
            : codec.num_components == 4             ? ColorModel::CMYK
                                                    : ColorModel::RGB;
        const double unit = codec.density_unit == 2 ? 2.54 : codec.density_unit == 1 ? 1 : 0;
        info.dpiWidth = m_summary.dpiWidth > 0 ? m_summary.dpiWidth : codec.X_density * unit;
        info.dpiHeight = m_summary.dpiHeight > 0 ? m_summary.dpiHeight : codec.Y_density * unit;
        return info;
    }

    void decode(std::size_t, Target target, RowSink& sink) override;

    std::unique_ptr<Reader> embedded(std::size_t) override
    {
        if (!m_summary.thumbnail)
            return nullptr;
        const std::size_t start = static_cast<std::size_t>(m_exif.data() - m_data.chars().data());
        return openJPEG(m_data.slice({ start + m_summary.thumbnail->location, m_summary.thumbnail->length }));
    }

    std::optional<Data> profile(std::size_t) override;

    Dictionary properties(std::size_t) override;

private:
    bool isProgressive() const
    {
        return std::any_of(m_segments.begin(), m_segments.end(),
            [](const JPEGSegment& segment) { return segment.marker == 0xC2; });
    }

    Data m_data;
    std::vector<JPEGSegment> m_segments;
    std::string_view m_exif;
    ExifSummary m_summary;
};

// The largest of the divisors for which libjpeg has fast transforms that leaves enough pixels.
unsigned divisorFor(const ImageInfo& info, Target target)
{
    const auto isEnough = [&](unsigned divisor) {
        return (info.pixelsWide + divisor - 1) / divisor >= target.wide
            && (info.pixelsHigh + divisor - 1) / divisor >= target.high;
    };
    return isEnough(8) ? 8 : isEnough(4) ? 4 : isEnough(2) ? 2 : 1;
}

// libjpeg gives ink as the file has it: inverted where Adobe's marker stands.
void invert(std::vector<JSAMPLE>& row)
{
    for (JSAMPLE& sample : row)
        sample = static_cast<JSAMPLE>(255 - sample);
}

void JPEGReader::decode(std::size_t index, Target target, RowSink& sink)
{
    const unsigned divisor = divisorFor(*info(index), target);
    if (divisor == 8 && isProgressive() && handMeansOfJPEG(Bytes(m_data), sink))
        return;
    Decompressor decompressor(m_data);
    auto& codec = decompressor.codec;
    jpeg_read_header(&codec, TRUE);
    codec.scale_num = 1;
    codec.scale_denom = divisor;
    codec.do_block_smoothing = FALSE;
    const bool isCMYK = codec.num_components == 4;
    codec.out_color_space = isCMYK ? JCS_CMYK : JCS_EXT_RGBX;
    jpeg_start_decompress(&codec);
    sink.begin(
        codec.output_width, codec.output_height, isCMYK ? PixelLayout::InvertedCMYK : PixelLayout::Opaque);
    std::vector<JSAMPLE> row(std::size_t { codec.output_width } * 4);
    JSAMPROW rows[] = { row.data() };
    while (codec.output_scanline < codec.output_height) {
        jpeg_read_scanlines(&codec, rows, 1);
        if (isCMYK && !codec.saw_Adobe_marker)
            invert(row);
        sink.row(row.data());
    }
}

// The profile stands in parts of at most 64 KiB, which are numbered from 1 and usually in order (ICC.1, B.4).
std::optional<Data> JPEGReader::profile(std::size_t)
{
    constexpr std::string_view head("ICC_PROFILE\0", 12);
    std::map<std::uint8_t, std::string_view> parts;
    for (const JPEGSegment& segment : m_segments) {
        const std::string_view body = segment.body(Bytes(m_data));
        if (segment.marker == 0xE2 && body.starts_with(head) && body.size() > head.size() + 2)
            parts.emplace(static_cast<std::uint8_t>(body[head.size()]), body.substr(head.size() + 2));
    }
    if (parts.empty())
        return std::nullopt;
    std::string whole;
    for (const auto& [number, part] : parts)
        whole += part;
    return Data::adopt(std::move(whole));
}

Dictionary JPEGReader::properties(std::size_t)
{
    Decompressor decompressor(m_data);
    auto& codec = decompressor.codec;
    jpeg_read_header(&codec, TRUE);
    if (!codec.saw_JFIF_marker)
        return {};
    Dictionary jfif { { u"JFIFVersion"_s, Array { codec.JFIF_major_version, codec.JFIF_minor_version } },
        { u"DensityUnit"_s, codec.density_unit }, { u"XDensity"_s, codec.X_density },
        { u"YDensity"_s, codec.Y_density }, { u"IsProgressive"_s, isProgressive() } };
    return { { u"{JFIF}"_s, std::move(jfif) } };
}

} // namespace

std::unique_ptr<Reader> openJPEG(const Data& data) { return std::make_unique<JPEGReader>(data); }

} // namespace caddis::image
