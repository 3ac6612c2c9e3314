#include "text/CharacterTables.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <bit>
#include <numeric>
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

namespace caddis {
namespace {

// How many units `differs` holds for; the first of them is reported.
template <typename Differs> void expectNone(const char* what, Differs differs)
{
    std::size_t count = 0;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        if (!differs(static_cast<char16_t>(unit)))
            continue;
        if (count++ == 0)
            ADD_FAILURE() << what << " differs at U+" << std::hex << unit;
    }
    EXPECT_EQ(count, 0U) << what;
}

bool isOfCategory(char16_t unit, std::uint32_t mask) { return (U_MASK(u_charType(unit)) & mask) != 0; }

void expectCategory(const char* name, const CharacterSetRep& set, std::uint32_t mask)
{
    expectNone(name, [&](char16_t unit) { return set.contains(unit) != isOfCategory(unit, mask); });
}

std::size_t countOf(const CharacterSetRep& set)
{
    return std::accumulate(set.bitmap().begin(), set.bitmap().end(), std::size_t { 0 },
        [](std::size_t sum, unsigned char byte) { return sum + std::size_t(std::popcount(byte)); });
}

using CaseMapping = int32_t (*)(UChar*, int32_t, const UChar*, int32_t, const char*, UErrorCode*);

char16_t mappedByICU(char16_t unit, CaseMapping map)
{
    UChar mapped[8];
    UErrorCode status = U_ZERO_ERROR;
    return map(mapped, 8, &unit, 1, "", &status) == 1 ? mapped[0] : unit;
}

// The first letter of the full canonical decomposition where that is Latin, Greek or Cyrillic.
char16_t foldedByICU(char16_t unit)
{
    if (!isOfCategory(unit, U_GC_L_MASK | U_GC_M_MASK))
        return unit;
    UErrorCode status = U_ZERO_ERROR;
    UChar parts[32];
    const auto length = unorm2_getDecomposition(unorm2_getNFDInstance(&status), unit, parts, 32, &status);
    return length > 0 && parts[0] < 0x0510 ? parts[0] : unit;
}

TEST(CharacterTables, SetsAgreeWithUnicodeOnEveryUnit)
{
    expectCategory("alpha", alphaCharacterSetRep(), U_GC_L_MASK | U_GC_M_MASK);
    expectCategory("alphaNum", alphaNumCharacterSetRep(), U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK);
    expectCategory("digit", digitCharacterSetRep(), U_GC_ND_MASK);
    expectCategory("lower", lowerCharacterSetRep(), U_GC_LL_MASK);
    expectCategory("upper", upperCharacterSetRep(), U_GC_LU_MASK | U_GC_LT_MASK);
    expectCategory("empty", emptyCharacterSetRep(), 0);
    EXPECT_EQ(firstAlphaCharacter(), u'A');
    EXPECT_EQ(lastAlphaCharacter(), 0xFFDC);
}

TEST(CharacterTables, WhiteIsMoreThanBlanksAndLineEnds)
{
    const auto isBlank
        = [](char16_t unit) { return unit == 9 || unit == 0x200B || isOfCategory(unit, U_GC_ZS_MASK); };
    expectNone("space",
        [&](char16_t unit) { return spaceCharacterSetRep().contains(unit) != (isBlank(unit) || unit == 0); });
    const std::u16string_view others(u"\0\x03\n\v\f\r\x85\u2028\u2029\uFEFF\uFFFC", 11);
    expectNone("white", [&](char16_t unit) {
        return whiteCharacterSetRep().contains(unit) != (isBlank(unit) || others.find(unit) != others.npos);
    });
    EXPECT_EQ(countOf(spaceCharacterSetRep()), 20U);
    EXPECT_EQ(countOf(whiteCharacterSetRep()), 30U);
    EXPECT_TRUE(onlyWhiteCharacters(u""));
    EXPECT_TRUE(onlyWhiteCharacters(u" \u00A0\n"));
    EXPECT_FALSE(onlyWhiteCharacters(u" \u00A0\u180E"));
}

TEST(CharacterTables, TablesAgreeWithUnicodeOnEveryUnit)
{
    const auto upper = [](char16_t unit) {
        return isOfCategory(unit, U_GC_LL_MASK) ? mappedByICU(unit, u_strToUpper) : unit;
    };
    const auto lower = [](char16_t unit) {
        return isOfCategory(unit, U_GC_LU_MASK | U_GC_LT_MASK) ? mappedByICU(unit, u_strToLower) : unit;
    };
    expectNone("lower", [&](char16_t unit) { return toLower(unit) != lower(unit); });
    expectNone("upper", [&](char16_t unit) { return toUpper(unit) != upper(unit); });
    expectNone("folding", [&](char16_t unit) { return umlautsToAscii(unit) != foldedByICU(unit); });
    expectNone("lower folding",
        [&](char16_t unit) { return umlautsToLowerAscii(unit) != lower(foldedByICU(unit)); });
    expectNone("upper folding",
        [&](char16_t unit) { return umlautsToUpperAscii(unit) != upper(foldedByICU(unit)); });
}

TEST(CharacterTables, MapsOnlyOneUnitToOneUnit)
{
    EXPECT_EQ(toUpper(u'\u00DF'), u'\u00DF') << "two letters S";
    EXPECT_EQ(toLower(u'\u0130'), u'\u0130') << "i and a combining dot";
    EXPECT_EQ(toUpper(u'\u00E9'), u'\u00C9');
    EXPECT_EQ(toLower(u'\u03A3'), u'\u03C3') << "never the final form";
    EXPECT_EQ(umlautsToAscii(u'\u212B'), u'A');
    EXPECT_EQ(umlautsToAscii(u'\u00D8'), u'\u00D8') << "has no decomposition";
}

TEST(CharacterTables, AsciiFormsUseASpaceForWhatHasNone)
{
    EXPECT_EQ(toAscii(u'\u00E9'), u'e');
    EXPECT_EQ(toAscii(u'\u00DF'), u' ');
    EXPECT_EQ(toAscii(u'\u00A0'), u' ');
    EXPECT_EQ(toUpperAscii(u'\u00E9'), u'E');
    EXPECT_EQ(toLowerAscii(u'\u00C9'), u'e');
    EXPECT_EQ(toLowerAscii(u'\u0416'), u' ');
}

} // namespace
} // namespace caddis
