#include "platform/pdf/PDFDocument.h"

#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::string textOf(const PDFBuilder& builder, std::size_t page = 0, PDFDeadline deadline = {})
{
    const auto document = PDFDocument::initWithData(builder.data());
    const auto text = document ? document->pageAtIndex(page)->string(deadline) : std::nullopt;
    return text ? readable(*text) : "nil";
}

std::string textOf(const std::string& content)
{
    PDFBuilder builder;
    builder.page(content);
    return textOf(builder);
}

// A CID font whose two-byte codes are Unicode values; glyphs are 1 em wide.
void addUnicodeFont(PDFBuilder& builder, const std::string& name, const std::string& encoding = "Identity-H")
{
    const int map = builder.stream("/CIDInit /ProcSet findresource begin begincmap\n"
                                   "1 begincodespacerange <0000> <FFFF> endcodespacerange\n"
                                   "2 beginbfrange <0000> <00FF> <0000> <0100> <D7FF> <0100> endbfrange\n"
                                   "2 beginbfchar <E000> <D83DDE00> <E001> <006600660069> endbfchar\n"
                                   "endcmap end");
    const int descendant
        = builder.object("<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Any /DW 1000 "
                         "/CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >> >>");
    builder.fonts(name + " "
        + PDFBuilder::reference(builder.object("<< /Type /Font /Subtype /Type0 /BaseFont /Any /Encoding /"
            + encoding + " /DescendantFonts [" + PDFBuilder::reference(descendant) + "] /ToUnicode "
            + PDFBuilder::reference(map) + " >>"))
        + " ");
}

TEST(PageText, PlacesMakeWordsAndLines)
{
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td (Hello) Tj 0 -14 Td (World) Tj ET"), "Hello\nWorld");
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td [(Hel) 20 (lo) -300 (there)] TJ ET"), "Hello there");
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td (a  b ) Tj 100 0 Td (c) Tj -100 3 Td (2) Tj ET"), "a b c\n2");
    EXPECT_EQ(textOf("BT /F1 12 Tf 14 TL 72 700 Td (x) Tj 6 Ts 7 0 Td (2) Tj 0 Ts T* (y) ' 1 2 (z) \" ET"),
        "x2\ny\nz");
    EXPECT_EQ(textOf("BT /F1 12 Tf 0 1 -1 0 300 72 Tm (up) Tj 1 0 0 1 300 72 Tm (along) Tj ET"), "up\nalong");
    EXPECT_EQ(textOf("BT /F1 -12 Tf -1 0 0 -1 72 700 Tm (turned twice) Tj ET"), "turned twice");
}

