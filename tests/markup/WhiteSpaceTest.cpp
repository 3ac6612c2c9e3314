#include "markup/WhiteSpace.h"

#include "text/CharacterTables.h"

#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>

namespace caddis {
namespace {

std::optional<std::u16string> collapsed(std::u16string_view text, Ampersands ampersands)
{
    std::u16string copy(text.size(), u'#');
    const char16_t* const end = copyCollapsed(text, copy.data(), ampersands);
    if (!end)
        return std::nullopt;
    return copy.substr(0, static_cast<std::size_t>(end - copy.data()));
}

std::u16string collapsedUnitByUnit(std::u16string_view text)
{
    std::u16string copy;
    for (const char16_t unit : text) {
        if (!whiteCharacterSetRep().contains(unit))
            copy += unit;
        else if (!copy.ends_with(u' '))
            copy += u' ';
    }
    return copy;
}

// White space, ASCII and other units at every distance from the ends of vectors.
TEST(WhiteSpace, CollapsesTextOfEveryLengthLikeAUnitByUnitCopy)
{
    std::minstd_rand random(7);
    const std::u16string_view alphabet = u"abcdefgh    \n\u00A0\u00E9\uFEFF\uF8FF~";
    for (std::size_t round = 0; round < 20'000; ++round) {
        std::u16string text(round % 50, u' ');
        for (char16_t& unit : text)
            unit = alphabet[random() % (round % 3 ? 9 : alphabet.size())];
        ASSERT_EQ(collapsed(text, Ampersands::Copied), collapsedUnitByUnit(text));
        ASSERT_EQ(collapsed(text, Ampersands::Refused), collapsedUnitByUnit(text));
        if (text.empty())
            continue;
        text[random() % text.size()] = u'&';
        ASSERT_EQ(collapsed(text, Ampersands::Refused), std::nullopt);
    }
}

} // namespace
} // namespace caddis
