#pragma once

#include "platform/unicode/EncodingList.h"
#include "platform/unicode/LegacyTables.h"

#include <array>
#include <utility>
#include <vector>

namespace caddis::encodings {

/// Inside this folder: an encoding whose every byte stands for itself, as a table.
class SingleByteEncoding {
public:
    /// The table of such a row, made at its first use and kept; null when the engine does not have it.
    static const SingleByteEncoding* of(const Row& row);

    Decoded decode(std::string_view bytes) const;
    std::optional<std::string> encode(std::u16string_view text) const;

private:
    SingleByteEncoding(const std::array<char16_t, 256>& units, std::span<const Expansion> expansions);
    static const SingleByteEncoding* make(const Row& row);

    void decodeInto(char16_t* out, std::string_view bytes) const;
    String decodeExpanding(std::string_view bytes) const;

    std::array<char16_t, 256> m_units;
    std::span<const Expansion> m_expansions;
    bool m_holdsAscii = true; // bytes 00 to 7F are ASCII
    bool m_hasHoles = false; // some byte is undefined
    std::vector<std::pair<char16_t, char>> m_bytes; // sorted by unit
};

} // namespace caddis::encodings
