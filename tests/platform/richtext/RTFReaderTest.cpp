#include "platform/richtext/RTF.h"

#include "support/RichTextTrace.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

AttributedString read(std::string_view body, const FileWrapper* package = nullptr)
{
    const std::string rtf = "{\\rtf1\\ansi\\ansicpg1252" + std::string(body) + "}";
    return attributedStringWithRTF(Data::copyOf(rtf), package).value();
}

std::string text(std::string_view body) { return readable(read(body).string()); }

const CharacterStyle& styleAt(const AttributedString& text, std::size_t run)
{
    return text.styles()[text.runs()[run].style];
}

TEST(RTFReader, DecodesBytesByTheirFontsCodePage)
{
    EXPECT_EQ(text(" \\'85\\'e9\\~\\emdash "), "…é\u00A0—");
    EXPECT_EQ(text("{\\fonttbl{\\f0\\fcharset204 Arial;}\\f1\\fcharset128 Osaka;}\\f0 \\'c6\\f1 "
                   "\\'82\\'a0\\'82\\'a2"),
        "Жあい");
    EXPECT_EQ(text("\\mac \\'8e"), "é");
    EXPECT_EQ(text("\\ansicpg1250 \\'e8"), "č");
}

TEST(RTFReader, SkipsWhatStandsBehindUnicode)
{
    EXPECT_EQ(text("\\u8226*x"), "•x");
    EXPECT_EQ(text("\\uc2\\u8226\\'a1\\'a2x{\\uc0\\u8226 y}\\u-3913ab"), "•x•y\xEF\x82\xB7");
    EXPECT_EQ(text("\\uc0\\u55357 \\u57056 "), "🛠");
    EXPECT_EQ(text("\\uc5\\u65{a}b"), "Aab");
}

TEST(RTFReader, LeavesOutWhatIsNoText)
{
    EXPECT_EQ(
        text("{\\stylesheet{\\s1 heading;}}{\\*\\unknown \\b deep{er}}a{\\pict 0123}{\\footer f}b"), "ab");
    EXPECT_EQ(text("a\\v hidden\\v0 b{\\bin3 }}}c}"), "abc");
    EXPECT_EQ(text("a\\bin99999 rest"), "a");
    EXPECT_EQ(text("}}}after"), "after");
    EXPECT_FALSE(attributedStringWithRTF(Data::copyOf("rtf1")));
}

TEST(RTFReader, ReadsTheLooksOfLetters)
{
    const auto read
        = caddis::read("{\\fonttbl\\f0\\fswiss Helvetica-Bold;}{\\colortbl;\\red255\\green0\\blue0;"
                       "\\red0\\green0\\blue0;}{\\*\\expandedcolortbl;;\\csgray\\c50000\\c40000;}"
                       "\\f0\\b\\fs27\\cf1 a\\cf2\\super b{\\i\\nosupersub c}d");
    ASSERT_EQ(read.runs().size(), 4U);
    EXPECT_EQ(styleAt(read, 0).font, (Font { u"Helvetica-Bold"_s, 13.5, true, false }));
    EXPECT_EQ(styleAt(read, 0).foreground, (TextColor { TextColor::Full, 0, 0 }));
    EXPECT_EQ(styleAt(read, 1).foreground, (TextColor { 50000, 50000, 50000, 40000 }));
    EXPECT_EQ(styleAt(read, 1).superscript, 1);
    EXPECT_TRUE(styleAt(read, 2).font.italic);
    EXPECT_EQ(styleAt(read, 3), styleAt(read, 1));
}

