#include "text/FastComparison.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

// Where a search found its needle, or -1.
std::ptrdiff_t at(std::u16string_view haystack, const char16_t* found)
{
    return found ? found - haystack.data() : -1;
}

TEST(FastComparison, TheExactSearchOfUnitsNeverFindsANeedleAtTheVeryEnd)
{
    const std::u16string_view four = u"abcd";
    const std::u16string_view three = u"abc";
    EXPECT_EQ(at(four, fastContainsUnichars(four, u"bc")), 1);
    EXPECT_EQ(at(three, fastContainsUnichars(three, u"bc")), -1);
    EXPECT_EQ(at(three, fastContainsUnichars(three, three)), -1);
    EXPECT_EQ(at(three, fastCaseInsensitiveContainsUnichars(three, u"bC")), 1);
    EXPECT_EQ(at(three, fastCaseInsensitiveContainsUnichars(three, u"ABC")), 0);
    EXPECT_EQ(at(three, fastUnicharsContainChars(three, "bc")), 1);
}

TEST(FastComparison, SearchesFindNeitherEmptyNorLongerNeedles)
{
    const std::u16string_view text = u"text";
    EXPECT_EQ(fastContainsUnichars(text, u""), nullptr);
    EXPECT_EQ(fastCaseInsensitiveUnicharsContainChars(text, ""), nullptr);
    EXPECT_EQ(fastCaseInsensitiveContainsUnichars(text, u"texts"), nullptr);
    EXPECT_EQ(fastUnicharsContainChars(u"", "x"), nullptr);
    EXPECT_EQ(at(text, positionOfCharacters("XT", text, false)), 2);
    EXPECT_EQ(at(text, positionOfCharacters("XT", text, true)), -1);
}

TEST(FastComparison, BytesAreSigned)
{
    const std::u16string_view text = u"\u00E9\uFFE9";
    EXPECT_EQ(at(text, fastUnicharsContainChars(text, "\xE9")), 1);
    EXPECT_EQ(fastCompareUnicharsWithChars(u"\u00E9", "\xE9"), 0xE9 + 23);
    EXPECT_EQ(fastCaseInsensitiveCompareUnicharsWithChars(u"\uFFE9", "\xE9"), 0);
    EXPECT_EQ(fastCompareChars("a", "\xE9"), 'a' + 23);
    EXPECT_EQ(fastCaseInsensitiveCompareChars("a", "\xE9"), 'A' - 0xFFE9);
}

// The block search knows which units have the upper-case form of an ASCII unit; this compares it with the
// table.
TEST(FastComparison, BlocksMissNoFormOfAnAsciiUnit)
{
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        std::u16string haystack(24, u'\u4E00');
        haystack[3] = char16_t(unit);
        const char16_t upper = toUpper(char16_t(unit));
        for (const char16_t first : { upper, toLower(upper) }) {
            const bool found = fastCaseInsensitiveContainsUnichars(haystack, std::u16string(1, first));
            ASSERT_TRUE(found || toUpper(first) != upper) << std::hex << unit;
        }
        ASSERT_FALSE(upper != u'Q' && fastCaseInsensitiveUnicharsContainChars(haystack, "q"));
    }
}

TEST(FastComparison, OrdersByTheFirstDifferenceThenByLength)
{
    const String left(u"the same long beginning, then a");
    const String right(u"the same long beginning, then B");
    EXPECT_EQ(fastCompareUnichars(left, right), u'a' - u'B');
    EXPECT_EQ(fastCaseInsensitiveCompareUnichars(left, right), -1);
    EXPECT_EQ(fastCaseInsensitiveCompareUnichars(u"ABCDEFGHIJKLMN", u"abcdefghijklmnop"), -2);
    EXPECT_EQ(fastCompareUnicharsUsingConversionTable(u"\u00E9", u"e", &umlautsCharsTable()), 0);
    EXPECT_EQ(fastCompareUnicharsUsingConversionTable(u"\u00E9", u"e", nullptr), 0xE9 - 'e');
    EXPECT_EQ(fastCompareUnichars(u"", u""), 0);
}

TEST(FastComparison, FilteredEqualitySkipsWhatIsNotInTheSet)
{
    const CharacterSetRep& letters = alphaCharacterSetRep();
    EXPECT_TRUE(equalStringsNoCaseUsingCharacterSetRep(u"Hello, World!"_s, u"hello world"_s, letters));
    EXPECT_FALSE(equalStringsUsingCharacterSetRep(u"Hello, World!"_s, u"hello world"_s, letters));
    EXPECT_TRUE(equalStringsNoCaseUsingCharacterSetRep(u"co-op"_s, u"Coop"_s, letters));
    EXPECT_TRUE(equalStringsUsingCharacterSetRep(String(), u"?!"_s, letters));
    EXPECT_FALSE(equalStringsUsingCharacterSetRep(u"abc"_s, String(), letters));
    EXPECT_FALSE(equalStringsUsingCharacterSetRep(u"ab"_s, u"abc"_s, letters));
}

TEST(FastComparison, FilteredPrefixesEndWithTheSecondRun)
{
    const CharacterSetRep& letters = alphaCharacterSetRep();
    EXPECT_TRUE(hasPrefixNoCaseUsingCharacterSetRep(u"A-B"_s, u"a"_s, letters));
    EXPECT_FALSE(hasPrefixUsingCharacterSetRep(u"A-B"_s, u"a"_s, letters));
    EXPECT_TRUE(hasPrefixUsingCharacterSetRep(u"A-B"_s, u"..."_s, letters));
    EXPECT_FALSE(hasPrefixUsingCharacterSetRep(u"-"_s, u"A"_s, letters));
    EXPECT_TRUE(equalStringsUsingConversionTable(u"na\u00EFve"_s, u"naive"_s, &umlautsCharsTable()));
    EXPECT_FALSE(equalStringsUsingConversionTable(u"naive"_s, u"Naive"_s, nullptr));
}

} // namespace
} // namespace caddis
