#pragma once

#include "platform/image/Bitmap.h"
#include "platform/image/codecs/pict/PixelMap.h"

#include <array>
#include <cairo.h>
#include <memory>
#include <string>

namespace caddis::image {

/// What QuickDraw does with the inside or the outline of a shape; in the order of its operators.
enum class Verb { Frame, Paint, Erase, Invert, Fill };

struct Pen {
    std::array<std::uint8_t, 8> pattern; ///< a row of 8 pixels each; 1: the fore colour
    std::optional<Colour> colour; ///< in the place of the pattern
};

struct TextStyle {
    int font = 0; ///< the number of a font family
    std::uint32_t face = 0; ///< 1: bold, 2: italic
    double size = 12;
};

/// White paper of so many pixels that shows `frame`, and QuickDraw's way to draw upon it.
class Canvas {
public:
    Canvas(std::uint32_t wide, std::uint32_t high, Box frame);

    Colour fore = 0xFF000000;
    Colour back = 0xFFFFFFFF;
    Pen pen { { 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF }, {} };
    Pen fill = pen;
    Pen backPattern { {}, {} };
    Point penSize { 1, 1 };
    int penMode = 8;
    Point ovalSize;
    TextStyle text;

    void clip(const std::vector<Box>& boxes);

    void rectangle(Verb verb, Box box);
    void roundRectangle(Verb verb, Box box);
    void oval(Verb verb, Box box);
    /// Degrees, clockwise from the top.
    void arc(Verb verb, Box box, int start, int angle);
    void polygon(Verb verb, const std::vector<Point>& points);
    void region(Verb verb, const std::vector<Box>& boxes);
    void line(Point from, Point to);
    void characters(Point at, const std::string& utf8);
    /// Straight from cairo's own order of bytes; `from` lies in `bounds`.
    void pixels(std::vector<Colour>& colours, Box bounds, Box from, Box to);
    void bitmap(const Bitmap& bitmap, Box to);

    /// The row's pixels in cairo's order: blue first.
    const std::uint8_t* row(std::uint32_t y) const;

private:
    using Context = std::unique_ptr<cairo_t, void (*)(cairo_t*)>;
    using Surface = std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)>;

    cairo_t* context() const { return m_context.get(); }
    void addOval(double left, double top, double wide, double high);
    void addRound(Box box, double inset);
    void setSource(const Pen& chosen);
    /// The path is the shape itself; with Frame, its outer and inner outline.
    void finish(Verb verb);
    void strokeOutline(Verb verb);

    Surface m_surface;
    Context m_context;
};

} // namespace caddis::image
