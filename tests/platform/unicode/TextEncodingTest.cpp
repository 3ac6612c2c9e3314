#include "platform/unicode/TextEncoding.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <unicode/ucnv.h>

namespace caddis {
namespace {

String decoded(std::string_view bytes, CFStringEncoding encoding)
{
    return decodeText(bytes, encoding).value_or(u"nil"_s);
}

// Each byte by itself as ICU reads it, 0 where ICU has no meaning for it.
std::u16string icuTable(const char* name)
{
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open(name, &status);
    ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_SKIP, nullptr, nullptr, nullptr, &status);
    std::u16string units;
    for (unsigned byte = 0; byte < 256; ++byte) {
        const char source = static_cast<char>(byte);
        UChar unit = 0;
        UErrorCode ignored = U_ZERO_ERROR;
        ucnv_toUChars(converter, &unit, 1, &source, 1, &ignored);
        units += unit;
    }
    ucnv_close(converter);
    return units;
}

std::string allBytes()
{
    std::string bytes(256, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    return bytes;
}

TEST(TextEncoding, SingleByteEncodingsReadEveryByteAsTheirStandardSays)
{
    const std::pair<CFStringEncoding, const char*> encodings[] = {
        { CFStringEncoding::WindowsLatin1, "windows-1252" },
        { CFStringEncoding::WindowsLatin2, "windows-1250" },
        { CFStringEncoding::WindowsCyrillic, "windows-1251" },
        { CFStringEncoding::WindowsGreek, "windows-1253" },
        { CFStringEncoding::WindowsHebrew, "windows-1255" },
        { CFStringEncoding::ISOLatin2, "ISO-8859-2" },
        { CFStringEncoding::ISOLatinArabic, "ISO-8859-6" },
        { CFStringEncoding::ISOLatinHebrew, "ISO-8859-8" },
        { CFStringEncoding::ISOLatin9, "ISO-8859-15" },
        { CFStringEncoding::KOI8R, "KOI8-R" },
        { CFStringEncoding::KOI8U, "KOI8-U" },
        { CFStringEncoding::MacRoman, "macintosh" },
        { CFStringEncoding::MacCyrillic, "x-mac-cyrillic" },
        { CFStringEncoding::DOSThai, "windows-874-2000" },
        { CFStringEncoding::EBCDICCP037, "ibm-37" },
    };
    for (const auto& [encoding, name] : encodings) {
        std::u16string expected = icuTable(name);
        std::replace(expected.begin() + 1, expected.end(), u'\0', u'\uFFFD');
        EXPECT_EQ(decoded(allBytes(), encoding), expected) << name;
    }
}

// ICU's tables for DOS turn three control characters in a circle.
TEST(TextEncoding, AsciiIsAsciiWhereMarkupIsRead)
{
    std::u16string ascii(128, u'\0');
    std::iota(ascii.begin(), ascii.end(), u'\0');
    const std::string bytes = allBytes().substr(0, 128);
    for (const CFStringEncoding encoding :
        { CFStringEncoding::DOSLatinUS, CFStringEncoding::DOSRussian, CFStringEncoding::DOSLatin2,
            CFStringEncoding::ShiftJIS, CFStringEncoding::DOSJapanese, CFStringEncoding::EUCJP,
            CFStringEncoding::Big5, CFStringEncoding::GB18030, CFStringEncoding::EUCKR,
            CFStringEncoding::Kamenicky, CFStringEncoding::MacHebrew, CFStringEncoding::NextStepLatin,
            CFStringEncoding::ISOLatin10, CFStringEncoding::ASCII, CFStringEncoding::UTF8 }) {
        EXPECT_EQ(decoded(bytes, encoding), ascii) << std::hex << static_cast<unsigned>(encoding);
        EXPECT_EQ(encodeText(String(ascii), convertEncodingToNSStringEncoding(encoding)).value_or(""), bytes);
    }
}

TEST(TextEncoding, Latin1AndAsciiGiveEachByteItsNumber)
{
    std::u16string numbers(256, u'\0');
    std::iota(numbers.begin(), numbers.end(), u'\0');
    EXPECT_EQ(decoded(allBytes(), CFStringEncoding::ISOLatin1), numbers);
    EXPECT_EQ(decoded(allBytes(), CFStringEncoding::ASCII), numbers);
    EXPECT_EQ(encodeText(String(numbers), NSStringEncoding::ISOLatin1), allBytes());
    EXPECT_FALSE(encodeText(String(numbers), NSStringEncoding::ASCII));
}

TEST(TextEncoding, OwnTables)
{
    EXPECT_EQ(initWithKamenickyData("P\xA9\xA1li\xA8 \x91lu\x9Fou\x87k\x98 k\x96\xA4"),
        u"P\u0159\u00EDli\u0161 \u017Elu\u0165ou\u010Dk\u00FD k\u016F\u0148"_s);
    EXPECT_EQ(initWithKoi8cs2Data("\xC7l\xC1pec \xE7\xF1$\xA1"), u"chl\u00E1pec CH\u00C4\u00A4\uFFFD"_s);
    EXPECT_EQ(decoded("\xC6\xD8\xF0", CFStringEncoding::MacCroatian), u"\u0106\uF8FF\u0111"_s);
    EXPECT_EQ(
        decoded("\xE0\xE7\x81\xC0", CFStringEncoding::MacHebrew), u"\u05D0\u05D7\u05F2\u05B7\u05DC\u05B9"_s);
    EXPECT_EQ(decoded("abc\xA0\xFF", CFStringEncoding::MacSymbol), u"\u03B1\u03B2\u03C7\u20AC\uFFFD"_s);
    EXPECT_EQ(decoded("\x80\xDB\xFE", CFStringEncoding::NextStepLatin), u"\u00A0\u00E7\uFFFD"_s);
    EXPECT_EQ(decoded("\xE3\xFE", CFStringEncoding::ISOLatin10), u"\u0103\u021B"_s);
    EXPECT_EQ(decoded("\xA9\x02", CFStringEncoding::VISCII), u"\u1EB9\u1EB2"_s);
}

TEST(TextEncoding, MultiByteAndStatefulEncodings)
{
    const struct {
        CFStringEncoding encoding;
        std::string_view bytes;
        std::u16string_view text;
    } cases[] = {
        { CFStringEncoding::ShiftJIS, "\x93\xFA\x96\x7B\\", u"\u65E5\u672C\\" },
        { CFStringEncoding::EUCJP, "\xC6\xFC\xCB\xDC", u"\u65E5\u672C" },
        { CFStringEncoding::ISO2022JP, "\x1B$BF|K\\\x1B(B", u"\u65E5\u672C" },
        { CFStringEncoding::ISO2022JP1, "\x1B$BF|K\\\x1B(B", u"\u65E5\u672C" },
        { CFStringEncoding::ISO2022JP3, "\x1B$BF|K\\\x1B(B", u"\u65E5\u672C" },
        { CFStringEncoding::Big5, "\xA4\xE5\xA6\x72", u"\u6587\u5B57" },
        { CFStringEncoding::EUCTW, "\xC5\xC6\xC7\xF3", u"\u6587\u5B57" },
        { CFStringEncoding::EUCCN, "\xCE\xC4\xD7\xD6", u"\u6587\u5B57" },
        { CFStringEncoding::GBK, "\xCE\xC4\xD7\xD6", u"\u6587\u5B57" },
        { CFStringEncoding::GB18030, "\xCE\xC4\x94\x39\xDA\x33", u"\u6587\U0001F4A9" },
        { CFStringEncoding::HZGB2312, "~{NDWV~}", u"\u6587\u5B57" },
        { CFStringEncoding::EUCKR, "\xC7\xD1\xB1\xDB", u"\uD55C\uAE00" },
        { CFStringEncoding::DOSKorean, "\xC7\xD1\xB1\xDB", u"\uD55C\uAE00" },
        { CFStringEncoding::WindowsKoreanJohab, "\xD0\x65\x8B\x69", u"\uD55C\uAE00" },
        { CFStringEncoding::UTF7, "+ZeVnLA-", u"\u65E5\u672C" },
        { CFStringEncoding::UTF16BE, std::string_view("\x65\xE5\0a", 4), u"\u65E5a" },
        { CFStringEncoding::UTF32LE, std::string_view("\xE5\x65\0\0", 4), u"\u65E5" },
    };
    for (const auto& [encoding, bytes, text] : cases) {
        EXPECT_EQ(decoded(bytes, encoding), String(text)) << std::hex << static_cast<unsigned>(encoding);
        const auto back = encodeText(String(text), convertEncodingToNSStringEncoding(encoding));
        EXPECT_EQ(decoded(back.value_or("nil"), encoding), String(text)) << std::hex << unsigned(encoding);
    }
}

TEST(TextEncoding, Utf16TakesItsOrderFromTheMark)
{
    EXPECT_EQ(decoded(std::string_view("\xFE\xFF\0a", 4), CFStringEncoding::Unicode), u"a"_s);
    EXPECT_EQ(decoded(std::string_view("\xFF\xFE"
                                       "a\0",
                          4),
                  CFStringEncoding::Unicode),
        u"a"_s);
    EXPECT_EQ(decoded(std::string_view("a\0b", 3), CFStringEncoding::Unicode), u"a\uFFFD"_s);
    EXPECT_EQ(encodeText(u"a"_s, NSStringEncoding::Unicode),
        std::string("\xFF\xFE"
                    "a\0",
            4));
    EXPECT_EQ(encodeText(u"a"_s, NSStringEncoding::UTF16BigEndian), std::string("\0a", 2));
}

TEST(TextEncoding, IllFormedPartsAreReplacedOrFail)
{
    EXPECT_EQ(decoded("a\xFFz", CFStringEncoding::UTF8), u"a\uFFFDz"_s);
    EXPECT_EQ(decoded("a\x81<b>", CFStringEncoding::ShiftJIS), u"a\uFFFD<b>"_s) << "markup is not swallowed";
    EXPECT_EQ(decoded("\xFF \xFD", CFStringEncoding::EUCKR), u"\uFFFD \uFFFD"_s) << "never U+001A";
    EXPECT_EQ(decoded("\xD0", CFStringEncoding::WindowsKoreanJohab), u"\uFFFD"_s);
    EXPECT_EQ(decoded("\x1B$B!", CFStringEncoding::ISO2022JP), u"\uFFFD"_s);
    for (const CFStringEncoding encoding : { CFStringEncoding::UTF8, CFStringEncoding::EUCKR,
             CFStringEncoding::WindowsKoreanJohab, CFStringEncoding::ISOLatinArabic }) {
        EXPECT_FALSE(decodeText("a\xFF", encoding, IllFormed::Fail));
        EXPECT_EQ(decodeText("plain", encoding, IllFormed::Fail), u"plain"_s);
    }
}

TEST(TextEncoding, UnknownEncodingsAndCharactersGiveNil)
{
    for (const std::uint32_t unknown : { 0x9U, 0xECU, 0xA04U, 0xBFFU, 0xFFFFFFFFU }) {
        EXPECT_FALSE(isEncodingAvailable(CFStringEncoding { unknown }));
        EXPECT_FALSE(decodeText("a", CFStringEncoding { unknown }));
    }
    EXPECT_FALSE(decodeText("a", NSStringEncoding { 16 }));
    EXPECT_FALSE(encodeText(u"a"_s, NSStringEncoding::InvalidId));
    for (const NSStringEncoding encoding : { NSStringEncoding::WindowsCP1252, NSStringEncoding::ISO2022JP,
             NSStringEncoding::Kamenicky, NSStringEncoding { 0x80000510 } })
        EXPECT_FALSE(encodeText(u"a\U0001F600"_s, encoding));
    EXPECT_FALSE(encodeText(String(std::u16string_view(u"\xD800", 1)), NSStringEncoding::UTF8));
}

// Whatever the bytes: an answer of bounded length, and the same one for a text of the same bytes again.
TEST(TextEncoding, EveryAvailableEncodingReadsAnyBytes)
{
    std::minstd_rand random(11);
    std::string noise(3000, '\0');
    std::ranges::generate(noise, [&] { return static_cast<char>(random() >> 8); });
    std::size_t available = 0;
    for (std::uint32_t number = 0; number <= 0xA002; ++number) {
        const auto encoding = CFStringEncoding { number };
        if (!isEncodingAvailable(encoding))
            continue;
        ++available;
        const auto text = decodeText(noise, encoding);
        ASSERT_TRUE(text) << std::hex << number;
        EXPECT_LE(text->length(), 3 * noise.size()) << std::hex << number;
        EXPECT_EQ(text, decodeText(noise, encoding)) << std::hex << number;
        EXPECT_EQ(decodeText("", encoding), String()) << std::hex << number;
    }
    EXPECT_EQ(available, 95U);
}

} // namespace
} // namespace caddis
