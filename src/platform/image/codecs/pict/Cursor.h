#pragma once

#include "platform/image/engine/Bytes.h"

#include <algorithm>

namespace caddis::image {

/// QuickDraw's rectangle, in its coordinates: y points down.
struct Box {
    int top = 0;
    int left = 0;
    int bottom = 0;
    int right = 0;

    int wide() const { return std::max(right - left, 0); }
    int high() const { return std::max(bottom - top, 0); }
    bool isEmpty() const { return right <= left || bottom <= top; }
    friend bool operator==(const Box&, const Box&) = default;
};

struct Point {
    int y = 0;
    int x = 0;
};

/// Reads one number after the other; behind the end all are 0.
class Cursor {
public:
    Cursor(Bytes bytes, std::size_t place)
        : m_bytes(bytes)
        , m_place(place)
    {
    }

    bool isAtEnd() const { return m_place >= m_bytes.size(); }
    std::size_t place() const { return m_place; }
    void skip(std::size_t count) { m_place = std::min(m_place + count, m_bytes.size()); }
    void moveTo(std::size_t place) { m_place = std::min(place, m_bytes.size()); }

    std::uint32_t u8() { return m_bytes.u8(advanced(1)); }
    std::uint32_t u16() { return m_bytes.be16(advanced(2)); }
    std::uint32_t u32() { return m_bytes.be32(advanced(4)); }
    int i8() { return static_cast<std::int8_t>(u8()); }
    int i16() { return static_cast<std::int16_t>(u16()); }
    double fixed() { return static_cast<std::int32_t>(u32()) / 65'536.0; }
    std::string_view run(std::size_t count) { return m_bytes.run(advanced(count), count); }
    Point point()
    {
        const int y = i16();
        return { y, i16() };
    }
    Box box()
    {
        const Point first = point();
        const Point second = point();
        return { first.y, first.x, second.y, second.x };
    }

private:
    std::size_t advanced(std::size_t count)
    {
        const std::size_t place = m_place;
        skip(count);
        return place;
    }

    Bytes m_bytes;
    std::size_t m_place;
};

} // namespace caddis::image
