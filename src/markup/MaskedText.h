#pragma once

#include "markup/UnitMasks.h"
#include "platform/base/Range.h"

#include <bit>
#include <string_view>

namespace caddis {

/// A text beside the masks of its blocks, which are made in batches around the place that is asked for.
class MaskedText {
public:
    explicit MaskedText(std::u16string_view units)
        : m_units(units)
    {
        load(0);
    }

    const char16_t* units() const { return m_units.data(); }
    std::size_t length() const { return m_units.size(); }
    std::size_t blocks() const { return (length() + BlockUnits - 1) / BlockUnits; }

    /// Masks that hold `block` and the next one; behind the text only `nameEnd` has bits. Valid until the
    /// next call. `block` must be below `blocks()`.
    const UnitMasks& masks(std::size_t block)
    {
        if (block - m_first >= UnitMasks::Batch)
            load(block);
        return m_masks;
    }
    /// Where `block` stands in those masks.
    std::size_t indexOf(std::size_t block) const { return block - m_first; }

    /// How many units, from the first of those masks on, they speak of.
    std::size_t unitsAtHand() const { return m_loaded * BlockUnits; }

    /// The first unit of the class `mask` at or behind `from` that `accepts` says yes to, else NotFound.
    template <typename Accepts>
    std::size_t find(UnitMasks::Words UnitMasks::*mask, std::size_t from, Accepts&& accepts)
    {
        std::uint64_t wanted = ~std::uint64_t(0) << from % BlockUnits;
        for (std::size_t block = from / BlockUnits; block < blocks(); ++block) {
            for (std::uint64_t bits = (masks(block).*mask)[indexOf(block)] & wanted; bits; bits &= bits - 1) {
                const std::size_t at = block * BlockUnits + static_cast<unsigned>(std::countr_zero(bits));
                if (accepts(at))
                    return at;
            }
            wanted = ~std::uint64_t(0);
        }
        return NotFound;
    }

private:
    void load(std::size_t block);

    std::u16string_view m_units;
    std::size_t m_first = 0;
    std::size_t m_loaded = 0;
    UnitMasks m_masks;
};

} // namespace caddis
