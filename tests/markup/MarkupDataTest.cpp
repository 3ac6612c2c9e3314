#include "markup/MarkupData.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

constexpr auto Latin1 = NSStringEncoding::ISOLatin1;
constexpr auto Utf8 = NSStringEncoding::UTF8;

String decoded(std::string_view bytes, NSStringEncoding defaultEncoding = Utf8)
{
    return stringWithMarkupData(Data::copyOf(bytes), defaultEncoding);
}

TEST(MarkupData, AByteOrderMarkDecidesAndGoes)
{
    EXPECT_EQ(decoded(std::string_view("\xFF\xFE<\0\xFC\0", 6)), u"<\u00FC"_s);
    EXPECT_EQ(decoded(std::string_view("\xFE\xFF\0<\0\xFC", 6)), u"<\u00FC"_s);
    EXPECT_EQ(decoded("\xEF\xBB\xBF<meta charset=latin1>\xC3\xBC", Latin1), u"<meta charset=latin1>\u00FC"_s);
    EXPECT_EQ(decoded("\xFF\xFE", Latin1), u"\u00FF\u00FE"_s) << "two bytes are no marked text";
    EXPECT_EQ(decoded(""), String());
}

TEST(MarkupData, TheHeaderComesBeforeTheDefault)
{
    const Data data = Data::copyOf("\xF0\xCF");
    EXPECT_EQ(stringWithMarkupData(data, u"text/html; charset=koi8-r", Latin1), u"\u041F\u043E"_s);
    EXPECT_EQ(stringWithMarkupData(data, u"text/html", Latin1), u"\u00F0\u00CF"_s);
    EXPECT_EQ(stringWithMarkupData(data, u"windows-1253", Latin1, String()), u"\u03C0\u039F"_s);
}

TEST(MarkupData, TheDeclaredEncodingIsWeighedAgainstTheFirstOne)
{
    EXPECT_EQ(
        decoded("<meta charset=windows-1251>\xCF\xEE", Latin1), u"<meta charset=windows-1251>\u041F\u043E"_s);
    EXPECT_EQ(decoded("<meta charset=windows-1252>\x80"), u"<meta charset=windows-1252>\u20AC"_s);
    EXPECT_EQ(decoded("<meta charset=latin1>\xC3\xBC"), u"<meta charset=latin1>\u00FC"_s)
        << "what is UTF-8 by chance is UTF-8";
    EXPECT_EQ(decoded("<meta charset=utf-8>\xFC", Latin1), u"<meta charset=utf-8>\u00FC"_s)
        << "and what is not is not";
    EXPECT_EQ(decoded("<meta charset=utf-16>abc"), u"<meta charset=utf-16>abc"_s);
    EXPECT_EQ(decoded("<meta charset=iso-2022-jp>\x1B$BF|\x1B(B"), u"<meta charset=iso-2022-jp>\u65E5"_s);
}

TEST(MarkupData, EqualReadingsKeepTheHeadersWord)
{
    const Data data = Data::copyOf("<meta charset=windows-1251>\xCF");
    EXPECT_EQ(stringWithMarkupData(data, u"latin1", Utf8, String()), u"<meta charset=windows-1251>\u00CF"_s);
}

TEST(MarkupData, SupersetsReadWhatTheNamedEncodingLacks)
{
    EXPECT_EQ(decoded("<meta charset=gb2312>\xCE\xC4\x81\x40"), u"<meta charset=gb2312>\u6587\u4E02"_s);
    EXPECT_EQ(decoded("<meta charset=euc-kr>\xC7\xD1\x8C\x63"), u"<meta charset=euc-kr>\uD55C\uB620"_s);
    EXPECT_EQ(decoded("<meta charset=big5>\xA4\xE5\xFA\x40"), u"<meta charset=big5>\u6587\U00020547"_s);
}

TEST(MarkupData, OtherwiseTheCountryHasATry)
{
    const Data data = Data::copyOf("\xCF\xEE");
    EXPECT_EQ(stringWithMarkupData(data, u"", Utf8, u"http://example.ru/"_s), u"\u041F\u043E"_s);
    EXPECT_EQ(stringWithMarkupData(data, u"", Latin1, u"http://example.ru/"_s), u"\u00CF\u00EE"_s);
    EXPECT_EQ(decoded("\xFC", NSStringEncoding::InvalidId), u"\u00FC"_s) << "no default at all";
}

TEST(MarkupData, MarkupIsWrittenInItsDeclaredEncoding)
{
    EXPECT_EQ(markupData(u"<meta charset=koi8-r>\u041F"_s).chars(), "<meta charset=koi8-r>\xF0");
    EXPECT_EQ(
        markupData(u"<meta charset=latin1>\u041F\u00FC"_s).chars(), "<meta charset=latin1>&#1055;&#252;");
    EXPECT_EQ(markupData(u"\u00FC"_s).chars(), "\xC3\xBC");
    EXPECT_EQ(markupData(u"\u00FC"_s, NSStringEncoding::WindowsCP1252).chars(), "\xFC");
}

TEST(MarkupData, AMissingFileIsNil)
{
    EXPECT_FALSE(stringWithMarkupContentsOfFile(u"/nowhere/page.html"_s, Utf8));
    const auto page
        = stringWithMarkupContentsOfFile(String::fromUtf8(CADDIS_TEST_DATA "/markup/latin2.html"), Utf8);
    ASSERT_TRUE(page);
    EXPECT_EQ(page->usedEncoding, NSStringEncoding::ISOLatin2);
    EXPECT_EQ(page->text, u"<meta charset=iso-8859-2><p>k\u016F\u0148\n"_s);
}

} // namespace
} // namespace caddis
