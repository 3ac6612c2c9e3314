#include "platform/image/codecs/pict/Canvas.h"

#include "platform/image/Reader.h"

#include <numbers>

namespace caddis::image {

namespace {

constexpr int PatternOr = 9; // Modes of the pen: what is 0 in its pattern leaves what is there.
constexpr std::uint32_t Bold = 1;
constexpr std::uint32_t Italic = 2;

double component(Colour colour, int shift) { return (colour >> shift & 0xFF) / 255.0; }

const char* familyOf(int font)
{
    switch (font) {
    case 2: // New York
    case 20: // Times
        return "serif";
    case 4: // Monaco
    case 22: // Courier
        return "monospace";
    default:
        return "sans-serif";
    }
}

} // namespace

Canvas::Canvas(std::uint32_t wide, std::uint32_t high, Box frame)
    : m_surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(wide), static_cast<int>(high)),
        cairo_surface_destroy)
    , m_context(cairo_create(m_surface.get()), cairo_destroy)
{
    cairo_set_source_rgb(context(), 1, 1, 1);
    cairo_paint(context());
    cairo_scale(
        context(), static_cast<double>(wide) / frame.wide(), static_cast<double>(high) / frame.high());
    cairo_translate(context(), -frame.left, -frame.top);
    cairo_set_fill_rule(context(), CAIRO_FILL_RULE_EVEN_ODD);
}

void Canvas::clip(const std::vector<Box>& boxes)
{
    cairo_reset_clip(context());
    for (const Box& box : boxes)
        cairo_rectangle(context(), box.left, box.top, box.wide(), box.high());
    cairo_clip(context());
}

void Canvas::addOval(double left, double top, double wide, double high)
{
    if (!(wide > 0) || !(high > 0))
        return;
    cairo_save(context());
    cairo_translate(context(), left + wide / 2, top + high / 2);
    cairo_scale(context(), wide / 2, high / 2);
    cairo_new_sub_path(context());
    cairo_arc(context(), 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_restore(context());
}

void Canvas::addRound(Box box, double inset)
{
    const double wide = box.wide() - 2 * inset;
    const double high = box.high() - 2 * inset;
    const double x = std::clamp(ovalSize.x / 2.0 - inset, 0.0, std::max(wide, 0.0) / 2);
    const double y = std::clamp(ovalSize.y / 2.0 - inset, 0.0, std::max(high, 0.0) / 2);
    if (!(wide > 0) || !(high > 0))
        return;
    cairo_new_sub_path(context());
    for (int corner = 0; corner < 4; ++corner) { // From the one on the upper right, clockwise.
        const bool isRight = corner < 2;
        const bool isLow = corner == 1 || corner == 2;
        cairo_save(context());
        cairo_translate(
            context(), box.left + inset + (isRight ? wide - x : x), box.top + inset + (isLow ? high - y : y));
        cairo_scale(context(), std::max(x, 0.001), std::max(y, 0.001));
        cairo_arc(context(), 0, 0, 1, (corner - 1) * std::numbers::pi / 2, corner * std::numbers::pi / 2);
        cairo_restore(context());
    }
    cairo_close_path(context());
}

void Canvas::setSource(const Pen& chosen)
{
    const auto& pattern = chosen.pattern;
    const auto isAll = [&](std::uint8_t byte) {
        return std::all_of(pattern.begin(), pattern.end(), [=](std::uint8_t row) { return row == byte; });
    };
    if (chosen.colour || isAll(0xFF) || isAll(0)) {
        const Colour colour = chosen.colour ? *chosen.colour : isAll(0) ? back : fore;
        cairo_set_source_rgb(context(), component(colour, 16), component(colour, 8), component(colour, 0));
        return;
    }
    const Surface tile(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 8, 8), cairo_surface_destroy);
    auto* pixel = reinterpret_cast<Colour*>(cairo_image_surface_get_data(tile.get()));
    for (const std::uint8_t row : pattern)
        for (int x = 7; x >= 0; --x)
            *pixel++ = row >> x & 1 ? fore : penMode == PatternOr ? 0 : back;
    cairo_surface_mark_dirty(tile.get());
    cairo_set_source_surface(context(), tile.get(), 0, 0);
    cairo_pattern_set_extend(cairo_get_source(context()), CAIRO_EXTEND_REPEAT);
}

void Canvas::finish(Verb verb)
{
    if (verb == Verb::Invert) {
        cairo_set_source_rgb(context(), 1, 1, 1);
        cairo_set_operator(context(), CAIRO_OPERATOR_DIFFERENCE);
    } else {
        setSource(verb == Verb::Fill ? fill : verb == Verb::Erase ? backPattern : pen);
    }
    cairo_fill(context());
    cairo_set_operator(context(), CAIRO_OPERATOR_OVER);
}

// Where the inner outline is hard to say. The pen hangs below and to the right of its line.
void Canvas::strokeOutline(Verb verb)
{
    if (verb != Verb::Frame) {
        finish(verb);
        return;
    }
    setSource(pen);
    cairo_set_line_width(context(), std::max(penSize.x, penSize.y));
    if (penSize.x > 0 || penSize.y > 0)
        cairo_stroke(context());
    cairo_new_path(context());
}

