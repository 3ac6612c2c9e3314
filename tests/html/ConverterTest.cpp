#include "html/HTMLImport.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

AttributedString imported(std::string_view page) { return attributedStringWithHTML(Data::copyOf(page)); }

// A line separator shows as "|", an attachment as "@".
std::string textOf(std::string_view page)
{
    std::string shown;
    const String text = imported(page).string();
    for (const char16_t unit : text)
        shown += unit == LineSeparator    ? "|"
            : unit == AttachmentCharacter ? "@"
                                          : String({ &unit, 1 }).utf8();
    return shown;
}

// The style of the text's first character.
CharacterStyle firstStyle(std::string_view page)
{
    const AttributedString text = imported(page);
    return text.styles()[text.runs()[0].style];
}

ParagraphStyle firstParagraph(std::string_view page)
{
    const AttributedString text = imported(page);
    return text.paragraphStyles()[text.paragraphRuns()[0].style];
}

TEST(HTMLImport, BlocksStandOnLinesOfTheirOwn)
{
    EXPECT_EQ(textOf("<p>a</p> <p>b</p>"), "a\nb\n");
    EXPECT_EQ(textOf("a<div>b<div>c</div></div>d"), "a\nb\nc\nd");
    EXPECT_EQ(textOf("<p>a<br>b<br></p>c<br>d"), "a|b\nc\nd");
    EXPECT_EQ(textOf("<div></div>a<div> </div><div></div>b"), "a\nb");
    EXPECT_EQ(textOf("<span style='float: left'>a</span>b<b style='display:none'>c</b>"), "a\nb");
}

TEST(HTMLImport, WhiteSpaceCollapses)
{
    EXPECT_EQ(textOf("  a \n\t b <i> c </i> d  <p> e"), "a b c d\ne\n");
    EXPECT_EQ(textOf("<pre>\n a\n  b</pre>c"), " a\n  b\nc");
    EXPECT_EQ(textOf("<p style='white-space: pre-line'>a  b\n c</p>"), "a b\nc\n");
    EXPECT_EQ(textOf("a&nbsp; b"), "a\u00A0 b");
    EXPECT_EQ(
        textOf("<p style='text-transform: uppercase'>ab</p><p style='text-transform: capitalize'>ab cd</p>"),
        "AB\nAb Cd\n");
    EXPECT_EQ(textOf("<q>a<q>b</q></q>"), "\u201Ca\u2018b\u2019\u201D");
}

TEST(HTMLImport, CharactersLookAsTheStylesSay)
{
    const CharacterStyle style = firstStyle("<p><a href='http://a/b'><b><i>x</i></b></a>");
    EXPECT_TRUE(style.font.bold && style.font.italic);
    EXPECT_EQ(style.font.name, u"Times");
    EXPECT_EQ(style.font.size, 12);
    EXPECT_EQ(style.link, u"http://a/b");
    EXPECT_EQ(style.underline, LineStyle::Single);
    EXPECT_EQ(firstStyle("<p>x").foreground, std::nullopt) << "black is not stored";
    EXPECT_EQ(firstStyle("<a href='#x'>x").link, u"");
    EXPECT_EQ(firstStyle("<p style='background: red'>x").background, std::nullopt);
    EXPECT_NE(firstStyle("<p><mark>x").background, std::nullopt);
    EXPECT_EQ(firstStyle("<sup><s>x").superscript, 1);
    EXPECT_EQ(firstStyle("<sup><s>x").strikethrough, LineStyle::Single);
}

TEST(HTMLImport, ParagraphsLookAsTheirBlockSays)
{
    const ParagraphStyle heading = firstParagraph("<h2 align=center style='margin-left: 10px'>x</h2>");
    EXPECT_EQ(heading.headerLevel, 2);
    EXPECT_EQ(heading.alignment, TextAlignment::Center);
    EXPECT_EQ(heading.headIndent, 10);
    EXPECT_EQ(heading.defaultTabInterval, 36);
    EXPECT_EQ(firstParagraph("<p style='text-indent: 5px; margin-right: 7px'>x").firstLineIndent, 5);
    EXPECT_EQ(firstParagraph("<p style='text-indent: 5px; margin-right: 7px'>x").tailIndent, -7);
    EXPECT_EQ(firstParagraph("<blockquote><div>x").headIndent, 40);
    EXPECT_EQ(firstParagraph("<p dir=rtl>x").direction, WritingDirection::RightToLeft);
}

TEST(HTMLImport, ItemsOfListsHaveMarkers)
{
    EXPECT_EQ(textOf("<ul><li>a<li><p>b</p><p>c</p><li></ul>d"), "\t\u2022\ta\n\t\u2022\tb|c\n\t\u2022\t\nd");
    EXPECT_EQ(
        textOf("<ol start=3><li>a<ul><li>b</ul>c<li value=9>d</ol>"), "\t3.\ta\n\t\u25E6\tb\nc\n\t9.\td\n");
    EXPECT_EQ(textOf("<ul style='list-style: none'><li>a</ul><ol type=a><li>b</ol>"), "a\n\ta.\tb\n");
    EXPECT_EQ(textOf("<ul><li><div>a</div><div>b</div></ul>"), "\t\u2022\ta|b\n");
    EXPECT_TRUE(firstParagraph("<ul style='list-style: none'><li><div>x").lists.empty());
    EXPECT_EQ(textOf("<ul style='list-style: none'><li><div>a</div><div>b</div></ul>"), "a\nb\n");
    const ParagraphStyle item = firstParagraph("<ul><li>x</ul>");
    EXPECT_EQ(item.headIndent, 36);
    EXPECT_EQ(item.firstLineIndent, 0);
    EXPECT_EQ(item.tabStops, (std::vector<TabStop> { { 11 }, { 36 } }));
}

