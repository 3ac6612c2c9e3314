#pragma once

#include "platform/image/codecs/pict/Canvas.h"

#include <chrono>

namespace caddis::image {

/// Carries out the operators of a QuickDraw picture upon a canvas: Inside Macintosh, Imaging With QuickDraw,
/// appendix A.
class Interpreter {
public:
    Interpreter(Cursor cursor, bool isVersion2, Canvas& canvas)
        : m_cursor(cursor)
        , m_isVersion2(isVersion2)
        , m_canvas(canvas)
    {
    }

    /// To the end of the picture, or of what can be understood.
    void run();

private:
    bool step();
    bool setState(std::uint32_t code);
    bool setColour(std::uint32_t code);
    bool drawLine(std::uint32_t code);
    bool drawText(std::uint32_t code);
    bool drawShape(std::uint32_t code);
    bool drawPixels(std::uint32_t code);
    bool skip(std::uint32_t code);
    void drawQuickTime();
    void drawBoxed(std::uint32_t kind, Verb verb, bool isSame);
    void readPattern(Pen& pen);
    void readRows(Pen& pen);
    std::vector<Point> readPolygon();

    Cursor m_cursor;
    bool m_isVersion2;
    Canvas& m_canvas;
    Point m_place; // The pen's.
    Point m_textPlace;
    Box m_lastBoxes[4]; // Of rectangles, rounded ones, ovals and arcs.
    bool m_hasQuickTime = false;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

} // namespace caddis::image