TEST(PageText, OperandsAreReadAsTheyAreMeant)
{
    EXPECT_EQ(textOf("BT/F1 12 Tf 72 700 Td(a\\(b\\)\\101\\\r\nc(d))Tj ET"), "a(b)Ac(d)");
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td <48 65 6C6C 6F2> Tj ET"), "Hello");
    EXPECT_EQ(textOf("BT /#461 12.0.3 Tf +72 --700 Td 0 1400 Td (name) Tj ET % (not this) Tj"), "name");
    EXPECT_EQ(
        textOf("BI /W 2 /H 2 ID \x01 EI\xff ) Tj \x02 EI BT /F1 12 Tf 72 700 Td (after) Tj ET"), "after");
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td (kept"), "") << "an operand without its operator";
    EXPECT_EQ(textOf("] >> ) BT /F1 12 Tf 72 700 Td (kept) Tj Q Q EMC ET"), "kept");
}

TEST(PageText, TextOfScansIsInAndHiddenLayersAreOut)
{
    PDFBuilder builder;
    const int off = builder.object("<< /Type /OCG /Name (off) >>");
    const int on = builder.object("<< /Type /OCG /Name (on) >>");
    builder.catalog("/OCProperties << /OCGs [" + PDFBuilder::reference(off) + " " + PDFBuilder::reference(on)
        + "] /D << /OFF [" + PDFBuilder::reference(off) + "] >> >>");
    builder.resources(
        "/Properties << /L0 " + PDFBuilder::reference(off) + " /L1 " + PDFBuilder::reference(on) + " >>");
    const int form = builder.stream("BT /F1 12 Tf 72 600 Td (hidden form) Tj ET",
        "/Type /XObject /Subtype /Form /BBox [0 0 612 792] /OC " + PDFBuilder::reference(off));
    builder.resources("/XObject << /X0 " + PDFBuilder::reference(form) + " >>");
    builder.page(
        "BT /F1 12 Tf 3 Tr 72 700 Td (scanned) Tj ET /OC /L0 BDC /X0 Do /OC /L1 BDC BT 72 650 Td (inside) Tj "
        "ET "
        "EMC EMC /OC /L1 BDC BT 72 640 Td (shown) Tj ET EMC /X0 Do BT 72 900 Td (off the page) Tj ET");
    EXPECT_EQ(textOf(builder), "scanned\nshown");
}

TEST(PageText, FormsBringTheirOwnResourcesAndNeverRecurse)
{
    PDFBuilder builder;
    builder.page(
        "q 1 0 0 1 0 100 cm BT /F1 12 Tf 72 500 Td (before) Tj ET /X Do BT 72 400 Td (behind) Tj ET Q");
    // The form draws itself, closes more than it opened and changes the text state for itself alone.
    const int form = builder.stream("Q Q EMC BT /F2 12 Tf 50 Tz 72 480 Td (form) Tj ET /X Do",
        "/Type /XObject /Subtype /Form /BBox [0 0 612 792] /Matrix [1 0 0 1 0 0]");
    builder.resources("/XObject << /X " + PDFBuilder::reference(form) + " >>");
    EXPECT_EQ(textOf(builder), "before\nform\nbehind");
}

TEST(PageText, TheDocumentsOwnTextReplacesWhatIsDrawn)
{
    PDFBuilder builder;
    builder.resources("/Properties << /P << /ActualText <FEFF00DF> >> >>");
    builder.page(
        "BT /F1 12 Tf 72 700 Td (Stra) Tj /Span /P BDC (xx) Tj EMC (e ) Tj "
        "/Span << /Lang (de) /ActualText (\\(c\\)) /MCID 1 >> BDC /Span /P BDC (y) Tj EMC (z) Tj EMC "
        "/Span << /ActualText () >> BDC (-) Tj EMC ET");
    EXPECT_EQ(textOf(builder), "Straße (c)");
}

TEST(PageText, CharactersOfEveryKindBecomeText)
{
    PDFBuilder builder;
    addUnicodeFont(builder, "/U");
    builder.page("BT /U 12 Tf 72 700 Td <00C40062 E000 4E2D E001 0007 0063> Tj ET");
    EXPECT_EQ(textOf(builder), "Äb😀中ffic") << "surrogates, ligatures; U+0007 is no text";
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td (\\344\\200\\240x) Tj ET"), "ä€ x")
        << "WinAnsi; U+00A0 is a blank";
    EXPECT_EQ(textOf("BT /None 12 Tf 72 700 Td (no font) Tj ET"), "");
}

TEST(PageText, GlyphsThatNoTableKnowsAreNotGuessed)
{
    PDFBuilder builder;
    builder.fonts("/M "
        + PDFBuilder::reference(builder.object("<< /Type /Font /Subtype /Type1 /BaseFont /Music /Encoding << "
                                               "/Differences [96 /grave.alt /uni0042 /uni0041 /adieresis 104 "
                                               "/noteheads.s2 /flag] >> >>"))
        + " ");
    builder.page("BT /M 12 Tf 72 700 Td (`abchi) Tj ET");
    EXPECT_EQ(textOf(builder), "`BAä");
}

TEST(PageText, VerticalWritingGoesDownAndThenLeft)
{
    PDFBuilder builder;
    addUnicodeFont(builder, "/V", "Identity-V");
    builder.page("BT /V 12 Tf 300 700 Td <4E004E8C> Tj <4E09> Tj 1 0 0 1 280 700 Tm <56DB> Tj ET");
    EXPECT_EQ(textOf(builder), "一二三\n四");
}

TEST(PageText, Type3FontsAreAsLargeAsTheirGlyphs)
{
    PDFBuilder builder;
    const int glyph = builder.stream("500 0 d0 0 0 400 700 re f");
    builder.fonts("/T "
        + PDFBuilder::reference(builder.object("<< /Type /Font /Subtype /Type3 /FontBBox [0 0 50 70] "
                                               "/FontMatrix [0.01 0 0 0.01 0 0] /FirstChar 97 /LastChar 98 "
                                               "/Widths [50 50] /Encoding << /Type /Encoding "
                                               "/Differences [97 /a /b] >> /CharProcs << /a "
            + PDFBuilder::reference(glyph) + " /b " + PDFBuilder::reference(glyph)
            + " >> /Resources << >> >>")));
    builder.page("BT /T 20 Tf 72 700 Td (ab) Tj 24 0 Td (ba) Tj ET");
    EXPECT_EQ(textOf(builder), "ab ba");
}

TEST(PageText, RightToLeftLinesAreInTheOrderOfReading)
{
    PDFBuilder builder;
    addUnicodeFont(builder, "/U");
    // As drawn from the left: "12 <alef><bet> ab <gimel>"; read from the right: gimel ab bet alef 12.
    builder.page("BT /U 12 Tf 72 700 Td <00310032 0020 05D005D1 0020 00610062 0020 05D2> Tj ET");
    EXPECT_EQ(textOf(builder), "ג ab בא 12");
    // Words placed in the order of reading, each left of the one before.
    PDFBuilder placed;
    addUnicodeFont(placed, "/U");
    placed.page("BT /U 12 Tf 1 0 0 1 200 700 Tm <05D105D0> Tj 1 0 0 1 160 700 Tm <05D305D2> Tj "
                "1 0 0 1 200 680 Tm <05D4> Tj ET");
    EXPECT_EQ(textOf(placed), "אב גד\nה");
    // A mark is drawn over its letter, before it; the run of a left-to-right line is turned round.
    PDFBuilder marked;
    addUnicodeFont(marked, "/U");
    marked.page(
        "BT /U 12 Tf 1 0 0 1 72 700 Tm <006100620063> Tj 120 0 Td <05D105D0> Tj -4 0 Td <05B8> Tj ET");
    EXPECT_EQ(textOf(marked).substr(0, 4), "abc ");
}

TEST(PageText, TextDrawnTwiceAtOnePlaceIsTakenOnce)
{
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td (Bold) Tj 1 0 0 1 72.3 700 Tm (Bold) Tj 100 0 Td (x) Tj ET"),
        "Bold x");
    EXPECT_EQ(
        textOf("BT /F1 12 Tf 72 700 Td (H) Tj 1 0 0 1 72.3 700 Tm (H) Tj 1 0 0 1 80.6 700 Tm (i) Tj ET"),
        "Hi");
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td (ll) Tj ET"), "ll");
}

