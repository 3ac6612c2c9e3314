#include "markup/JSONEscapes.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

String decoded(std::u16string_view text) { return stringByConvertingJSONToCharacters(String(text)); }
String decodedScript(std::u16string_view text)
{
    return stringByConvertingJavaScriptToCharacters(String(text));
}
String encoded(std::u16string_view text) { return stringByConvertingCharactersToJSON(String(text)); }

TEST(JSONEscapes, DecodesEveryEscape)
{
    EXPECT_EQ(decoded(u"a\\n\\r\\t\\b\\fz"), u"a\n\r\t\b\fz"_s);
    EXPECT_EQ(decoded(u"\\\"\\\\\\/\\q"), u"\"\\/q"_s);
    EXPECT_EQ(decoded(u"caf\\u00E9\\ud83d\\ude00!"), u"caf\u00E9\U0001F600!"_s);
    EXPECT_EQ(decoded(u"\\\\u0041"), u"\\u0041"_s);
}

TEST(JSONEscapes, ReadsWhatIsThereOfBrokenEscapes)
{
    EXPECT_EQ(decoded(u"\\u12"), u"\u1200"_s) << "the digits are the high ones";
    EXPECT_EQ(decoded(u"\\u"), String(std::u16string_view(u"\0", 1)));
    EXPECT_EQ(decoded(u"\\u1g\\3x"), u"\u1003x"_s) << "what is no digit is consumed as 0";
    EXPECT_EQ(decoded(u"\\n\\"), u"\n\\"_s);
    const String lone = u"end\\"_s;
    EXPECT_TRUE(stringByConvertingJSONToCharacters(lone).isIdenticalTo(lone));
}

TEST(JSONEscapes, DecodesTheExtrasOfJavaScriptOnlyThere)
{
    EXPECT_EQ(decodedScript(u"\\v\\x41\\x4"), u"\vA\u0040"_s);
    EXPECT_EQ(decodedScript(u"\\O\\0"),
        String(std::u16string_view(u"\0"
                                   u"0",
            2)));
    EXPECT_EQ(decoded(u"\\v\\x41\\O\\0"), u"vx41O0"_s);
}

TEST(JSONEscapes, EncodesEightCharactersAndNoOther)
{
    EXPECT_EQ(encoded(u"\b\t\n\f\r"), u"\\b\\t\\n\\f\\r"_s);
    EXPECT_EQ(encoded(u"a/b\"c\\d"), u"a\\/b\\\"c\\\\d"_s);
    const String others(std::u16string_view(u"\0\a\v\x1F\u00FC\u2028\u2F2F\uFF22\U0001F600' ", 12));
    EXPECT_TRUE(stringByConvertingCharactersToJSON(others).isIdenticalTo(others));
}

TEST(JSONEscapes, FindsEscapesWhereverTheyStand)
{
    for (std::size_t length = 1; length < 70; ++length) {
        for (const std::size_t place : { std::size_t(0), length / 2, length - 1 }) {
            std::u16string text(length, u'\v');
            text[place] = u'"';
            const String escaped = encoded(text);
            EXPECT_EQ(escaped.length(), length + 1);
            EXPECT_EQ(escaped.view().substr(place, 2), u"\\\"");
            EXPECT_EQ(stringByConvertingJSONToCharacters(escaped), String(text));
        }
    }
}

TEST(JSONEscapes, HandsBackATextWithoutEscapes)
{
    for (const String& text : { String(), u"plain"_s, String(std::u16string(1000, u'x')) }) {
        EXPECT_TRUE(stringByConvertingJSONToCharacters(text).isIdenticalTo(text));
        EXPECT_TRUE(stringByConvertingJavaScriptToCharacters(text).isIdenticalTo(text));
        EXPECT_TRUE(stringByConvertingCharactersToJSON(text).isIdenticalTo(text));
    }
}

} // namespace
} // namespace caddis
