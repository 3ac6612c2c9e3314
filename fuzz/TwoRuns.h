#pragma once

#include "text/CharacterTables.h"

#include <string>

/// Two runs of units from one input: the first byte says how long the second run is, which comes first. Upper
/// bytes stand for letters with odd cases, a mark, and units that signed bytes can equal.
struct TwoRuns {
    std::u16string first;
    std::u16string second;

    TwoRuns(const std::uint8_t* data, std::size_t size)
    {
        constexpr char16_t Specials[]
            = { 0x0131, 0x017F, 0x212A, 0x00DF, 0x00E9, 0x00C9, 0x0301, 0xFF80, 0xFFC3, 0xFFDC };
        for (std::size_t index = 1; index < size; ++index) {
            const char16_t unit
                = data[index] < 0x80 ? data[index] : Specials[data[index] % std::size(Specials)];
            (second.size() < data[0] ? second : first) += unit;
        }
    }
};

/// The table's entries for the units, or the units themselves without a table.
inline std::u16string mapped(std::u16string units, const caddis::ConversionTable* table)
{
    for (char16_t& unit : units)
        unit = table ? (*table)[unit] : unit;
    return units;
}
