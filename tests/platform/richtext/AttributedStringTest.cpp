#include "platform/richtext/AttributedStringBuilder.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

CharacterStyle bold()
{
    CharacterStyle style;
    style.font.bold = true;
    return style;
}

ParagraphStyle centered()
{
    ParagraphStyle style;
    style.alignment = TextAlignment::Center;
    return style;
}

// "[0 b]Title [6]text": each run with its location, b for bold.
std::string runs(const AttributedString& text)
{
    std::string line;
    for (std::size_t index = 0; index < text.runs().size(); ++index) {
        const auto run = text.runs()[index];
        const std::size_t end
            = index + 1 < text.runs().size() ? text.runs()[index + 1].location : text.string().length();
        line += '[' + std::to_string(run.location) + (text.styles()[run.style].font.bold ? " b]" : "]")
            + readable(text.string().view({ run.location, end - run.location }));
    }
    return line;
}

TEST(AttributedString, JoinsNeighboursThatLookAlikeAndKeepsEachStyleOnce)
{
    AttributedStringBuilder builder;
    builder.append(u"one ", {});
    builder.append(u"two ", {});
    builder.append(u"", bold());
    builder.append(u"three ", bold());
    builder.append(u"four", {});
    const AttributedString text = std::move(builder).finish();
    EXPECT_EQ(runs(text), "[0]one two [8 b]three [14]four");
    EXPECT_EQ(text.styles().size(), 2U);
    EXPECT_EQ(text.paragraphStyles().size(), 1U);
    EXPECT_EQ(std::move(AttributedStringBuilder()).finish().runs().size(), 0U);
}

TEST(AttributedString, IsEqualHoweverItWasMade)
{
    AttributedStringBuilder once;
    once.append(u"ab", bold());
    AttributedStringBuilder twice;
    twice.append(u"a", bold());
    twice.append(u"xyz", {});
    twice.endParagraphs(centered());
    twice.truncate(1);
    twice.append(u"b", bold());
    AttributedStringBuilder other;
    other.append(u"ab", {});
    twice.endParagraphs({});
    const AttributedString first = std::move(once).finish();
    const AttributedString second = std::move(twice).finish();
    EXPECT_EQ(first.styles().size(), second.styles().size());
    EXPECT_EQ(runs(first), runs(second));
    EXPECT_FALSE(first == std::move(other).finish());
}

TEST(AttributedString, GivesStylesToWholeParagraphs)
{
    AttributedStringBuilder builder;
    builder.append(u"a\nb\n", {});
    builder.endParagraphs(centered());
    builder.append(u"c\n", {});
    builder.endParagraphs({});
    builder.endParagraphs(centered());
    builder.append(u"d", {});
    const AttributedString text = std::move(builder).finish();
    ASSERT_EQ(text.paragraphRuns().size(), 2U);
    EXPECT_EQ(text.paragraphRuns()[1].location, 4U);
    EXPECT_EQ(text.paragraphStyles()[0].alignment, TextAlignment::Center);
    EXPECT_EQ(text.paragraphStyles()[1], ParagraphStyle());
}

TEST(AttributedString, PutsInsertionsBeforeWhatTheyLookLike)
{
    AttributedStringBuilder builder;
    builder.append(u"one\n", {});
    builder.append(u"two\n", bold());
    builder.append(u"end", {});
    const AttributedString text
        = std::move(builder).finish({ { 0, u"\t1\t"_s }, { 4, u"\t2\t"_s }, { 8, u"-"_s }, { 99, u"."_s } });
    EXPECT_EQ(runs(text), "[0]\t1\tone\n[7 b]\t2\ttwo\n[14]-end.");
}

TEST(AttributedString, GivesEachAttachmentItsOwnRun)
{
    AttributedStringBuilder builder;
    builder.appendAttachment({ FileWrapper::file(u"a.png"_s, {}), {} }, {});
    builder.appendAttachment({ FileWrapper::file(u"b.png"_s, {}), {} }, {});
    builder.append(u"x", {});
    const AttributedString text = std::move(builder).finish();
    EXPECT_EQ(text.string(), u"\xFFFC\xFFFCx");
    ASSERT_EQ(text.runs().size(), 3U);
    EXPECT_EQ(text.styles()[text.runs()[1].style].attachment, 1U);
    EXPECT_EQ(text.styles()[text.runs()[2].style].attachment, CharacterStyle::NoAttachment);
}

TEST(TextList, CountsInTheStylesOfLists)
{
    const auto marker = [](std::u16string_view format, std::int32_t number) {
        return readable(TextList { String(format) }.marker(number));
    };
    EXPECT_EQ(marker(u"{decimal}.", -3), "-3.");
    EXPECT_EQ(marker(u"({lower-alpha})", 28), "(ab)");
    EXPECT_EQ(marker(u"{upper-roman}", 1994), "MCMXCIV");
    EXPECT_EQ(marker(u"{upper-roman}", 4000), "4000");
    EXPECT_EQ(marker(u"{square} }", 7), "▪ }");
    EXPECT_EQ(marker(u"{none}{", 7), "{");
    EXPECT_EQ(marker(u"–", 7), "–");
}

TEST(DocumentAttributes, PartKeywordsAtTheirOwnSeparator)
{
    const auto count = [](std::u16string_view line) { return keywordsOf(String(line)).size(); };
    EXPECT_EQ(keywordsOf(u"big house, garden"_s), (Array { u"big house"_s, u"garden"_s }));
    EXPECT_EQ(keywordsOf(u"big house,garden,"_s), (Array { u"big house"_s, u"garden"_s }));
    EXPECT_EQ(count(u"big  house"), 2U);
    EXPECT_EQ(count(u" , "), 0U);
    EXPECT_EQ(count(u""), 0U);
}

TEST(TextColor, KeepsAllEightBitSteps)
{
    for (int step = 0; step < 256; ++step) {
        const auto byte = static_cast<std::uint8_t>(step);
        ASSERT_EQ(TextColor::byte(TextColor::fromBytes(byte, 0, 0).red), byte);
    }
    EXPECT_EQ(TextColor::fromBytes(255, 0, 0, 0.5).alpha, TextColor::Full / 2);
    EXPECT_EQ(TextColor::fromBytes(255, 0, 0, -1).alpha, 0);
    EXPECT_EQ(TextColor::byte(-5), 0);
}

} // namespace
} // namespace caddis
