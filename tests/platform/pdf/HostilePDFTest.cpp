#include "platform/pdf/PDFDocument.h"

#include "platform/base/LeftOut.h"
#include "support/PDFBuilder.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <zlib.h>

namespace caddis {
namespace {

using Clock = std::chrono::steady_clock;

// The text of the first page; "nil" where there is no document, "no page" where it has none.
std::string textOf(const std::string& bytes, PDFDeadline deadline = {})
{
    const auto document = PDFDocument::initWithData(Data::copyOf(bytes));
    if (!document)
        return "nil";
    const auto page = document->pageAtIndex(0);
    return page ? readable(page->string(deadline).value_or(u"no text"_s)) : "no page";
}

std::string replaced(std::string bytes, const std::string& what, const std::string& by)
{
    return bytes.replace(bytes.find(what), what.size(), by);
}

PDFBuilder withText(const std::string& content = "BT /F1 12 Tf 72 700 Td (kept) Tj ET")
{
    PDFBuilder builder;
    builder.page(content);
    return builder;
}

// Blanks, packed a thousand to one.
std::string deflatedBlanks(std::size_t megabytes)
{
    const std::string blanks(std::size_t { 1 } << 20, ' ');
    std::string out(megabytes * 8192, '\0');
    z_stream stream {};
    deflateInit(&stream, Z_BEST_SPEED);
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    for (std::size_t piece = 1; piece <= megabytes; ++piece) {
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(blanks.data()));
        stream.avail_in = static_cast<uInt>(blanks.size());
        deflate(&stream, piece == megabytes ? Z_FINISH : Z_NO_FLUSH);
    }
    EXPECT_EQ(stream.avail_in, 0U);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

long peakMemoryInMB()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

TEST(HostilePDF, AFileThatIsCutAnywhereIsReadOrRefused)
{
    const std::string bytes = withText().bytes();
    for (std::size_t length = 0; length < bytes.size(); length += 7) {
        const std::string text = textOf(bytes.substr(0, length));
        EXPECT_TRUE(text == "nil" || text == "no page" || text == "kept" || text.empty()) << length << text;
    }
}

TEST(HostilePDF, PageTreesMayLoopAndLie)
{
    const std::string bytes = withText().bytes();
    const std::string kids = "/Kids [8 0 R ]";
    ASSERT_NE(bytes.find(kids), bytes.npos);
    EXPECT_EQ(textOf(replaced(bytes, kids, "/Kids [2 0 R ]")), "no text") << "its own child";
    EXPECT_EQ(textOf(replaced(bytes, kids, "/Kids [99 0 R]")), "no text");
    EXPECT_EQ(textOf(replaced(bytes, "/Parent 2 0 R", "/Parent 8 0 R")), "kept") << "its own parent";
}

TEST(HostilePDF, AHundredThousandPagesAreCountedAndReached)
{
    PDFBuilder builder;
    for (int page = 0; page < 100'000; ++page)
        builder.page("BT /F1 12 Tf 72 700 Td (" + std::to_string(page) + ") Tj ET");
    const auto document = PDFDocument::initWithData(builder.data());
    ASSERT_NE(document, nullptr);
    ASSERT_EQ(document->pageCount(), 100'000U);
    EXPECT_EQ(document->pageAtIndex(99'999)->string(), u"99999"_s);
    EXPECT_EQ(document->pageAtIndex(0)->string(), u"0"_s);
    EXPECT_EQ(document->pageAtIndex(50'000)->label(), u"50001"_s);
}

TEST(HostilePDF, ADeepPageTreeEnds)
{
    PDFBuilder builder = withText();
    int last = 8;
    for (int level = 0; level < 5'000; ++level)
        last = builder.object("<< /Type /Pages /Count 1 /Kids [" + PDFBuilder::reference(last) + "] >>");
    const std::string bytes
        = replaced(builder.bytes(), "/Kids [8 0 R ]", "/Kids [" + PDFBuilder::reference(last) + "]");
    const std::string text = textOf(bytes);
    EXPECT_TRUE(text == "kept" || text == "no page" || text == "nil") << text;
}

TEST(HostilePDF, StreamsThatInflateWithoutEndAreCutShort)
{
    PDFBuilder builder;
    const int form
        = builder.stream(deflatedBlanks(300), "/Subtype /Form /BBox [0 0 9 9] /Filter /FlateDecode");
    builder.resources("/XObject << /X " + PDFBuilder::reference(form) + " >>");
    builder.page("BT /F1 12 Tf 72 700 Td (before) Tj ET /X Do /X Do BT (behind) Tj ET");
    const std::string bytes = builder.bytes();
    const long before = peakMemoryInMB();
    takeLeftOut();
    EXPECT_EQ(textOf(bytes), "before\nbehind");
    EXPECT_EQ(takeLeftOut(), std::vector { u"the rest of a page that takes too much time or memory"_s });
    EXPECT_LT(peakMemoryInMB() - before, 900) << "256 MB a page, which growing doubles";
}

TEST(HostilePDF, FontsThatLieGiveTextOrNothing)
{
    const auto text = [](const std::string& font) {
        PDFBuilder builder = withText("BT /L 12 Tf 72 700 Td (abc) Tj /F1 12 Tf 0 -20 Td (kept) Tj ET");
        builder.fonts("/L " + font + " ");
        const std::string result = textOf(builder.bytes());
        return result.substr(result.size() - std::min<std::size_t>(4, result.size()));
    };
    EXPECT_EQ(text("11 0 R"), "kept") << "no such object";
    EXPECT_EQ(text("<< /Subtype /Type0 /DescendantFonts [3 0 R] /Encoding /Identity-H >>"), "kept");
    EXPECT_EQ(text("<< /Subtype /Type3 /FontMatrix [0 0 0 0 0 0] /FontBBox [0 0 1e308 -1e308] /FirstChar 0 "
                   "/Widths [1e308] >>"),
        "kept");
    EXPECT_EQ(
        text("<< /Subtype /Type1 /BaseFont /A /FirstChar -5 /LastChar 999999 /Widths [1 2] >>"), "kept");
    EXPECT_EQ(
        text("<< /Subtype /TrueType /ToUnicode 7 0 R /FontDescriptor << /FontFile2 7 0 R >> >>"), "kept");
    EXPECT_EQ(text("<< /Subtype /Type1 /Encoding << /Differences [300 /a -1 /b /c] >> >>"), "kept");
}

TEST(HostilePDF, FormsAndFontsThatHoldThemselvesEnd)
{
    PDFBuilder builder;
    const int next = builder.object("<< /Font << /F1 4 0 R >> /XObject << /X 8 0 R >> >>");
    builder.stream("/X Do BT /F1 12 Tf 72 600 Td (form) Tj ET /X Do",
        "/Subtype /Form /BBox [0 0 612 792] /Resources " + PDFBuilder::reference(next));
    builder.fonts(
        "/S << /Subtype /Type3 /FontBBox [0 0 1 1] /FontMatrix [1 0 0 1 0 0] /CharProcs << /a 8 0 R >> "
        "/Encoding << /Differences [97 /a] >> /FirstChar 97 /LastChar 97 /Widths [1] /Resources 7 0 R >> ");
    builder.resources("/XObject << /X 8 0 R >>");
    builder.page("/X Do BT /S 12 Tf 72 500 Td (a) Tj ET");
    EXPECT_EQ(textOf(builder.bytes()), "form\na");
    const auto document = PDFDocument::initWithData(builder.data());
    EXPECT_TRUE(document->pageAtIndex(0)->raster({ .pixelsWide = 20, .pixelsHigh = 20 }));
}

TEST(HostilePDF, TheDeadlineEndsWorkInsideAPage)
{
    std::string content = "BT /F1 12 Tf 72 700 Td (begun) Tj ET\n";
    for (int time = 0; time < 200'000; ++time)
        content += "q 1 0 0 1 0 0 cm Q\n";
    const std::string bytes = withText(content).bytes();
    const auto start = Clock::now();
    EXPECT_EQ(textOf(bytes, start), "") << "no time at all";
    EXPECT_EQ(textOf(bytes, start + std::chrono::hours(1)), "begun");
    // One operator that shows four million glyphs.
    const std::string longLine
        = withText("BT /F1 1 Tf 72 700 Td (" + std::string(std::size_t { 4 } << 20, 'x') + ") Tj ET").bytes();
    const auto begin = Clock::now();
    textOf(longLine, begin + std::chrono::milliseconds(100));
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(60));
}

TEST(HostilePDF, LockedIsLockedHoweverItIsLocked)
{
    const std::string bytes = withText().bytes();
    const std::string trailer = "/Root 1 0 R";
    const auto isLocked = [&](const std::string& entry) {
        const auto document = PDFDocument::initWithData(
            Data::copyOf(replaced(bytes, trailer, trailer + " /Encrypt " + entry + " /ID [<00> <00>]")));
        return document && document->isLocked() && document->pageCount() == 0;
    };
    EXPECT_TRUE(isLocked("<< /Filter /Unknown /V 9 >>"));
    EXPECT_TRUE(isLocked("<< /Filter /Standard /V 2 /R 3 /Length 128 /P -1 /O (x) /U (y) >>"));
    EXPECT_TRUE(isLocked("<< >>"));
}

} // namespace
} // namespace caddis
