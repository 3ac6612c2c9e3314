#include "bundles/OfficeLegacy/BinaryStrings.h"

#include <algorithm>

namespace caddis::bundles {

namespace {

constexpr unsigned Wide = 1, FarEastern = 4, Rich = 8; // flags of a string

} // namespace

void RecordReader::toNextPiece()
{
    while (m_piece < m_pieces.size() && m_place >= m_pieces[m_piece].size()) {
        ++m_piece;
        m_place = 0;
    }
}

std::uint8_t RecordReader::u8()
{
    toNextPiece();
    return isAtEnd() ? 0 : static_cast<std::uint8_t>(m_pieces[m_piece][m_place++]);
}

std::uint16_t RecordReader::u16()
{
    const unsigned low = u8();
    return static_cast<std::uint16_t>(low | unsigned(u8()) << 8);
}

std::uint32_t RecordReader::u32()
{
    const std::uint32_t low = u16();
    return low | std::uint32_t(u16()) << 16;
}

void RecordReader::skip(std::size_t count)
{
    for (toNextPiece(); count > 0 && !isAtEnd(); toNextPiece()) {
        const std::size_t here = std::min(count, m_pieces[m_piece].size() - m_place);
        m_place += here;
        count -= here;
    }
}

String RecordReader::characters(std::size_t length, bool isWide)
{
    std::u16string units;
    while (units.size() < length && !isAtEnd()) {
        if (m_place >= m_pieces[m_piece].size()) {
            toNextPiece();
            isWide = !isAtEnd() && (u8() & Wide) != 0;
            continue;
        }
        units += static_cast<char16_t>(isWide ? u16() : u8());
    }
    return String(units);
}

String RecordReader::unicodeString(std::size_t length)
{
    const unsigned flags = u8();
    const std::size_t runs = flags & Rich ? u16() : 0;
    const std::size_t phonetic = flags & FarEastern ? u32() : 0;
    String text = characters(length, (flags & Wide) != 0);
    constexpr std::size_t RunSize = 4;
    skip(RunSize * runs + phonetic);
    return text;
}

} // namespace caddis::bundles
