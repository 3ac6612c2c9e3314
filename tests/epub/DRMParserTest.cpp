#include "epub/DRMParser.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::optional<String> schemeOf(std::string_view document) { return DRMParser(Data::copyOf(document)).DRM(); }

TEST(DRMParser, NamesTheScheme)
{
    EXPECT_EQ(schemeOf("<r xmlns:fairplay='f'><fairplay:sinf>x</fairplay:sinf></r>"), u"Apple"_s);
    EXPECT_EQ(schemeOf("<kdrm/>"), u"Kobo"_s);
    EXPECT_EQ(
        schemeOf("<r><operatorURL>http://acs.BarnesAndNoble.com/x</operatorURL></r>"), u"Barnes & Noble"_s);
    EXPECT_EQ(schemeOf("<r><operatorURL>http://acs.example.com</operatorURL></r>"), u"Adobe"_s);
    EXPECT_EQ(schemeOf("<r><sinf/><Kdrm/></r>"), std::nullopt);
    EXPECT_EQ(schemeOf(""), std::nullopt);
}

TEST(DRMParser, LetsTheLastJudgementWin)
{
    EXPECT_EQ(schemeOf("<r><operatorURL>barnesandnoble</operatorURL> </r>"), u"Adobe"_s)
        << "white space behind it";
    EXPECT_EQ(schemeOf("<r><operatorURL>barnesandnoble</operatorURL><x/> </r>"), u"Barnes & Noble"_s);
    EXPECT_EQ(schemeOf("<r><operatorURL>a</operatorURL><kdrm/></r>"), u"Kobo"_s);
    EXPECT_EQ(schemeOf("<r><operatorURL>barnesandnoble</operatorURL><unclosed>"), u"Barnes & Noble"_s);
}

} // namespace
} // namespace caddis
