#include "platform/office/Numbering.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis::office {
namespace {

TEST(Numbering, NamesOfOneListCountTogetherUntilOneIsSeparated)
{
    Numbering numbering;
    numbering.define(u"list"_s)[0].pattern = u"%1."_s;
    numbering.alias(u"a"_s, u"list"_s);
    numbering.alias(u"b"_s, u"list"_s);
    EXPECT_EQ(numbering.nextMarker(u"a"_s, 0), u"1."_s);
    EXPECT_EQ(numbering.nextMarker(u"b"_s, 0), u"2."_s);
    numbering.separate(u"b"_s);
    numbering.restart(u"b"_s, 0, 9);
    EXPECT_EQ(numbering.nextMarker(u"b"_s, 0), u"9."_s);
    EXPECT_EQ(numbering.nextMarker(u"a"_s, 0), u"3."_s);
    EXPECT_EQ(numbering.nextMarker(u"none"_s, 0), String());
}

TEST(Numbering, LevelsAndNumbersAreHeldInBounds)
{
    Numbering numbering;
    numbering.define(u"list"_s)[LastListLevel].pattern = u"%9%%x"_s;
    EXPECT_EQ(numbering.nextMarker(u"list"_s, 1000), u"1%%x"_s);
    numbering.restart(u"list"_s, LastListLevel, std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(numbering.nextMarker(u"list"_s, LastListLevel), u"2147483647%%x"_s);
    EXPECT_EQ(numbering.nextMarker(u"list"_s, LastListLevel), u"2147483647%%x"_s);
    numbering.restart(u"list"_s, -5, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(numbering.level(u"list"_s, -1), numbering.level(u"list"_s, 0));
}

TEST(Numbering, BulletsOfSymbolFontsBecomeUnicode)
{
    EXPECT_EQ(bulletOfSymbol(u"\xF0B7"_s), u"\u2022"_s);
    EXPECT_EQ(bulletOfSymbol(u"o"_s), u"\u25E6"_s);
    EXPECT_EQ(bulletOfSymbol(u"-"_s), u"-"_s);
    Numbering numbering;
    ListLevel& level = numbering.define(u"list"_s)[0];
    level.format = String(ListLevel::Bullet);
    level.pattern = u"\u25AA"_s;
    EXPECT_EQ(numbering.textList(u"list"_s, 0).markerFormat, u"{square}"_s);
}

} // namespace
} // namespace caddis::office
