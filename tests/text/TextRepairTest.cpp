#include "text/TextRepair.h"

#include "platform/unicode/Normalization.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

String repaired(std::u16string_view text)
{
    MutableString copy;
    copy.append(text);
    fixAndNormalizeString(copy);
    return std::move(copy).take();
}

TEST(TextRepair, ControlCharactersGoButTabAndLineEndsStay)
{
    EXPECT_EQ(repaired(u"a\x01\tb\x7F\r\nc\x90\x85"), u"a\tb\r\nc\x85");
    EXPECT_EQ(repaired(u""), u"");
}

TEST(TextRepair, SoftHyphensAtLineEndsJoinTheWord)
{
    EXPECT_EQ(repaired(u"soft\xAD\nened, soft\xAD \r\nened"), u"softened, softened");
    EXPECT_EQ(repaired(u"so\xAD"
                       u"ft hard-\nened \xAD"),
        u"so\xAD"
        u"ft hard-\nened \xAD");
}

TEST(TextRepair, TextIsComposed)
{
    EXPECT_EQ(repaired(u"e\u0301 a\u0323\u0302"), u"\u00E9 \u1EAD");
    const String composed(u"\u00E9 \xD83D\xDE00 \xD800");
    EXPECT_TRUE(precomposedStringWithCanonicalMapping(composed).isIdenticalTo(composed)) << "nothing to do";
    EXPECT_EQ(precomposedStringWithCanonicalMapping(u"x\u212B\xDC00"_s), u"x\u00C5\xDC00");
}

} // namespace
} // namespace caddis