TEST(HTMLImport, TablesKeepTheirCells)
{
    const AttributedString text = imported(
        "<table border=1><tr><td rowspan=2>a<th colspan=2>b<tr valign=bottom><td bgcolor=red>c<td></table>d");
    EXPECT_EQ(text.string(), u"a\nb\nc\n\nd"_s);
    EXPECT_EQ(text.tables().size(), 1U);
    EXPECT_EQ(text.tables()[0].columns, 3U);
    const auto cell = [&](std::size_t run) {
        return text.paragraphStyles()[text.paragraphRuns()[run].style].cells.at(0);
    };
    EXPECT_EQ(cell(0).rowSpan, 2U);
    EXPECT_EQ(cell(0).alignment, VerticalAlignment::Middle);
    EXPECT_EQ(cell(2).alignment, VerticalAlignment::Bottom) << "as its row says";
    EXPECT_EQ(cell(1).columnSpan, 2U);
    EXPECT_EQ(cell(1).borderWidth, 1);
    EXPECT_EQ(cell(2).row, 1U);
    EXPECT_EQ(cell(2).column, 1U) << "the cell above reaches into the first column";
    EXPECT_EQ(cell(2).background, TextColor::fromBytes(255, 0, 0));
    EXPECT_EQ(textOf("<span style='display: table-cell'>a</span><span style='display: table-cell'>b</span>"),
        "a\tb\t");
}

TEST(HTMLImport, WhatIsNoTextIsAttachedOrNamed)
{
    const AttributedString text = imported("a<img width=3 height=4 src='data:image/gif;base64,R0lGODlh'>b");
    EXPECT_EQ(text.string(), u"a\uFFFCb"_s);
    ASSERT_EQ(text.attachments().size(), 1U);
    EXPECT_EQ(text.attachments()[0].file.name, u"image.gif");
    EXPECT_EQ(text.attachments()[0].file.contents.chars(), "GIF89a");
    EXPECT_EQ(text.attachments()[0].size, (Size { 3, 4 }));
    EXPECT_EQ(textOf("<img alt='a  picture'><img alt=''>"), "a picture");
    EXPECT_EQ(textOf("<img src=x:y>"), "@");
    EXPECT_EQ(textOf("<input value=a><input type=checkbox value=b><textarea>c d</textarea>"), "ac d");
    EXPECT_EQ(textOf("<object data='data:image/png,x'>lost</object><object>kept</object>"), "@kept");
    EXPECT_EQ(textOf("<script>a</script><style>b</style><noscript>c</noscript><title>d</title>"), "c");
}

TEST(HTMLImport, FramesAreReadInPlace)
{
    EXPECT_EQ(textOf("a<iframe src='data:text/html,<p>b</p>'>no</iframe>c"), "a\nb\nc");
    EXPECT_EQ(textOf("<iframe src='data:text/html,<b style=display:none>x</b>y'></iframe>"), "y");
}

TEST(HTMLImport, ThePageSaysWhatItIs)
{
    const Dictionary attributes = imported("<title> A  b </title><meta name=Author content=Ada>"
                                           "<meta name=keywords content='x, y'><p>z")
                                      .documentAttributes;
    EXPECT_EQ(attributes.stringForKey(DocumentAttribute::DocumentType), u"NSHTML"_s);
    EXPECT_EQ(attributes.stringForKey(DocumentAttribute::Title), u"A  b"_s);
    EXPECT_EQ(attributes.stringForKey(DocumentAttribute::Author), u"Ada"_s);
    EXPECT_EQ(attributes.find(DocumentAttribute::Keywords)->as<Array>()->size(), 2U);
}

TEST(HTMLImport, EncodingsAreTheOptionsThePagesOrGuessed)
{
    const auto text = [](std::string_view bytes, const String& name = {}) {
        return attributedStringWithHTML(Data::copyOf(bytes), { .textEncodingName = name }).string();
    };
    EXPECT_EQ(text("\xE4", u"iso-8859-1"_s), u"\u00E4"_s);
    EXPECT_EQ(text("<meta charset=iso-8859-5>\xD0"), u"\u0430"_s);
    EXPECT_EQ(text("\xC3\xA4"), u"\u00E4"_s);
    EXPECT_EQ(text("sch\xF6n", u"no-such-charset"_s), u"sch\u00F6n"_s);
    EXPECT_EQ(text(""), u""_s);
}

TEST(HTMLImport, DeepPagesKeepTheirText)
{
    std::string deep;
    for (int level = 0; level < 100'000; ++level)
        deep += "<div>" + std::to_string(level % 10);
    const String text = imported(deep).string();
    EXPECT_EQ(text.length(), 200'000U) << "a digit and a break on each level";
    std::string tables;
    for (int level = 0; level < 5'000; ++level)
        tables += "<table><tr><td>x<ul><li>y";
    EXPECT_GE(imported(tables).string().length(), 10'000U);
}

} // namespace
} // namespace caddis
