// Order and filtered equality beside their definitions on mapped and filtered copies.
//
// Invariants: an order has the sign of the copies' order; filtered equality is equality of the members, and a
// filtered prefix is a prefix of the members.

#include "Fuzz.h"
#include "TwoRuns.h"
#include "text/FastComparison.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const TwoRuns runs(data, size);
    const CharacterSetRep& set = alphaCharacterSetRep();
    const auto members = [&](std::u16string units, const ConversionTable* table) {
        std::erase_if(units, [&](char16_t unit) { return !set.contains(unit); });
        return mapped(units, table);
    };
    const auto check = [&](const ConversionTable* table, bool noCase) {
        const auto order = mapped(runs.first, table) <=> mapped(runs.second, table);
        INVARIANT(order == (fastCompareUnicharsUsingConversionTable(runs.first, runs.second, table) <=> 0));
        const std::u16string first = members(runs.first, table);
        const std::u16string second = members(runs.second, table);
        const auto filtered = [&](bool prefix) {
            return _equalCharsOfCharacterSetRep(
                runs.first, runs.second, set, { .noCase = noCase, .prefix = prefix });
        };
        INVARIANT(filtered(false) == (first == second));
        INVARIANT(filtered(true) == first.starts_with(second));
    };
    check(nullptr, false);
    check(&upperCharsTable(), true);
    return 0;
}
