#include "platform/image/engine/ReadPages.h"
#include "platform/image/engine/Readers.h"
#include "platform/image/engine/TIFFRows.h"

#include <algorithm>
#include <cstring>

namespace caddis::image {

namespace {

struct Input {
    Data data;
    std::size_t place = 0;
    ReadPages pages {};
};

Input& of(thandle_t handle) { return *static_cast<Input*>(handle); }

tmsize_t read(thandle_t handle, void* out, tmsize_t count)
{
    Input& input = of(handle);
    const std::size_t start = std::min(input.place, input.data.size());
    const std::size_t some = std::min(static_cast<std::size_t>(count), input.data.size() - start);
    std::memcpy(out, input.data.bytes() + start, some);
    input.place = start + some;
    input.pages.add(input.data.chars().substr(start, some));
    return static_cast<tmsize_t>(some);
}

tmsize_t refuse(thandle_t, void*, tmsize_t) { return 0; }

toff_t seek(thandle_t handle, toff_t offset, int from)
{
    Input& input = of(handle);
    const std::size_t base = from == SEEK_SET ? 0 : from == SEEK_CUR ? input.place : input.data.size();
    return input.place = base + offset;
}

toff_t size(thandle_t handle) { return of(handle).data.size(); }

int close(thandle_t) { return 0; }

int silent(TIFF*, void*, const char*, const char*, va_list) { return 1; }

TIFF* openTIFFFile(Input& input)
{
    const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(
        TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), limits::MostBytesInMemory);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), silent, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), silent, nullptr);
    // No mapping by libtiff (m): the bytes stay ours.
    return TIFFClientOpenExt(
        "picture", "rm", &input, read, refuse, seek, close, size, nullptr, nullptr, options.get());
}

struct Picture : TIFFRGBAImage {
    explicit Picture(TIFF* tiff)
        : TIFFRGBAImage {}
    {
        char reason[1024];
        if (!TIFFRGBAImageBegin(this, tiff, 0, reason))
            throw Broken();
        req_orientation = orientation; // Rows come as they are stored.
    }
    ~Picture() { TIFFRGBAImageEnd(this); }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
};

class TIFFReader final : public Reader {
public:
    explicit TIFFReader(const Data& data)
        : m_input { data }
        , m_tiff(openTIFFFile(m_input), TIFFClose)
    {
        if (!m_tiff)
            throw Broken();
    }

    std::size_t count() override
    {
        if (!m_count)
            m_count = TIFFNumberOfDirectories(m_tiff.get());
        return *m_count;
    }

    std::optional<ImageInfo> info(std::size_t index) override
    {
        select(index);
        ImageInfo info;
        info.pixelsWide = field<std::uint32_t>(TIFFTAG_IMAGEWIDTH);
        info.pixelsHigh = field<std::uint32_t>(TIFFTAG_IMAGELENGTH);
        const auto orientation = field<std::uint16_t>(TIFFTAG_ORIENTATION);
        info.orientation = orientation <= 8 ? orientation : 0;
        info.depth = field<std::uint16_t>(TIFFTAG_BITSPERSAMPLE);
        info.isFloat = field<std::uint16_t>(TIFFTAG_SAMPLEFORMAT) == SAMPLEFORMAT_IEEEFP;
        const auto photometric = field<std::uint16_t>(TIFFTAG_PHOTOMETRIC);
        info.isIndexed = photometric == PHOTOMETRIC_PALETTE;
        info.colorModel = photometric <= PHOTOMETRIC_MINISBLACK ? ColorModel::Gray
            : photometric == PHOTOMETRIC_SEPARATED              ? ColorModel::CMYK
            : photometric == PHOTOMETRIC_CIELAB                 ? ColorModel::Lab
                                                                : ColorModel::RGB;
        info.hasAlpha = kindOfAlpha(m_tiff.get()) != 0;
        const double unit = field<std::uint16_t>(TIFFTAG_RESOLUTIONUNIT) == RESUNIT_CENTIMETER ? 2.54 : 1;
        info.dpiWidth = static_cast<double>(field<float>(TIFFTAG_XRESOLUTION)) * unit;
        info.dpiHeight = static_cast<double>(field<float>(TIFFTAG_YRESOLUTION)) * unit;
        return info;
    }

