#include "platform/unicode/PlainText.h"

#include "platform/unicode/TextEncoding.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

using namespace std::string_view_literals;

void expectText(std::string_view bytes, NSStringEncoding given, const String& text, NSStringEncoding used)
{
    const PlainText plain = plainTextOfData(bytes, given);
    EXPECT_EQ(plain.text, text);
    EXPECT_EQ(plain.usedEncoding, used) << text.utf8();
}

TEST(PlainText, FollowsAByteOrderMarkBeforeTheCallersWord)
{
    const auto utf32LE = convertEncodingToNSStringEncoding(CFStringEncoding::UTF32LE);
    const auto utf32BE = convertEncodingToNSStringEncoding(CFStringEncoding::UTF32BE);
    for (const auto given : { NSStringEncoding::ISOLatin1, NSStringEncoding::InvalidId }) {
        expectText("\xEF\xBB\xBF\xC3\xA9"sv, given, u"é"_s, NSStringEncoding::UTF8);
        expectText("\xFF\xFE\xE9\0"sv, given, u"é"_s, NSStringEncoding::UTF16LittleEndian);
        expectText("\xFE\xFF\0\xE9"sv, given, u"é"_s, NSStringEncoding::UTF16BigEndian);
        expectText("\xFF\xFE\0\0\x44\xF6\x01\0"sv, given, u"\U0001F644"_s, utf32LE);
        expectText("\0\0\xFE\xFF\0\x01\xF6\x44"sv, given, u"\U0001F644"_s, utf32BE);
        expectText("\xFF\xFE\xE9\0\xE9"sv, given, u"é\uFFFD"_s, NSStringEncoding::UTF16LittleEndian);
    }
}

TEST(PlainText, TakesTheCallersEncodingWhereItFitsAndElseUtf8)
{
    expectText("caf\xE9", NSStringEncoding::ISOLatin1, u"café"_s, NSStringEncoding::ISOLatin1);
    expectText("caf\xC3\xA9", NSStringEncoding::ISOLatin1, u"cafÃ©"_s, NSStringEncoding::ISOLatin1);
    expectText("caf\xC3\xA9", NSStringEncoding::ASCII, u"café"_s, NSStringEncoding::UTF8);
    expectText("caf\xC3\xA9", NSStringEncoding::UTF16BigEndian, u"café"_s, NSStringEncoding::UTF8);
    expectText("caf\xC3\xA9", NSStringEncoding { 12345 }, u"café"_s, NSStringEncoding::UTF8);
    expectText("", NSStringEncoding::ASCII, String(), NSStringEncoding::ASCII);
    expectText("", NSStringEncoding::InvalidId, String(), NSStringEncoding::UTF8);
}

TEST(PlainText, TellsLanguagesByTheirLetters)
{
    const struct {
        String text;
        CFStringEncoding encoding;
    } samples[] = {
        { u"Die Straße nach Köln führt über grüne Hügel; Äpfel und Öl sind schön."_s,
            CFStringEncoding::WindowsLatin1 },
        { u"“Smart quotes” — it’s déjà vu"_s, CFStringEncoding::WindowsLatin1 },
        { u"Příliš žluťoučký kůň úpěl ďábelské ódy."_s, CFStringEncoding::WindowsLatin2 },
        { u"Привет, мир! Это небольшой текст на русском языке."_s, CFStringEncoding::WindowsCyrillic },
        { u"Привет, мир! Это небольшой текст на русском языке."_s, CFStringEncoding::KOI8R },
        { u"日本語の文章です。これはテストです。"_s, CFStringEncoding::DOSJapanese },
        { u"日本語の文章です。これはテストです。"_s, CFStringEncoding::EUCJP },
        { u"这是一个中文文本，用来测试编码。"_s, CFStringEncoding::GB18030 },
        { u"這是一個中文文本，用來測試編碼。"_s, CFStringEncoding::Big5 },
        { u"한국어 텍스트입니다. 이것은 시험입니다."_s, CFStringEncoding::DOSKorean },
    };
    const std::string far = std::string(300'000, 'x') + ' ';
    for (const auto& [text, encoding] : samples) {
        const auto number = convertEncodingToNSStringEncoding(encoding);
        const std::string bytes = *encodeText(text, number);
        expectText(bytes, NSStringEncoding::UTF8, text, number);
        EXPECT_EQ(detectedEncoding(far + bytes), number) << text.utf8();
    }
}

TEST(PlainText, ReadsWhatLooksLikeNothing)
{
    std::string bytes;
    for (int byte = 253; byte >= 0; --byte)
        bytes.push_back(static_cast<char>(byte));
    const PlainText plain = plainTextOfData(bytes);
    EXPECT_EQ(plain.usedEncoding, NSStringEncoding::WindowsCP1252);
    EXPECT_EQ(plain.text.length(), 254U);
    EXPECT_EQ(plain.text[253 - 0x80], u'€');

    std::string damaged;
    for (int line = 0; line < 50; ++line)
        damaged += "Grün und schön, ";
    expectText(
        damaged + "\xFF", NSStringEncoding::UTF8, String::fromUtf8(damaged + "\xFF"), NSStringEncoding::UTF8);
}

} // namespace
} // namespace caddis
