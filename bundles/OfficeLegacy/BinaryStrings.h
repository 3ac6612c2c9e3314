#pragma once

#include "platform/base/String.h"

#include <string_view>
#include <vector>

namespace caddis::bundles {

/// Reads what one record of a workbook holds, and the records that continue it (MS-XLS 2.1.4), as if it were
/// in one piece. Behind the end everything is 0.
class RecordReader {
public:
    explicit RecordReader(std::vector<std::string_view> pieces)
        : m_pieces(std::move(pieces))
    {
    }

    bool isAtEnd() const { return m_piece >= m_pieces.size(); }
    std::uint8_t u8();
    std::uint16_t u16();
    std::uint32_t u32();
    void skip(std::size_t count);

    /// A string of `length` characters as Excel 97 writes them: flags, perhaps the sizes of what follows it,
    /// the characters in 8 or 16 bits. Where it goes on in another piece, the flags are said again.
    String unicodeString(std::size_t length);
    /// The same with its length in front, in 16 bits.
    String unicodeString() { return unicodeString(u16()); }

private:
    void toNextPiece();
    String characters(std::size_t length, bool isWide);

    std::vector<std::string_view> m_pieces;
    std::size_t m_piece = 0;
    std::size_t m_place = 0;
};

} // namespace caddis::bundles
