#include "platform/richtext/RTF.h"

#include "platform/richtext/AttributedStringBuilder.h"
#include "support/RichTextTrace.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

AttributedString readBack(const AttributedString& text)
{
    AttributedString read = attributedStringWithRTF(RTFFromString(text, text.documentAttributes)).value();
    for (const auto key :
        { DocumentAttribute::DocumentType, DocumentAttribute::UTI, DocumentAttribute::CocoaRTFVersion })
        read.documentAttributes.remove(key);
    return read;
}

CharacterStyle linked(std::u16string_view link)
{
    CharacterStyle style;
    style.link = String(link);
    style.underline = LineStyle::Single;
    return style;
}

ParagraphStyle inCell(std::uint32_t row, std::uint32_t column)
{
    ParagraphStyle style;
    TableCell cell;
    cell.row = row;
    cell.column = column;
    cell.width = 120;
    cell.borderWidth = 1;
    cell.background = TextColor::fromBytes(250, 240, 1);
    style.cells.push_back(cell);
    return style;
}

TEST(RTFWriter, ReadsBackLetters)
{
    AttributedStringBuilder builder;
    CharacterStyle style;
    builder.append(u"plain \\{}\t\u00E9\u2026\u2022\u017D\u4E2D\U0001F6E0\u2028\u0001\r ", style);
    style.font = { u"Times-Roman"_s, 13.3, true, true };
    style.underline = LineStyle::Double;
    style.strikethrough = LineStyle::Single;
    style.foreground = TextColor::fromBytes(1, 2, 3, 0.25);
    style.background = TextColor::fromBytes(255, 255, 255);
    style.superscript = -2;
    style.baselineOffset = 1.5;
    style.kern = -0.5;
    builder.append(u"all of it", style);
    builder.append(u" 12 plain", {});
    const AttributedString text = std::move(builder).finish();
    EXPECT_EQ(readBack(text), text);
}

bool isIn(const AttributedString& text, std::string_view words)
{
    return RTFFromString(text, {}).chars().find(words) != std::string_view::npos;
}

TEST(RTFWriter, UsesTheWordsThatOtherReadersKnow)
{
    AttributedStringBuilder builder;
    CharacterStyle marked;
    marked.background = TextColor::fromBytes(255, 255, 0);
    builder.append(u"one\u20282\f\u2028", {});
    builder.append(u"marked", marked);
    builder.append(u"link", linked(u"http://a/{b}\u2028"));
    const AttributedString text = std::move(builder).finish();
    EXPECT_EQ(readBack(text), text);
    EXPECT_TRUE(isIn(text, "one\\line 2\\page \\line ")) << "nothing is shown for \\u8232";
    EXPECT_TRUE(isIn(text, "\\cb2\\chcbpat2 marked")) << "\\cb alone is ours";
    EXPECT_TRUE(isIn(text, "\\cb0\\chcbpat0"));
    EXPECT_TRUE(isIn(text, "http://a/\\{b\\}\\uc0\\u8232 \"")) << "words are not text in instructions";
}

TEST(RTFWriter, ReadsBackLinksAcrossParagraphs)
{
    AttributedStringBuilder builder;
    ParagraphStyle indented;
    indented.headIndent = 36;
    builder.append(u"see ", {});
    builder.append(u"one\n", linked(u"http://a/?b=\\{c}"));
    builder.endParagraphs({});
    builder.append(u"more", linked(u"http://a/?b=\\{c}"));
    builder.append(u"two", linked(u"mailto:x"));
    builder.append(u" and text\nlast", {});
    builder.endParagraphs(indented);
    const AttributedString text = std::move(builder).finish();
    EXPECT_EQ(readBack(text), text);
}

