#include "markup/Charsets.h"
#include "platform/unicode/TextEncoding.h"

#include "support/LogCapture.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {

void PrintTo(CFStringEncoding encoding, std::ostream* out) { *out << std::hex << unsigned(encoding); }

namespace {

using enum CFStringEncoding;

struct Case {
    std::u16string_view name;
    CFStringEncoding encoding;
};

void expectEach(std::initializer_list<Case> cases)
{
    for (const Case& each : cases)
        EXPECT_EQ(charset2CFStringEncoding(each.name), each.encoding) << readable(each.name);
}

TEST(Charsets, NumbersDecideFirst)
{
    expectEach({ { u"ISO-8859-1", ISOLatin1 }, { u"iso_8859-1", ISOLatin1 }, { u"iso-8859-15", ISOLatin9 },
        { u"iso-8859-8-i", ISOLatinHebrew }, { u"ISO 8859 16", ISOLatin10 }, { u"iso-8859-9", ISOLatin5 },
        { u"windows-1252", WindowsLatin1 }, { u"cp1251", WindowsCyrillic }, { u"x-cp1250", WindowsLatin2 },
        { u"windows-1258", WindowsVietnamese }, { u"ibm850", DOSLatin1 }, { u"cp874", DOSThai },
        { u"cp932", DOSJapanese }, { u"ms949", DOSKorean }, { u"johab1361", WindowsKoreanJohab },
        { u"asmo-708", ISOLatinArabic }, { u"iso646", EUCJP }, { u"ISO_646.irv:1991", EUCJP },
        { u"iso-2022-jp", ISO2022JP }, { u"iso-2022-jp-1", ISO2022JP1 }, { u"iso-2022-jp-2", ISO2022JP2 },
        { u"iso-2022-jp-3", ISO2022JP3 }, { u"iso-2022-kr", ISO2022JP } });
}

TEST(Charsets, MisspellingsOfLatin1AreUnderstood)
{
    expectEach({ { u"iso-8859", ISOLatin1 }, { u"iso8591", ISOLatin1 }, { u"iso-88591-1", ISOLatinThai },
        { u"iso-8851-01", ISOLatin1 }, { u"iso-8853-91", ISOLatin1 }, { u"iso-8853-92", InvalidId },
        { u"iso-8854-01", InvalidId }, { u"iso-8858-2", ISOLatin2 }, { u"iso-8592-2", ISOLatin2 },
        { u"iso-8592-2 8859-2", InvalidId }, { u"iso-8959-9", ISOLatin5 }, { u"8100-91", ISOLatin1 } });
}

TEST(Charsets, WordsDecideInTheirOrder)
{
    expectEach({ { u"latin1", ISOLatin1 }, { u"latin", ISOLatin1 }, { u"latin-10", ISOLatin10 },
        { u"latin5", ISOLatin5 }, { u"iso-latin-9", ISOLatin9 }, { u"iso", ISOLatin1 },
        { u"visual", ISOLatinHebrew }, { u"windows-31j", WindowsLatin1 }, { u"windows", WindowsLatin1 },
        { u"US-ASCII", ASCII }, { u"utf-7", ASCII }, { u"none", ASCII }, { u"gb2312", EUCCN },
        { u"x-gbk", InvalidId }, { u"GBK", GBK }, { u"gb18030", GB18030 }, { u"UTF8", UTF8 },
        { u"utf-08", UTF8 }, { u"uft-8", UTF8 }, { u"utf%2D8", UTF8 }, { u"utf-9", UTF8 }, { u"UTF", UTF8 },
        { u"unicode", UTF8 }, { u"en-us", UTF8 }, { u"utf-16le", Unicode }, { u"Shift_JIS", ShiftJIS },
        { u"x-sjis", ShiftJIS }, { u"koi8-u", KOI8R }, { u"koi8-cs2", KOI8CS2 }, { u"csn_369103", KOI8CS2 },
        { u"x-kam-cs", Kamenicky }, { u"big5-hkscs", Big5 }, { u"euc-kr", EUCKR }, { u"x-euc-jp", EUCJP },
        { u"euc-cn", EUCCN }, { u"x-euc-tw", EUCTW }, { u"KS_C_5601-1987", KSC5601_87 },
        { u"ksc5601-92", KSC5601_92_Johab }, { u"tis-620", InvalidId }, { u"utf-32", InvalidId } });
}

TEST(Charsets, MacNamesGoToTheirOwnTable)
{
    expectEach({ { u"macintosh", MacRoman }, { u"x-mac-roman", MacRoman }, { u"mac", MacRoman },
        { u"x-mac-ce", MacCentralEurRoman }, { u"x-mac-cyrillic", MacCyrillic },
        { u"MacCroatian", MacCroatian }, { u"x-mac-trad-chinese", MacChineseTrad },
        { u"x-mac-celtic", CFStringEncoding { 39 } }, { u"x-mac-klingon", InvalidId } });
}

TEST(Charsets, ShortAndEmptyNamesAreNotKnown)
{
    expectEach({ { u"", InvalidId }, { u"l1", InvalidId }, { u"en", InvalidId }, { u"-8-", InvalidId },
        { u"99999999999999999999", InvalidId }, { u"\u00FC\u00FC\u00FC", InvalidId } });
}

TEST(Charsets, PlatformNumbersComeOnlyForWhatCanBeRead)
{
    const LogCapture log;
    EXPECT_EQ(charset2NSStringEncoding(u"utf-8"), NSStringEncoding::UTF8);
    EXPECT_EQ(NSEncodingFromName(u"Shift_JIS"), NSStringEncoding::ShiftJIS);
    EXPECT_EQ(NSEncodingFromName(u"kamcs"), NSStringEncoding::Kamenicky);
    EXPECT_EQ(NSEncodingFromName(u"big5"), NSStringEncoding { 0x80000A03 });
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(NSEncodingFromName(u"x-mac-celtic"), NSStringEncoding::InvalidId);
    EXPECT_EQ(NSEncodingFromName(u"klingon"), NSStringEncoding::InvalidId);
    ASSERT_EQ(log.lines().size(), 2U);
    EXPECT_EQ(log.lines()[1], u"Unknown/Unsupported encoding: klingon"_s);
}

TEST(Charsets, NamesThatSayNothingAreNotLogged)
{
    const LogCapture log;
    for (const std::u16string_view name : { u"", u"auto", u"Auto", u"/", u"0", u"<", u">" })
        EXPECT_EQ(charset2NSStringEncoding(name), NSStringEncoding::InvalidId);
    EXPECT_TRUE(log.lines().empty());
}

TEST(Charsets, CountriesHaveTheirOldEncoding)
{
    EXPECT_EQ(defaultURLEncoding(u"http://www.example.RU/seite"_s), NSStringEncoding::WindowsCP1251);
    EXPECT_EQ(defaultURLEncoding(u"https://example.cz:8080"_s), NSStringEncoding::WindowsCP1250);
    for (const auto& url : { u"http://example.com/a.ru"_s, u"http://ru/"_s, u"no url"_s, String() })
        EXPECT_EQ(defaultURLEncoding(url), NSStringEncoding::InvalidId);
}

} // namespace
} // namespace caddis