TEST(PageText, AccentsJoinTheLettersTheyAreDrawnOver)
{
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td [(Pad) (\\264) 440 (e)] TJ ET"), "Pade\u0301");
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td [(u) 440 (\\250) -110 (ber)] TJ ET"), "u\u0308ber");
    EXPECT_EQ(textOf("BT /F1 12 Tf 72 700 Td (a\\264 ^e) Tj ET"), "a´ ^e");
}

TEST(PageText, WorkOnAPageIsBounded)
{
    PDFBuilder builder;
    const auto name = [](int level) { return "/X" + std::to_string(level); };
    // Each form draws the next one ten times: 10^12 times "x".
    std::string forms;
    for (int level = 0; level < 12; ++level) {
        std::string content = level == 11 ? "BT /F1 12 Tf 72 700 Td (x) Tj ET" : "";
        for (int time = 0; level < 11 && time < 10; ++time)
            content += name(level + 1) + " Do ";
        const int form = builder.stream(content, "/Type /XObject /Subtype /Form /BBox [0 0 612 792]");
        forms += name(level) + " " + PDFBuilder::reference(form) + " ";
    }
    builder.resources("/XObject << " + forms + " >>");
    builder.page("BT /F1 12 Tf 72 720 Td (first) Tj ET /X0 Do");
    const auto start = std::chrono::steady_clock::now();
    const std::string text = textOf(builder, 0, start + std::chrono::milliseconds(200));
    EXPECT_TRUE(text.starts_with("first")) << text.substr(0, 20);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

} // namespace
} // namespace caddis