TEST(RTFReader, ReadsParagraphsListsAndLinks)
{
    const auto read = caddis::read(
        "{\\*\\listtable{\\list{\\listlevel\\levelnfc0{\\*\\levelmarker \\{decimal\\}.}}\\listid9}}"
        "{\\*\\listoverridetable{\\listoverride\\listid9\\ls1}}"
        "\\pard\\qc\\li720\\fi-360\\tqr\\tx100 a\\\n\\pard\\ls1\\ilvl0{\\listtext\t1.\t}b\\par "
        "\\pard{\\field{\\*\\fldinst{HYPERLINK \"http://x/\"}}{\\fldrslt c}}d");
    EXPECT_EQ(read.string(), u"a\n\t1.\tb\ncd");
    ASSERT_EQ(read.paragraphRuns().size(), 3U);
    EXPECT_EQ(read.paragraphStyles()[0].firstLineIndent, 18);
    EXPECT_EQ(read.paragraphStyles()[0].tabStops, (std::vector<TabStop> { { 5, TabAlignment::Right } }));
    EXPECT_EQ(read.paragraphStyles()[1].lists, std::vector<std::uint32_t> { 0 });
    EXPECT_EQ(read.lists()[0].markerFormat, u"{decimal}.");
    EXPECT_EQ(styleAt(read, 1).link, u"http://x/");
    EXPECT_EQ(styleAt(read, 2).link, u"");
}

TEST(RTFReader, TakesMarkersFromTheTextOfLevels)
{
    const auto read = caddis::read("{\\*\\listtable{\\list{\\listlevel\\levelnfc0{"
                                   "\\leveltext\\leveltemplateid5\\'02\\'00);}{\\levelnumbers\\'01;}}"
                                   "{\\listlevel\\levelnfc4{\\leveltext\\'05\\'00.(\\'01);}}{"
                                   "\\listlevel\\levelnfc23{\\leveltext\\'01o;}}\\listid9}}"
                                   "{\\*\\listoverridetable{\\listoverride\\listid9\\ls1}}"
                                   "\\pard{\\listtext 3)\\tab}\\ls1 a\\par\\ilvl1 b\\par\\ilvl2 c\\par");
    EXPECT_EQ(traceOf(read),
        "[list {decimal})] {}3)TABa\n[list {decimal}) list {lower-alpha})] {}b\n"
        "[list {decimal}) list {lower-alpha}) list {circle}] {}c\n");
}

TEST(RTFReader, KeepsTheCellsOfTables)
{
    const auto read = caddis::read("\\trowd\\cellx1000\\cellx3000\\pard\\intbl a\\cell b\\par c\\cell\\row"
                                   "\\pard\\intbl d\\cell\\row\\pard e");
    EXPECT_EQ(read.string(), u"a\nb\nc\nd\ne");
    ASSERT_EQ(read.paragraphRuns().size(), 4U);
    const auto& cell = read.paragraphStyles()[1].cells.at(0);
    EXPECT_EQ(cell.column, 1U);
    EXPECT_EQ(cell.width, 100);
    EXPECT_EQ(read.paragraphStyles()[2].cells.at(0).row, 1U);
    EXPECT_TRUE(read.paragraphStyles()[3].cells.empty());
    EXPECT_EQ(read.tables().at(0).columns, 2U);
}

TEST(RTFReader, LeavesOutCellsThatOthersCover)
{
    const auto read = caddis::read(
        "\\trowd\\clmgf\\cellx1000\\clmrg\\cellx2000\\clvmgf\\cellx3000\\pard\\intbl a\\cell"
        "\\cell b\\cell\\row\\trowd\\cellx1000\\cellx2000\\clvmrg\\cellx3000 c\\cell d\\cell\\cell"
        "\\row\\pard e");
    EXPECT_EQ(traceOf(read), "[cell 0,0 x2] {}a\n[cell 0,2] {}b\n[cell 1,0] {}c\n[cell 1,1] {}d\n{}e");
    EXPECT_EQ(read.paragraphStyles()[0].cells.at(0).width, 100);
    EXPECT_EQ(text("\\trowd\\clmrg\\cellx1\\clvmrg\\cellx2\\intbl a\\cell b\\cell\\row"), "a\nb\n")
        << "text stays";
}

