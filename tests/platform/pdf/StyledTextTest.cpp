#include "platform/pdf/PDFDocument.h"

#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace caddis {
namespace {

// "text|Font size bi " for each run, line ends as "/".
std::string runsOf(const PDFBuilder& builder)
{
    const auto text = PDFDocument::initWithData(builder.data())->pageAtIndex(0)->styledString();
    if (!text)
        return "nil";
    EXPECT_EQ(text->string, PDFDocument::initWithData(builder.data())->pageAtIndex(0)->string());
    std::string result;
    std::size_t place = 0;
    for (const PDFTextRun& run : text->runs) {
        char size[32];
        std::snprintf(size, sizeof size, " %g", run.style.size);
        result.append(readable(String(text->string.view().substr(place, run.length)))).append("|");
        result.append(readable(run.style.fontName)).append(size);
        result.append(run.style.bold ? "b" : "").append(run.style.italic ? "i" : "").append(" ");
        place += run.length;
    }
    EXPECT_EQ(place, text->string.length());
    std::replace(result.begin(), result.end(), '\n', '/');
    return result;
}

std::string font(const std::string& name, const std::string& descriptor)
{
    std::string text
        = "<< /Type /Font /Subtype /Type1 /FirstChar 97 /LastChar 98 /Widths [600 600] /BaseFont /";
    text.append(name).append(" /FontDescriptor << /Type /FontDescriptor /FontName /").append(name);
    return text.append(" ").append(descriptor).append(" >> >>\n");
}

TEST(StyledText, RunsHaveFontAndSizeAsThePageShowsThem)
{
    PDFBuilder builder;
    builder.page("BT /F1 6 Tf 2 0 0 2 72 700 Tm (one ) Tj /F2 6 Tf (two) Tj ET q 0.5 0 0 0.5 0 0 cm "
                 "BT /F2 24 Tf 144 1360 Td (three) Tj 0 -40 Td /F2 9.96 Tf (four) Tj ET Q");
    EXPECT_EQ(runsOf(builder), "one |Helvetica 12 two/three/|Courier 12 four|Courier 5 ");
    PDFBuilder blank;
    blank.page("");
    EXPECT_EQ(runsOf(blank), "");
}

TEST(StyledText, BoldAndItalicComeFromFlagsWeightAngleAndName)
{
    PDFBuilder builder;
    builder.fonts("/A " + font("ABCDEF+Any", "/Flags 262144") + "/B "
        + font("Any", "/Flags 4 /FontWeight 700") + "/C " + font("CMTI10", "/Flags 4 /ItalicAngle -14")
        + "/D " + font("CMBX12", "/Flags 4") + "/E " + font("Any-SemiBoldOblique", "/Flags 4") + "/F "
        + font("Any", "/Flags 64"));
    std::string content = "BT 72 700 Td ";
    for (const char name : { 'A', 'B', 'C', 'D', 'E', 'F' })
        content.append("/").append(1, name).append(" 10 Tf (a) Tj ");
    builder.page(content + "ET");
    EXPECT_EQ(runsOf(builder), "aa|Any 10b a|CMTI10 10i a|CMBX12 10b a|Any-SemiBoldOblique 10bi a|Any 10i ")
        << "two subsets of one font are one";
}

TEST(StyledText, ReplacedAndTurnedTextKeepsItsStyle)
{
    PDFBuilder builder;
    builder.page("BT /F1 10 Tf 72 700 Td (a) Tj /Span << /ActualText (bcd) >> BDC /F2 10 Tf (x) Tj EMC "
                 "/F1 10 Tf (e) Tj ET");
    EXPECT_EQ(runsOf(builder), "a|Helvetica 10 bcd|Courier 10 e|Helvetica 10 ");
}

} // namespace
} // namespace caddis
