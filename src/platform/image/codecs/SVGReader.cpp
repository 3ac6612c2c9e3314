// SVG by librsvg, drawn at the size that is wanted. The document has no base, so that nothing it refers to is
// opened, neither files nor addresses; the parser's limits against amplification are on.

#include "platform/image/CodecModule.h"

#include <algorithm>
#include <cmath>
#include <librsvg/rsvg.h>

namespace caddis::image {

namespace {

// Of a document that has no size of its own: CSS 2.1, 10.3.2.
constexpr double UsualWidth = 300;
constexpr double UsualHeight = 150;
constexpr double LongestSide = 20'000;
// The library keeps more than a kilobyte for each element.
constexpr std::ptrdiff_t MostTags = 300'000;

// Whether an entity stands for text without elements and other entities. What is behind "<!ENTITY" is given.
bool isPlain(std::string_view declaration)
{
    char quote = 0;
    for (const char unit : declaration) {
        if (unit == '>' && quote == 0)
            return true;
        if (unit == '<' || unit == '&' || (unit == '%' && quote == 0))
            return false;
        if (unit == quote)
            quote = 0;
        else if (quote == 0 && (unit == '"' || unit == '\''))
            quote = unit;
    }
    return false;
}

// Whether the document is about as large as it looks.
bool isBounded(std::string_view text)
{
    constexpr std::string_view mark = "<!ENTITY";
    for (std::size_t place = text.find(mark); place != text.npos; place = text.find(mark, place + 1))
        if (!isPlain(text.substr(place + mark.size())))
            return false;
    return std::count(text.begin(), text.end(), '<') <= MostTags;
}

class SVGReader final : public Reader {
public:
    explicit SVGReader(const Data& data)
        : m_handle(
            isBounded(data.chars()) ? rsvg_handle_new_from_data(data.bytes(), data.size(), nullptr) : nullptr,
            g_object_unref)
    {
        if (!m_handle)
            throw Broken();
        rsvg_handle_set_dpi(handle(), 96);
        double wide = 0;
        double high = 0;
        if (!rsvg_handle_get_intrinsic_size_in_pixels(handle(), &wide, &high)) {
            gboolean hasBox = FALSE;
            RsvgRectangle box {};
            rsvg_handle_get_intrinsic_dimensions(handle(), nullptr, nullptr, nullptr, nullptr, &hasBox, &box);
            wide = hasBox ? box.width : UsualWidth;
            high = hasBox ? box.height : UsualHeight;
        }
        if (!(wide > 0) || !(high > 0) || wide > LongestSide || high > LongestSide)
            throw Broken();
        m_info.pixelsWide = static_cast<std::uint32_t>(std::ceil(wide));
        m_info.pixelsHigh = static_cast<std::uint32_t>(std::ceil(high));
        m_info.hasAlpha = true;
    }

    std::optional<ImageInfo> info(std::size_t) override { return m_info; }

    void decode(std::size_t, Target target, RowSink& sink) override
    {
        if (!limits::allows(target.wide, target.high, limits::MostPixelsInMemory / 2))
            throw Broken();
        const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
            cairo_image_surface_create(
                CAIRO_FORMAT_ARGB32, static_cast<int>(target.wide), static_cast<int>(target.high)),
            cairo_surface_destroy);
        const std::unique_ptr<cairo_t, void (*)(cairo_t*)> context(
            cairo_create(surface.get()), cairo_destroy);
        const RsvgRectangle all { 0, 0, static_cast<double>(target.wide), static_cast<double>(target.high) };
        if (!rsvg_handle_render_document(handle(), context.get(), &all, nullptr))
            throw Broken();
        cairo_surface_flush(surface.get());
        std::uint8_t* row = cairo_image_surface_get_data(surface.get());
        const int stride = cairo_image_surface_get_stride(surface.get());
        if (!row)
            throw Broken();
        sink.begin(target.wide, target.high, PixelLayout::Premultiplied);
        for (std::uint32_t y = 0; y < target.high; ++y, row += stride) {
            // Cairo keeps blue first.
            for (std::size_t x = 0; x < target.wide; ++x)
                std::swap(row[x * 4], row[x * 4 + 2]);
            sink.row(row);
        }
    }

private:
    RsvgHandle* handle() const { return static_cast<RsvgHandle*>(m_handle.get()); }

    std::unique_ptr<void, void (*)(void*)> m_handle;
    ImageInfo m_info;
};

} // namespace

} // namespace caddis::image

caddis::image::Reader* caddisOpenReader(const caddis::Data& data)
{
    return std::make_unique<caddis::image::SVGReader>(data).release();
}