void Canvas::rectangle(Verb verb, Box box)
{
    if (box.isEmpty())
        return;
    cairo_rectangle(context(), box.left, box.top, box.wide(), box.high());
    const int wide = box.wide() - 2 * penSize.x;
    const int high = box.high() - 2 * penSize.y;
    if (verb == Verb::Frame && wide > 0 && high > 0)
        cairo_rectangle(context(), box.left + penSize.x, box.top + penSize.y, wide, high);
    finish(verb);
}

void Canvas::roundRectangle(Verb verb, Box box)
{
    if (box.isEmpty())
        return;
    addRound(box, 0);
    if (verb == Verb::Frame)
        addRound(box, std::max(penSize.x, penSize.y));
    finish(verb);
}

void Canvas::oval(Verb verb, Box box)
{
    addOval(box.left, box.top, box.wide(), box.high());
    if (verb == Verb::Frame)
        addOval(box.left + penSize.x, box.top + penSize.y, box.wide() - 2 * penSize.x,
            box.high() - 2 * penSize.y);
    finish(verb);
}

void Canvas::arc(Verb verb, Box box, int start, int angle)
{
    if (box.isEmpty())
        return;
    const double inset = verb == Verb::Frame ? std::max(penSize.x, penSize.y) / 2.0 : 0;
    const auto radians = [](int degrees) { return (degrees % 720 - 90) * std::numbers::pi / 180; };
    cairo_save(context());
    cairo_translate(context(), box.left + box.wide() / 2.0, box.top + box.high() / 2.0);
    cairo_scale(context(), std::max(box.wide() / 2.0 - inset, 0.5), std::max(box.high() / 2.0 - inset, 0.5));
    if (verb != Verb::Frame)
        cairo_move_to(context(), 0, 0);
    if (angle >= 0)
        cairo_arc(context(), 0, 0, 1, radians(start), radians(start + angle));
    else
        cairo_arc_negative(context(), 0, 0, 1, radians(start), radians(start + angle));
    cairo_restore(context());
    strokeOutline(verb);
}

void Canvas::polygon(Verb verb, const std::vector<Point>& points)
{
    const double x = verb == Verb::Frame ? penSize.x / 2.0 : 0;
    const double y = verb == Verb::Frame ? penSize.y / 2.0 : 0;
    for (const Point& point : points)
        cairo_line_to(context(), point.x + x, point.y + y);
    strokeOutline(verb);
}

void Canvas::region(Verb verb, const std::vector<Box>& boxes)
{
    for (const Box& box : boxes)
        cairo_rectangle(context(), box.left, box.top, box.wide(), box.high());
    strokeOutline(verb);
}

void Canvas::line(Point from, Point to)
{
    const double x = penSize.x / 2.0;
    const double y = penSize.y / 2.0;
    cairo_set_line_cap(context(), CAIRO_LINE_CAP_SQUARE);
    cairo_move_to(context(), from.x + x, from.y + y);
    cairo_line_to(context(), to.x + x, to.y + y);
    strokeOutline(Verb::Frame);
    cairo_set_line_cap(context(), CAIRO_LINE_CAP_BUTT);
}

void Canvas::characters(Point at, const std::string& utf8)
{
    cairo_select_font_face(context(), familyOf(text.font),
        text.face & Italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
        text.face & Bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context(), text.size);
    cairo_set_source_rgb(context(), component(fore, 16), component(fore, 8), component(fore, 0));
    cairo_move_to(context(), at.x, at.y);
    cairo_show_text(context(), utf8.c_str());
    cairo_new_path(context());
}

void Canvas::pixels(std::vector<Colour>& colours, Box bounds, Box from, Box to)
{
    if (colours.empty() || from.isEmpty() || to.isEmpty())
        return;
    const Surface surface(
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(colours.data()),
            CAIRO_FORMAT_ARGB32, bounds.wide(), bounds.high(), bounds.wide() * 4),
        cairo_surface_destroy);
    cairo_save(context());
    cairo_rectangle(context(), to.left, to.top, to.wide(), to.high());
    cairo_clip(context());
    cairo_translate(context(), to.left, to.top);
    cairo_scale(context(), static_cast<double>(to.wide()) / from.wide(),
        static_cast<double>(to.high()) / from.high());
    cairo_set_source_surface(context(), surface.get(), bounds.left - from.left, bounds.top - from.top);
    cairo_pattern_set_extend(cairo_get_source(context()), CAIRO_EXTEND_PAD);
    cairo_paint(context());
    cairo_restore(context());
}

void Canvas::bitmap(const Bitmap& bitmap, Box to)
{
    std::vector<Colour> colours(std::size_t { bitmap.pixelsWide } * bitmap.pixelsHigh);
    const std::uint8_t* pixel = bitmap.pixels.bytes();
    for (Colour& colour : colours) {
        colour = Colour { pixel[3] } << 24 | Colour { pixel[0] } << 16 | Colour { pixel[1] } << 8 | pixel[2];
        pixel += 4;
    }
    const Box bounds { 0, 0, static_cast<int>(bitmap.pixelsHigh), static_cast<int>(bitmap.pixelsWide) };
    pixels(colours, bounds, bounds, to);
}

const std::uint8_t* Canvas::row(std::uint32_t y) const
{
    cairo_surface_flush(m_surface.get());
    const std::uint8_t* bytes = cairo_image_surface_get_data(m_surface.get());
    if (!bytes)
        throw Broken();
    return bytes + static_cast<std::size_t>(cairo_image_surface_get_stride(m_surface.get())) * y;
}

} // namespace caddis::image
