#include "platform/unicode/Normalization.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(Normalization, ComposesAccentsAndSyllables)
{
    EXPECT_EQ(precomposedStringWithCanonicalMapping(u"e\u0301t\u00E9"_s), u"\u00E9t\u00E9");
    EXPECT_EQ(precomposedStringWithCanonicalMapping(u"\u1100\u1161\u11A8"_s), u"\uAC01");
    EXPECT_EQ(precomposedStringWithCanonicalMapping(u"\u212B\uFB03"_s), u"\u00C5\uFB03")
        << "compatibility forms stay";
    EXPECT_EQ(
        precomposedStringWithCanonicalMapping(u"\u0958\U0001D15E"_s), u"\u0915\u093C\U0001D157\U0001D165")
        << "longer than before";
}

TEST(Normalization, ReturnsItsArgumentWhenNothingChanges)
{
    const String lone(std::u16string_view(u"\xD800 \u0430\xDC00", 4));
    for (const String& text : { String(), u"\u00E9t\u00E9 \u02FF"_s, u"q\u0301"_s, u"\u4E2D\u6587"_s, lone })
        EXPECT_TRUE(precomposedStringWithCanonicalMapping(text).isIdenticalTo(text)) << readable(text);
}

} // namespace
} // namespace caddis
