#include "platform/image/codecs/pict/Interpreter.h"

#include "platform/image/Limits.h"
#include "platform/image/Reader.h"
#include "platform/image/codecs/pict/QuickTimeImage.h"
#include "platform/image/codecs/pict/Region.h"
#include "platform/unicode/TextEncoding.h"

namespace caddis::image {

namespace {

enum Code : std::uint32_t {
    Clip = 0x01,
    BackPattern = 0x02,
    TextFont = 0x03,
    TextFace = 0x04,
    PenSize = 0x07,
    PenMode = 0x08,
    PenPattern = 0x09,
    FillPattern = 0x0A,
    OvalSize = 0x0B,
    TextSize = 0x0D,
    OldForeColour = 0x0E,
    OldBackColour = 0x0F,
    BackPixels = 0x12,
    PenPixels = 0x13,
    FillPixels = 0x14,
    ForeColour = 0x1A,
    BackColour = 0x1B,
    Line = 0x20,
    LineFrom = 0x21,
    ShortLine = 0x22,
    ShortLineFrom = 0x23,
    LongText = 0x28,
    TextRight = 0x29,
    TextDown = 0x2A,
    TextRightDown = 0x2B,
    Bits = 0x90,
    BitsOfRegion = 0x91,
    PackedBits = 0x98,
    PackedBitsOfRegion = 0x99,
    DirectBits = 0x9A,
    DirectBitsOfRegion = 0x9B,
    LongComment = 0xA1,
    End = 0xFF,
    QuickTime = 0x8200,
};

// Modes of transfer in which index 0, or the back colour, leaves what is there.
bool leavesZero(int mode) { return (mode & ~0x38) == 1 || mode == 36; }

// Coordinates have 16 bits.
Point moved(Point from, Point by)
{
    return { static_cast<std::int16_t>(from.y + by.y), static_cast<std::int16_t>(from.x + by.x) };
}

// The eight colours of the first QuickDraw.
Colour oldColour(std::uint32_t number)
{
    switch (number) {
    case 30:
        return 0xFFFFFFFF;
    case 69:
        return 0xFFFCF305;
    case 137:
        return 0xFFF20884;
    case 205:
        return 0xFFDD0806;
    case 273:
        return 0xFF02ABEA;
    case 341:
        return 0xFF1FB714;
    case 409:
        return 0xFF0000D4;
    default:
        return 0xFF000000;
    }
}

} // namespace

void Interpreter::run()
{
    while (!m_cursor.isAtEnd() && step())
        if (std::chrono::steady_clock::now() > m_start + limits::MostTime)
            throw Broken();
}

bool Interpreter::step()
{
    if (m_isVersion2)
        m_cursor.skip(m_cursor.place() % 2);
    const std::uint32_t code = m_isVersion2 ? m_cursor.u16() : m_cursor.u8();
    if (code == End)
        return false;
    return setState(code) || setColour(code) || drawLine(code) || drawText(code) || drawShape(code)
        || drawPixels(code) || skip(code);
}

bool Interpreter::setState(std::uint32_t code)
{
    switch (code) {
    case Clip:
        m_canvas.clip(readRegion(m_cursor));
        return true;
    case TextFont:
        m_canvas.text.font = m_cursor.i16();
        return true;
    case TextFace:
        m_canvas.text.face = m_cursor.u8();
        return true;
    case TextSize:
        m_canvas.text.size = std::max(m_cursor.i16(), 0);
        return true;
    case PenSize:
        m_canvas.penSize = m_cursor.point();
        return true;
    case PenMode:
        m_canvas.penMode = m_cursor.i16();
        return true;
    case OvalSize:
        m_canvas.ovalSize = m_cursor.point();
        return true;
    default:
        return false;
    }
}

bool Interpreter::setColour(std::uint32_t code)
{
    const auto plain = [&](Pen& pen) {
        readRows(pen);
        return true;
    };
    switch (code) {
    case BackPattern:
        return plain(m_canvas.backPattern);
    case PenPattern:
        return plain(m_canvas.pen);
    case FillPattern:
        return plain(m_canvas.fill);
    case BackPixels:
        readPattern(m_canvas.backPattern);
        return true;
    case PenPixels:
        readPattern(m_canvas.pen);
        return true;
    case FillPixels:
        readPattern(m_canvas.fill);
        return true;
    case OldForeColour:
        m_canvas.fore = oldColour(m_cursor.u32());
        return true;
    case OldBackColour:
        m_canvas.back = oldColour(m_cursor.u32());
        return true;
    case ForeColour:
        m_canvas.fore = readColour(m_cursor);
        return true;
    case BackColour:
        m_canvas.back = readColour(m_cursor);
        return true;
    default:
        return false;
    }
}

void Interpreter::readRows(Pen& pen)
{
    const std::string_view bytes = m_cursor.run(8);
    pen = {};
    std::copy(bytes.begin(), bytes.end(), pen.pattern.begin());
}

// A pattern of pixels counts as their mean, one that stands for a colour as that.
void Interpreter::readPattern(Pen& pen)
{
    const std::uint32_t kind = m_cursor.u16();
    readRows(pen);
    if (kind == 2) {
        pen.colour = readColour(m_cursor);
    } else if (kind == 1) {
        const PixelMapHead head = PixelMapHead::read(m_cursor, false);
        const auto pixels = readPixels(m_cursor, head, true, m_canvas.fore, m_canvas.back, false);
        std::uint64_t sums[3] = {};
        for (const Colour pixel : pixels)
            for (std::size_t index = 0; index < 3; ++index)
                sums[index] += pixel >> (index * 8) & 0xFF;
        pen.colour = 0xFF000000;
        for (std::size_t index = 0; index < 3; ++index)
            *pen.colour |= static_cast<Colour>(sums[index] / pixels.size()) << (index * 8);
    }
}

bool Interpreter::drawLine(std::uint32_t code)
{
    if (code < Line || code > ShortLineFrom)
        return false;
    if (code == Line || code == ShortLine)
        m_place = m_cursor.point();
    const Point from = m_place;
    if (code == Line || code == LineFrom) {
        m_place = m_cursor.point();
    } else {
        m_place = moved(m_place, { 0, m_cursor.i8() });
        m_place = moved(m_place, { m_cursor.i8(), 0 });
    }
    m_canvas.line(from, m_place);
    return true;
}

bool Interpreter::drawText(std::uint32_t code)
{
    if (code < LongText || code > TextRightDown)
        return false;
    if (code == LongText)
        m_textPlace = m_cursor.point();
    if (code == TextRight || code == TextRightDown)
        m_textPlace = moved(m_textPlace, { 0, static_cast<int>(m_cursor.u8()) });
    if (code == TextDown || code == TextRightDown)
        m_textPlace = moved(m_textPlace, { static_cast<int>(m_cursor.u8()), 0 });
    const std::string_view bytes = m_cursor.run(m_cursor.u8());
    // What stands beside a compressed picture tells those who lack its decompressor.
    const auto text = m_hasQuickTime ? std::nullopt : decodeText(bytes, CFStringEncoding::MacRoman);
    if (text)
        m_canvas.characters(m_textPlace, text->utf8());
    return true;
}

// Seven kinds of shapes with five verbs each, then the same ones with the last shape of the kind.
bool Interpreter::drawShape(std::uint32_t code)
{
    const std::uint32_t kind = code >> 4;
    const bool isSame = (code & 8) != 0;
    const auto verb = static_cast<Verb>(code & 7);
    if (kind < 3 || kind > 8 || (code & 7) > 4)
        return false;
    if (kind <= 6)
        drawBoxed(kind, verb, isSame);
    else if (isSame) // No program ever wrote these.
        return true;
    else if (kind == 7)
        m_canvas.polygon(verb, readPolygon());
    else
        m_canvas.region(verb, readRegion(m_cursor));
    return true;
}

void Interpreter::drawBoxed(std::uint32_t kind, Verb verb, bool isSame)
{
    Box& box = m_lastBoxes[kind - 3];
    if (!isSame)
        box = m_cursor.box();
    if (kind == 3) {
        m_canvas.rectangle(verb, box);
    } else if (kind == 4) {
        m_canvas.roundRectangle(verb, box);
    } else if (kind == 5) {
        m_canvas.oval(verb, box);
    } else {
        const int start = m_cursor.i16();
        m_canvas.arc(verb, box, start, m_cursor.i16());
    }
}

std::vector<Point> Interpreter::readPolygon()
{
    const std::size_t start = m_cursor.place();
    const std::size_t end = start + m_cursor.u16();
    m_cursor.skip(8); // Its box.
    std::vector<Point> points;
    while (m_cursor.place() + 4 <= end && !m_cursor.isAtEnd())
        points.push_back(m_cursor.point());
    return points;
}

bool Interpreter::drawPixels(std::uint32_t code)
{
    if (code == QuickTime) {
        drawQuickTime();
        return true;
    }
    const bool isDirect = code == DirectBits || code == DirectBitsOfRegion;
    const bool isPacked = isDirect || code == PackedBits || code == PackedBitsOfRegion;
    if (!isPacked && code != Bits && code != BitsOfRegion)
        return false;
    const PixelMapHead head = PixelMapHead::read(m_cursor, isDirect);
    const Box from = m_cursor.box();
    const Box to = m_cursor.box();
    const bool isZeroClear = leavesZero(m_cursor.i16()) && !isDirect;
    if ((code & 1) != 0)
        readRegion(m_cursor);
    auto pixels = readPixels(m_cursor, head, isPacked, m_canvas.fore, m_canvas.back, isZeroClear);
    m_canvas.pixels(pixels, head.bounds, from, to);
    return true;
}

void Interpreter::drawQuickTime()
{
    const std::size_t size = m_cursor.u32();
    const std::size_t end = m_cursor.place() + size;
    m_cursor.skip(2);
    double matrix[9];
    for (double& number : matrix)
        number = m_cursor.fixed();
    const std::size_t matte = m_cursor.u32();
    m_cursor.skip(8 + 2);
    const Box from = m_cursor.box();
    m_cursor.skip(4);
    const std::size_t mask = m_cursor.u32();
    if (matte > 0)
        m_cursor.skip(m_cursor.u32() - 4 + matte);
    m_cursor.skip(mask);
    const std::size_t length = m_cursor.u32();
    m_cursor.moveTo(m_cursor.place() - 4);
    const std::string_view description = m_cursor.run(length);
    const std::string_view data = m_cursor.run(Bytes(description).be32(44));
    if (const auto bitmap = readQuickTimeImage(description, data)) {
        m_hasQuickTime = true;
        const auto scaled = [](int side, double scale) {
            return static_cast<int>(std::clamp(side * scale, 0.0, 65'535.0));
        };
        const auto left = static_cast<int>(matrix[6]);
        const auto top = static_cast<int>(matrix[7]);
        m_canvas.bitmap(*bitmap,
            { top, left, top + scaled(from.high(), matrix[4]), left + scaled(from.wide(), matrix[0]) });
    }
    m_cursor.moveTo(end);
}

// Those that draw nothing here, and what is reserved: all say how long they are.
bool Interpreter::skip(std::uint32_t code)
{
    static constexpr std::uint8_t lengths[]
        = { 0, 0, 8, 2, 1, 2, 4, 4, 2, 8, 8, 4, 4, 2, 4, 4, 8, 1, 0, 0, 0, 2, 2, 0, 0, 0, 6, 6, 0, 6, 0, 6 };
    const std::uint32_t shape = code & 0xF8;
    if (code < std::size(lengths))
        m_cursor.skip(lengths[code]);
    else if (code == 0xA0)
        m_cursor.skip(2);
    else if (shape == 0x68)
        m_cursor.skip(4);
    else if (shape == 0x30 || shape == 0x40 || shape == 0x50)
        m_cursor.skip(8);
    else if (shape == 0x60)
        m_cursor.skip(12);
    else if (shape == 0x70 || shape == 0x80)
        m_cursor.skip(std::max(m_cursor.u16(), 2U) - 2);
    else if (code == LongComment)
        m_cursor.skip(m_cursor.u32() & 0xFFFF); // Its kind stands before its length.
    else if ((code >= 0x24 && code <= 0x2F) || (code >= 0x90 && code <= 0xAF))
        m_cursor.skip(m_cursor.u16());
    else if ((code >= 0xD0 && code < 0x100) || code >= 0x8100)
        m_cursor.skip(m_cursor.u32());
    else if (code >= 0x100 && code < 0x8000)
        m_cursor.skip(std::size_t { code >> 8 } * 2);
    return true;
}

} // namespace caddis::image