TEST(RTFWriter, ReadsBackParagraphsAndLists)
{
    AttributedStringBuilder builder;
    ParagraphStyle style;
    style.alignment = TextAlignment::Justified;
    style.direction = WritingDirection::RightToLeft;
    style.headIndent = 20;
    style.firstLineIndent = 5;
    style.tailIndent = -10;
    style.spacingBefore = 3;
    style.lineHeightMultiple = 1.5;
    style.maximumLineHeight = 30;
    style.tabStops = { { 10, TabAlignment::Decimal }, { 20 } };
    style.headerLevel = 2;
    builder.append(u"one\n", {});
    builder.endParagraphs(style);
    ParagraphStyle item;
    item.lists = { builder.addList({ u"{lower-roman})"_s, 3 }) };
    builder.append(u"\tiii)\titem\n", {});
    builder.endParagraphs(item);
    item.lists.push_back(builder.addList({ u"{circle}"_s }));
    builder.append(u"\t\u25E6\tinner\n", {});
    builder.endParagraphs(item);
    const AttributedString text = std::move(builder).finish();
    EXPECT_EQ(readBack(text), text);
    EXPECT_TRUE(isIn(text, "{\\leveltext\\leveltemplateid1\\'00;}")) << "markers are in the text";
}

TEST(RTFWriter, ReadsBackTables)
{
    AttributedStringBuilder builder;
    builder.addTable({ 2 });
    builder.append(u"before\n", {});
    builder.endParagraphs({});
    for (const auto& [text, row, column] : { std::tuple(u"a\n", 0U, 0U), std::tuple(u"b\n", 0U, 1U),
             std::tuple(u"b2\n", 0U, 1U), std::tuple(u"c\n", 1U, 0U), std::tuple(u"d\n", 1U, 1U) }) {
        builder.append(text, {});
        builder.endParagraphs(inCell(row, column));
    }
    builder.append(u"after", {});
    const AttributedString text = std::move(builder).finish();
    AttributedString read = readBack(text);
    EXPECT_EQ(read.string(), text.string());
    EXPECT_EQ(read.tables(), text.tables());
    ASSERT_EQ(read.paragraphStyles().size(), text.paragraphStyles().size());
    for (std::size_t index = 0; index < read.paragraphStyles().size(); ++index)
        EXPECT_EQ(read.paragraphStyles()[index].cells, text.paragraphStyles()[index].cells) << index;
}

ParagraphStyle cellsOf(std::initializer_list<TableCell> cells)
{
    ParagraphStyle style;
    style.cells = cells;
    return style;
}

AttributedString built(
    std::size_t tables, const std::vector<std::pair<std::u16string_view, ParagraphStyle>>& paragraphs)
{
    AttributedStringBuilder builder;
    for (std::size_t table = 0; table < tables; ++table)
        builder.addTable({ 2 });
    for (const auto& [text, style] : paragraphs) {
        builder.append(text, {});
        builder.endParagraphs(style);
    }
    return std::move(builder).finish();
}

TEST(RTFWriter, ReadsBackTablesInTables)
{
    TableCell outer;
    outer.columnSpan = 2;
    outer.padding = { 1, 2, 3, 4 };
    outer.minimumHeight = 20;
    outer.alignment = VerticalAlignment::Middle;
    TableCell first { .table = 1, .columnSpan = 2, .width = 90, .borderWidth = 1 };
    first.borderSides = TableCell::Top | TableCell::Right;
    TableCell second { .table = 1, .row = 1, .background = TextColor::fromBytes(1, 2, 3) };
    TableCell third { .table = 1, .row = 1, .column = 1, .alignment = VerticalAlignment::Bottom };
    TableCell below { .row = 1, .column = 1 };
    const AttributedString text = built(2,
        { { u"a\n", cellsOf({ outer }) }, { u"b\n", cellsOf({ outer, first }) },
            { u"\n", cellsOf({ outer, second }) }, { u"d\n", cellsOf({ outer, second }) },
            { u"e\n", cellsOf({ outer, third }) }, { u"f\n", cellsOf({ below }) }, { u"g", {} } });
    EXPECT_EQ(traceOf(readBack(text)), traceOf(text));
    EXPECT_EQ(readBack(text), text);
    EXPECT_TRUE(isIn(text, "d\\nestcell{\\nonesttables\\par}")) << "for readers without nested tables";
}

TEST(RTFWriter, ReadsBackTablesThatFollowEachOther)
{
    const TableCell outer { .table = 1 };
    const AttributedString text = built(4,
        { { u"a\n", cellsOf({ {} }) }, { u"b\n", cellsOf({ outer }) },
            { u"c\n", cellsOf({ outer, { .table = 2 } }) }, { u"d\n", cellsOf({ outer, { .table = 3 } }) },
            { u"e\n", cellsOf({ { .table = 1, .row = 1 } }) } });
    const AttributedString read = readBack(text);
    EXPECT_EQ(traceOf(read), traceOf(text));
    ASSERT_EQ(read.paragraphStyles().size(), text.paragraphStyles().size());
    for (std::size_t index = 0; index < read.paragraphStyles().size(); ++index)
        EXPECT_EQ(read.paragraphStyles()[index].cells, text.paragraphStyles()[index].cells) << index;
}

