#include "markup/OpenTags.h"

namespace caddis {

// Goes through one block from unit `from` on: the place of the '>' that ends the tag, or BlockUnits and the
// state at the block's end.
unsigned OpenTags::follow(std::size_t block, unsigned from, State& state)
{
    const UnitMasks& masks = m_text.masks(block);
    const std::size_t index = m_text.indexOf(block);
    const std::uint64_t greater = masks.greater[index];
    const std::uint64_t doubles = masks.doubleQuote[index];
    const std::uint64_t singles = masks.singleQuote[index];
    // In each state only these units mean something.
    const std::uint64_t steering[]
        = { masks.equals[index] | greater, doubles | singles | greater, doubles, singles };
    while (from < BlockUnits) {
        const std::uint64_t bits = steering[state] & ~std::uint64_t(0) << from;
        if (!bits)
            break;
        const auto at = static_cast<unsigned>(std::countr_zero(bits));
        const std::uint64_t unit = bits & -bits;
        if (state >= InDouble)
            state = Outside;
        else if (unit & greater)
            return at;
        else if (state == Outside)
            state = AfterEquals;
        else
            state = unit & doubles ? InDouble : InSingle;
        from = at + 1;
    }
    return BlockUnits;
}

std::size_t OpenTags::closingBracket(std::size_t tag)
{
    State state = Outside;
    unsigned from = tag % BlockUnits;
    for (std::size_t block = tag / BlockUnits; block < m_text.blocks(); ++block) {
        const unsigned at = follow(block, from, state);
        if (at < BlockUnits)
            return block * BlockUnits + at;
        from = 0;
        if (!m_returning)
            continue;
        if (m_index.empty())
            buildIndex(block);
        return m_index[block + 1 - m_indexStart][state];
    }
    return NotFound;
}

void OpenTags::buildIndex(std::size_t firstBlock)
{
    m_indexStart = firstBlock;
    const std::size_t count = m_text.blocks() - firstBlock;
    const std::size_t length = m_text.length();
    m_index.resize(count + 1);
    // First every block by itself: an end, or behind all ends the state that it hands to the next block.
    for (std::size_t index = 0; index < count; ++index) {
        for (const State start : { Outside, AfterEquals, InDouble, InSingle }) {
            State state = start;
            const unsigned at = follow(firstBlock + index, 0, state);
            m_index[index][start] = at < BlockUnits ? (firstBlock + index) * BlockUnits + at : length + state;
        }
    }
    // Then from the last block back, what was handed on becomes an end.
    m_index[count].fill(NotFound);
    for (std::size_t index = count; index-- > 0;) {
        for (std::size_t& end : m_index[index]) {
            if (end >= length)
                end = m_index[index + 1][end - length];
        }
    }
}

} // namespace caddis
