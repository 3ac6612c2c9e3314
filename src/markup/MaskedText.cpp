#include "markup/MaskedText.h"

#include <algorithm>

namespace caddis {

void MaskedText::load(std::size_t block)
{
    m_first = block;
    const std::size_t whole = std::min(length() / BlockUnits - block, Batch + 1);
    classifyUnits(units() + block * BlockUnits, whole, m_masks);
    if (whole > Batch)
        return;
    // The text ends in the block behind the whole ones. Its padding may look like ends of names, which
    // matters to no one: a name lies inside a tag that is closed within the text.
    char16_t padded[BlockUnits] = {};
    std::copy(
        m_units.begin() + static_cast<std::ptrdiff_t>((block + whole) * BlockUnits), m_units.end(), padded);
    classifyUnits(padded, 1, m_masks + whole);
    if (whole < Batch)
        m_masks[whole + 1] = {};
}

} // namespace caddis