    void decode(std::size_t index, Target, RowSink& sink) override
    {
        select(index);
        if (field<std::uint16_t>(TIFFTAG_PHOTOMETRIC) == PHOTOMETRIC_YCBCR)
            TIFFSetField(m_tiff.get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        if (auto rows = TIFFRows::of(m_tiff.get()))
            decodeRows(*rows, sink);
        else
            decodeBands(sink);
    }

    std::optional<Data> profile(std::size_t index) override
    {
        select(index);
        std::uint32_t size = 0;
        const void* bytes = nullptr;
        if (!TIFFGetField(m_tiff.get(), TIFFTAG_ICCPROFILE, &size, &bytes) || size > limits::MostProfileBytes)
            return std::nullopt;
        return Data::copyOf({ static_cast<const char*>(bytes), size });
    }

private:
    void decodeRows(TIFFRows& rows, RowSink& sink)
    {
        const auto high = field<std::uint32_t>(TIFFTAG_IMAGELENGTH);
        sink.begin(field<std::uint32_t>(TIFFTAG_IMAGEWIDTH), high, rows.layout());
        for (std::uint32_t y = 0; y < high; ++y)
            sink.row(rows.next());
    }

    // By libtiff's own conversion to RGBA, which knows all other forms.
    void decodeBands(RowSink& sink)
    {
        Picture picture(m_tiff.get());
        const std::uint32_t rows = rowsOfBand(picture.height);
        // Half of the memory: libtiff has the strip or the tiles beside the band.
        if (!limits::allows(picture.width, rows, limits::MostPixelsInMemory / 2))
            throw Broken();
        sink.begin(
            picture.width, picture.height, picture.alpha ? PixelLayout::Premultiplied : PixelLayout::Opaque);
        std::vector<std::uint32_t> band(std::size_t { picture.width } * rows);
        for (std::uint32_t top = 0; top < picture.height; top += rows) {
            const std::uint32_t some = std::min(rows, picture.height - top);
            picture.row_offset = static_cast<int>(top);
            if (!TIFFRGBAImageGet(&picture, band.data(), picture.width, some))
                throw Broken();
            for (std::uint32_t y = 0; y < some; ++y)
                sink.row(
                    reinterpret_cast<const std::uint8_t*>(band.data() + std::size_t { y } * picture.width));
        }
    }

    void select(std::size_t index)
    {
        if (!TIFFSetDirectory(m_tiff.get(), static_cast<tdir_t>(index)))
            throw Broken();
    }
    template <typename Number> Number field(std::uint32_t tag) const
    {
        return fieldOf<Number>(m_tiff.get(), tag);
    }
    // Whole strips or rows of tiles, so that none is unpacked twice.
    std::uint32_t rowsOfBand(std::uint32_t high) const
    {
        const auto step = TIFFIsTiled(m_tiff.get()) ? field<std::uint32_t>(TIFFTAG_TILELENGTH)
                                                    : field<std::uint32_t>(TIFFTAG_ROWSPERSTRIP);
        const std::uint32_t least = std::clamp<std::uint32_t>(step, 1, high);
        return std::min(high, least * std::max<std::uint32_t>(1, 16 / least));
    }

    Input m_input;
    std::unique_ptr<TIFF, void (*)(TIFF*)> m_tiff;
    std::optional<std::size_t> m_count;
};

} // namespace

std::unique_ptr<Reader> openTIFF(const Data& data) { return std::make_unique<TIFFReader>(data); }

} // namespace caddis::image
