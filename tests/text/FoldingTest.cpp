#include "text/Folding.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(Folding, TakesDiacriticsOffUnitByUnit)
{
    EXPECT_EQ(nonUmlautedString(u"\u00C4rger in S\u00E3o \u0422\u0451\u043C\u043D"_s),
        u"Arger in Sao \u0422\u0435\u043C\u043D");
    EXPECT_EQ(lowercaseNonUmlautedString(u"\u00C9T\u00C9 \u00DF"_s), u"ete \u00DF");
    EXPECT_EQ(uppercaseNonUmlautedString(u"\u00E9t\u00E9 \u00DF"_s), u"ETE \u00DF");
    EXPECT_EQ(nonUmlautedString(u"e\u0301"_s), u"e\u0301") << "only form C composes";
    EXPECT_EQ(nonUmlautedNormalizedString(u"e\u0301x"_s), u"ex");
    EXPECT_EQ(uppercaseNonUmlautedNormalizedString(u"q\u0301e\u0308"_s), u"Q\u0301E");
}

TEST(Folding, AsciiTextHasASpaceForEveryUnitWithoutAnAsciiLetter)
{
    EXPECT_EQ(asciiString(u"e\u0301"_s), u"e");
    EXPECT_EQ(asciiString(u"Stra\u00DFe\u00A0\u00C4\U0001F600"_s), u"Stra e A  ");
    EXPECT_EQ(lowercaseAsciiString(u"\u00C9TUDE \u0416"_s), u"etude  ");
    EXPECT_EQ(uppercaseAsciiString(u"\u00E9tude"_s), u"ETUDE");
}

TEST(Folding, ReturnsItsArgumentWhenNothingChanges)
{
    const String plain = u"plain \u4E2D\u6587 \u00DF"_s;
    EXPECT_TRUE(nonUmlautedString(plain).isIdenticalTo(plain));
    EXPECT_TRUE(lowercaseNonUmlautedNormalizedString(plain).isIdenticalTo(plain));
    const String ascii = u"ASCII"_s;
    EXPECT_TRUE(uppercaseAsciiString(ascii).isIdenticalTo(ascii));
    EXPECT_TRUE(asciiString(String()).isEmpty());
    const String composable = u"q\u0301"_s;
    EXPECT_TRUE(nonUmlautedNormalizedString(composable).isIdenticalTo(composable)) << "no letter for it";
}

TEST(Folding, ComparesWithoutDiacriticsAndCase)
{
    EXPECT_TRUE(isNonUmlautedEqualToStringNoCase(u"\u00C9t\u00E9", u"ETe"));
    EXPECT_FALSE(isNonUmlautedEqualToStringNoCase(u"\u00DF", u"\u0416"));
    EXPECT_FALSE(isNonUmlautedEqualToStringNoCase(u"ete", u"etes"));
    EXPECT_TRUE(isAsciiEqualToStringNoCase(u"a\u00DF\u4E2D", u"\u00C4\u0416 "));
    EXPECT_TRUE(isNonUmlautedEqualToNoCase(u"L'\u00E9t\u00E9"_s, { 2, 3 }, u"ETE"));
    EXPECT_FALSE(isAsciiEqualToNoCase(u"short"_s, { 3, 3 }, u"rt "));
    EXPECT_TRUE(isUmlautedString(u"na\u00EFve"));
    EXPECT_FALSE(isUmlautedString(u"Stra\u00DFe"));
}

} // namespace
} // namespace caddis
