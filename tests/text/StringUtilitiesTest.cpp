#include "text/StringUtilities.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(StringUtilities, TrimsAllWhiteUnitsAtTheEnds)
{
    EXPECT_EQ(stringByTrimmingWhiteSpaces(u"\uFEFF\u00A0 a b\x03\r\n\uFFFC"_s), u"a b");
    EXPECT_EQ(stringByTrimmingWhiteSpaces(u" \n "_s), u"");
    const String bare = u"a  b"_s;
    EXPECT_TRUE(stringByTrimmingWhiteSpaces(bare).isIdenticalTo(bare));
    EXPECT_TRUE(isWhiteString(u""));
    EXPECT_TRUE(isWhiteString(u" \u2028"));
    EXPECT_FALSE(isWhiteString(u" ."));
}

TEST(StringUtilities, CollapsesRunsOfWhiteSpaceWithoutTrimming)
{
    EXPECT_EQ(stringByRemovingMultipleWhiteSpaces(u"a \n\t b\nc  "_s), u"a b c ");
    EXPECT_EQ(stringByRemovingMultipleWhiteSpaces(u"\n"_s), u" ");
    EXPECT_EQ(stringByRemovingMultipleWhiteSpaces(u" a  b"_s), u" a b");
    const String single = u" a b "_s;
    EXPECT_TRUE(stringByRemovingMultipleWhiteSpaces(single).isIdenticalTo(single));
}

TEST(StringUtilities, ComparesWithoutCaseUnitByUnit)
{
    EXPECT_TRUE(isEqualNoCase(u"Stra\u00DFe \u00C4\u0436", u"STRA\u00DFE \u00E4\u0416"));
    EXPECT_FALSE(isEqualNoCase(u"stra\u00DFe", u"STRASSE"));
    EXPECT_TRUE(hasPrefixNoCase(u"CDATA[", u"cdata"));
    EXPECT_FALSE(hasPrefixNoCase(u"cd", u"cdata"));
    EXPECT_TRUE(hasSuffixNoCase(u"Book.EPUB", u".epub"));
    EXPECT_TRUE(hasSuffixNoCase(u"Book", u""));
    EXPECT_TRUE(containsNoCase(u"https://www.BarnesAndNoble.com", u"barnesandnoble"));
    EXPECT_FALSE(containsNoCase(u"text", u""));
}

TEST(StringUtilities, FindsTheFirstLineAndLetters)
{
    EXPECT_EQ(firstLine(u"one\u2028two"_s), u"one");
    EXPECT_EQ(firstLine(u"\r\ntwo"_s), u"");
    const String line = u"one line"_s;
    EXPECT_TRUE(firstLine(line).isIdenticalTo(line));
    EXPECT_TRUE(containsAlphaCharacter(u"12 k"));
    EXPECT_FALSE(containsAlphaCharacter(u"12,3"));
}

TEST(StringUtilities, CutsWordsAtPunctuationOrKeepsWhatStandsInside)
{
    const auto words = [](const String& text, InnerPunctuation punctuation) {
        return componentsJoinedByString(wordsUsingSeparators(text, punctuation), u"|");
    };
    const String text = u"(On 12.3.2004,\u00A0at O'Hare/Gate -- 5. End.)"_s;
    EXPECT_EQ(words(text, InnerPunctuation::Separates), u"On|12|3|2004|at|O|Hare|Gate|5|End");
    EXPECT_EQ(words(text, InnerPunctuation::Joins), u"On|12.3.2004|at|O'Hare/Gate|5|End");
    EXPECT_EQ(words(u" .-"_s, InnerPunctuation::Joins), u"");
    EXPECT_TRUE(wordsUsingSeparators(String(), InnerPunctuation::Separates).empty());
}

} // namespace
} // namespace caddis