// The second row's last two columns belong to the cell above them.
TEST(RTFWriter, ReadsBackCellsOfSeveralRows)
{
    const TableCell inner { .table = 1, .rowSpan = 2 };
    const TableCell tall { .column = 1, .rowSpan = 3, .columnSpan = 2 };
    const AttributedString text = built(2,
        { { u"a\n", cellsOf({ {} }) }, { u"b\n", cellsOf({ tall }) }, { u"c\n", cellsOf({ tall, inner }) },
            { u"d\n", cellsOf({ tall, { .table = 1, .column = 1 } }) },
            { u"e\n", cellsOf({ tall, { .table = 1, .row = 1, .column = 1 } }) },
            { u"f\n", cellsOf({ { .row = 1 } }) }, { u"g\n", cellsOf({ { .row = 2 } }) },
            { u"h\n", cellsOf({ { .row = 3, .column = 1, .columnSpan = 2 } }) } });
    const AttributedString read = readBack(text);
    EXPECT_EQ(traceOf(read), traceOf(text));
    ASSERT_EQ(read.paragraphStyles().size(), text.paragraphStyles().size());
    for (std::size_t index = 0; index < read.paragraphStyles().size(); ++index)
        EXPECT_EQ(read.paragraphStyles()[index].cells, text.paragraphStyles()[index].cells) << index;
}

ParagraphStyle cellAt(std::uint32_t row, std::uint32_t column, std::uint32_t columns = 1)
{
    ParagraphStyle style;
    TableCell cell;
    cell.row = row;
    cell.column = column;
    cell.columnSpan = columns;
    style.cells.push_back(cell);
    return style;
}

// A wide cell, a cell without a width, and a row whose first column belongs to the cell above.
TEST(RTFWriter, ReadsBackCellsOfSeveralColumns)
{
    AttributedStringBuilder builder;
    builder.addTable({ 3 });
    const std::tuple<std::u16string_view, ParagraphStyle> cells[] { { u"wide\n", cellAt(0, 0, 2) },
        { u"b\n", cellAt(0, 2) }, { u"below\n", cellAt(1, 1) }, { u"d\n", cellAt(1, 2) } };
    for (const auto& [text, style] : cells) {
        builder.append(text, {});
        builder.endParagraphs(style);
    }
    builder.append(u"after", {});
    const AttributedString text = std::move(builder).finish();
    EXPECT_EQ(traceOf(readBack(text)), traceOf(text));
    EXPECT_EQ(readBack(text), text);
    ParagraphStyle vast = cellAt(0, 4000000000U, 4000000000U);
    AttributedStringBuilder hostile;
    hostile.addTable({});
    hostile.append(u"x\n", {});
    hostile.endParagraphs(vast);
    EXPECT_EQ(readBack(std::move(hostile).finish()).string(), u"x\n"_s);
}

TEST(RTFWriter, ReadsBackDocumentAttributes)
{
    AttributedStringBuilder builder;
    builder.append(u"x", {});
    AttributedString text = std::move(builder).finish();
    text.documentAttributes = { { String(DocumentAttribute::PaperSize), u"{612, 792}"_s },
        { String(DocumentAttribute::LeftMargin), 90.5 }, { String(DocumentAttribute::Title), u"{T\u00E9}"_s },
        { String(DocumentAttribute::Keywords), Array { u"a b"_s, u"c"_s } },
        { String(DocumentAttribute::ModificationTime), Date::fromUnixSeconds(1522908425) } };
    const Dictionary read = readBack(text).documentAttributes;
    for (const auto& [key, value] : text.documentAttributes) {
        const Value* found = read.find(key);
        EXPECT_TRUE(found && *found == value) << key.utf8();
    }
    EXPECT_EQ(RTFFromString(text, {}).chars().find("\\paperw"), std::string_view::npos);
}

} // namespace
} // namespace caddis