// What is said of a nested row stands behind it, and for those who can't nest there is a line break too many.
TEST(RTFReader, ReadsTablesInTablesAsOthersWriteThem)
{
    const auto read = caddis::read(
        "\\trowd\\trgaph70\\cellx5000\\pard\\intbl a\\par\\pard\\intbl\\itap2 "
        "b\\nestcell{\\nonesttables\\par}"
        "\\nestcell{\\nonesttables\\par}{\\*\\nesttableprops\\trowd\\trrh200\\clmgf\\clbrdrb\\brdrs\\brdrw20"
        "\\clbrdrt\\brdrnone\\clpadt40\\clpadft3\\cellx1000\\clmrg\\cellx3000\\nestrow}{\\nonesttables\\par}"
        "\\pard\\intbl\\itap1\\cell\\row\\pard c");
    EXPECT_EQ(traceOf(read), "[cell 0,0] {}a\n[cell 0,0 cell 0,0 x2] {}b\n{}c");
    const TableCell& outer = read.paragraphStyles()[1].cells.at(0);
    EXPECT_EQ(outer, read.paragraphStyles()[0].cells.at(0)) << "the cell's paragraphs agree";
    EXPECT_EQ(outer.padding, (CellPadding { 0, 3.5, 0, 3.5 }));
    const TableCell& inner = read.paragraphStyles()[1].cells.at(1);
    EXPECT_EQ(inner.borderSides, TableCell::Bottom);
    EXPECT_EQ(inner.width, 150);
    EXPECT_EQ(inner.minimumHeight, 10);
    EXPECT_EQ(inner.padding, (CellPadding { 0, 2, 0, 0 })) << "\\clpadt is the left side's";
}

TEST(RTFReader, TakesAttachmentsFromThePackageOnly)
{
    constexpr std::string_view Body = "a{{\\NeXTGraphic ../my pic.png \\width3200 \\height20 \n}\xAC}b";
    const FileWrapper package = FileWrapper::folder({}, { FileWrapper::file(u"my pic.png"_s, {}) });
    const auto read = caddis::read(Body, &package);
    EXPECT_EQ(read.string(), u"a\uFFFCb");
    ASSERT_EQ(read.attachments().size(), 1U);
    EXPECT_EQ(read.attachments()[0].size, (Size { 160, 1 }));
    EXPECT_EQ(text(Body), "ab");
}

TEST(RTFReader, ReadsWhatTheDocumentSaysOfItself)
{
    const auto attributes = read("\\cocoartf1561\\cocoasubrtf600{\\info{\\title A \\'e9}{\\keywords a, b c}"
                                 "{\\*\\copyright me}{\\creatim\\yr2018\\mo4\\dy5\\hr6\\min7}}"
                                 "\\paperw12240\\paperh15840\\margl1440\\viewkind1")
                                .documentAttributes;
    EXPECT_EQ(attributes.stringForKey(DocumentAttribute::Title), u"A é"_s);
    EXPECT_EQ(*attributes.find(DocumentAttribute::Keywords), Value(Array { u"a"_s, u"b c"_s }));
    EXPECT_EQ(attributes.stringForKey(DocumentAttribute::Copyright), u"me"_s);
    EXPECT_EQ(attributes.stringForKey(DocumentAttribute::PaperSize), u"{612, 792}"_s);
    EXPECT_EQ(*attributes.find(DocumentAttribute::CocoaRTFVersion), Value(1561.6));
    EXPECT_EQ(attributes.find(DocumentAttribute::CreationTime)->as<Date>()->unixSeconds(), 1522908420);
}

TEST(RTFReader, HoldsDepthAndSizeAgainstHostileText)
{
    constexpr std::size_t Many = 1000000;
    std::string groups(Many, '{');
    groups += 'a';
    groups.append(Many, '}');
    groups += 'b';
    EXPECT_EQ(text(groups), "ab");
    std::string cells = "\\trowd";
    for (int column = 0; column < 10000; ++column)
        cells += "\\cellx2000000000\\tx9";
    EXPECT_EQ(text(cells + "\\intbl a\\cell\\row"), "a\n");
    EXPECT_EQ(text("a\\bin2147483647 b"), "a") << "what it skips ends with the document";
    EXPECT_EQ(text("a\\bin-5 b"), "ab");
    std::string merged = "\\trowd\\cellx1";
    for (int column = 0; column < 100000; ++column)
        merged += "\\clmrg\\cellx2";
    EXPECT_EQ(text(merged + "\\intbl a\\cell\\row"), "a\n");
    EXPECT_EQ(text("\\fs999999999999\\li-99999999999999999999 a\\u99999999999 "), "a\uFFFF");
}

} // namespace
} // namespace caddis
