#include "foundation/DataURL.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::optional<DataURLContents> contents(const String& text)
{
    return contentsOfDataURL(*URL::fromString(text));
}

TEST(DataURL, CarriesItsDataTypeAndCharset)
{
    EXPECT_EQ(contents(u"data:,a%20b%"_s)->data.chars(), "a b%");
    EXPECT_EQ(contents(u"data:,x"_s)->mimeType, u"text/plain"_s);
    EXPECT_EQ(contents(u"data:Text/HTML;charset=utf-8,x"_s)->mimeType, u"text/html"_s);
    EXPECT_EQ(contents(u"DATA:text/html;charset=utf-8;base64,eA=="_s)->charset, u"utf-8"_s);
    EXPECT_EQ(contents(u"data:;base64,YWJj%0AZA"_s)->data.chars(), "abcd");
    EXPECT_EQ(contents(u"data:;base64,-_*%2B%2f"_s)->data.chars(), "\xFB\xFF\xBF");
}

TEST(DataURL, OthersAreNone)
{
    EXPECT_FALSE(contents(u"data:text/plain"_s));
    EXPECT_FALSE(contents(u"http://a/,x"_s));
    EXPECT_EQ(contents(u"data:;base64,!"_s)->data.size(), 0U);
}

} // namespace
} // namespace caddis
