#include "markup/MaskedText.h"

#include <algorithm>

namespace caddis {

void MaskedText::load(std::size_t block)
{
    m_first = block;
    const std::size_t whole = std::min(length() / BlockUnits - block, UnitMasks::Blocks);
    classifyUnits(units() + block * BlockUnits, whole, m_masks, 0);
    // Behind the whole blocks stands the one in which the text ends, and behind that nothing. The padding may
    // look like ends of names, which matters to no one: a name lies inside a tag that is closed within the
    // text.
    const auto* rest = units() + (block + whole) * BlockUnits;
    m_loaded = std::min(whole + 2, UnitMasks::Blocks);
    for (std::size_t index = whole; index < m_loaded; ++index) {
        char16_t padded[BlockUnits] = {};
        if (index == whole)
            std::copy(rest, units() + length(), padded);
        classifyUnits(padded, 1, m_masks, index);
    }
}

} // namespace caddis
