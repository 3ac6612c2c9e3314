#include "markup/TagStripping.h"

#include "support/FailingAllocation.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(TagStripping, LeavesTheTextRunsApart)
{
    EXPECT_EQ(stripTags(u"<b>one</b><i>two</i>"_s), u" one two"_s);
    EXPECT_EQ(stripTags(u"a <b>c\u00A0</b>d<!-- e -->f<![CDATA[g]]>h"_s), u" a c\u00A0d f h"_s);
    EXPECT_EQ(stripTags(u"<p><br></p>"_s), String());
    EXPECT_EQ(stripTags(String()), String());
}

TEST(TagStripping, TakesOutOneKindOfTag)
{
    EXPECT_EQ(stripTag(u"a<b>c</B>d<b/>e<br>"_s, "B"), u"acde<br>"_s);
    EXPECT_EQ(stripTag(u"<b>"_s, "B"), String());
    const String text = u"a<b>c"_s;
    EXPECT_TRUE(stripTag(text, "I").isIdenticalTo(text));
}

TEST(TagStripping, KeepsOnlyTheLinkOfATag)
{
    EXPECT_EQ(stripAttributesOfTag(u"x<a class=c href='y'>z</a >"_s, "A"), u"x<A HREF=\"y\">z</A>"_s);
    EXPECT_EQ(stripAttributesOfTag(u"<img alt=a src=b c><img src='d'><img alt=e/><img alt=f>"_s, "IMG"),
        u"<IMG SRC=\"b\"><IMG SRC=\"d\"><IMG>"_s);
    EXPECT_EQ(stripAttributesOfTag(u"<img src=\"b\"/><p a=b>"_s, "IMG"), u"<IMG SRC=\"b\"/><p a=b>"_s);
    const String text = u"<p a=b>"_s;
    EXPECT_TRUE(stripAttributesOfTag(text, "A").isIdenticalTo(text));
}

TEST(TagStripping, RemovesListedElementsWithTheirBodies)
{
    constexpr std::u16string_view entries[] = { u"<DIV", u"<script" };
    EXPECT_EQ(stripTagBodies(u"a<div x>b<div>c</div>d</div>e"_s, entries), u"ae"_s);
    EXPECT_EQ(stripTagBodies(u"a<script>b</script>c<p>d</p>"_s, entries), u"ac<p>d</p>"_s);
    EXPECT_EQ(stripTagBodies(u"a<div/>b</div>c"_s, entries), u"a<div/>b</div>c"_s);
    EXPECT_EQ(stripTagBodies(u"a<divide>b<div/>c</divide>d"_s, entries), u"ad"_s);
    EXPECT_EQ(stripTagBodies(u"a<div>b"_s, entries), u"a"_s);
    const String text = u"a<p>b"_s;
    EXPECT_TRUE(stripTagBodies(text, entries).isIdenticalTo(text));
    EXPECT_TRUE(stripTagBodies(text, {}).isIdenticalTo(text));
}

TEST(TagStripping, KeepsOnlyListedElements)
{
    constexpr std::u16string_view entries[] = { u"<p" };
    EXPECT_EQ(stripTagBodiesExcept(u"a<p x>b<i>c</i></p>d<P>e</p>"_s, entries),
        u"<p x>b<i>c</i></p>\n<P>e</p>\n"_s);
    EXPECT_EQ(stripTagBodiesExcept(u"a<p>b<p>c</p>d"_s, entries), u"<p>b<p>c</p>d"_s);
    EXPECT_EQ(stripTagBodiesExcept(u"a"_s, entries), String());
    EXPECT_EQ(stripTagBodiesExcept(String(), entries), std::nullopt);
    EXPECT_EQ(stripTagBodiesExcept(u"a<p>b</p>"_s, {}), std::nullopt);
}

TEST(TagStripping, ReplacesControlCharacters)
{
    EXPECT_EQ(fixedXml(u"a\u0001b\tc\nd\re\u001Ff"_s), u"a b\tc\nd\re f"_s);
    const String clean = u"a\tb"_s;
    EXPECT_TRUE(fixedXml(clean).isIdenticalTo(clean));
    const FailingAllocation none;
    const String large(std::u16string(300, u'\u0001'));
    EXPECT_TRUE(fixedXml(large).isIdenticalTo(large));
}

} // namespace
} // namespace caddis
