// The page, read as a browser reads it, by one where there is one.

#include "batch/JSONLine.h"
#include "batch/PlainTIFF.h"
#include "platform/image/ImageFiles.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Run.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace caddis::tool {
namespace {

std::size_t countOf(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t place = 0; (place = text.find(part, place)) != text.npos; place += part.size())
        ++count;
    return count;
}

class Report : public testing::Test {
protected:
    std::string report()
    {
        const Outcome outcome = run(CADDIS_TOOL " report --quiet " + files.path().string() + " -o " + page);
        EXPECT_EQ(outcome.status, 0) << outcome.output;
        return run("cat " + page).output;
    }

    PrivateRuntimeDirectory directory;
    TemporaryFolder files;
    TemporaryFolder out;
    std::string page = (out.path() / "report.html").string();
};

TEST_F(Report, HoldsEveryFileAndAsksNobodyForAnything)
{
    std::filesystem::copy_file(CADDIS_TEST_DATA "/lighthouse.epub", files.path() / "book.epub");
    files.write("unknown.xyz", "?");
    files.write("</script><script>alert(1)<!--.xyz", "?");
    const std::string html = report();
    EXPECT_NE(html.find("The Lighthouse & the Käse"), std::string::npos);
    EXPECT_NE(html.find("The lamp was lit at dusk."), std::string::npos);
    EXPECT_NE(html.find("\"outcome\": \"unsupported\""), std::string::npos);
    EXPECT_NE(html.find("\\u003c/script>\\u003cscript>alert(1)"), std::string::npos);
    EXPECT_EQ(html.find("<script>alert"), std::string::npos);
    EXPECT_EQ(countOf(html, "</script>"), 2U);
    for (const char* reference : { "http:", "https:", "//cdn", "<link", "@import", "src=\"", "url(" })
        EXPECT_EQ(html.find(reference), std::string::npos) << reference;
    EXPECT_EQ(run(CADDIS_TOOL " report /nowhere").status, 2);
}

TEST_F(Report, ShowsInABrowserWhatIsInView)
{
    if (run("command -v chromium").status != 0)
        GTEST_SKIP() << "no browser is installed";
    for (int index = 0; index < 1500; ++index)
        files.write("file" + std::to_string(index) + ".xyz", "?");
    report();
    const auto shown = [&](const std::string& search) {
        return run(
            "timeout 60 chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
            "--disable-background-networking --disable-component-update --disable-sync --user-data-dir="
            + (out.path() / "browser").string()
            + " --virtual-time-budget=3000 --window-size=1200,800 --dump-dom " + "'file://" + page + "#"
            + search + "' 2>/dev/null")
            .output;
    };
    const std::string all = shown("");
    EXPECT_NE(all.find(">1,500 files</span>"), std::string::npos);
    EXPECT_GE(countOf(all, "class=\"card\""), 12U);
    EXPECT_LE(countOf(all, "class=\"card\""), 60U) << "only what is near the view";
    const std::string one = shown("file1234");
    EXPECT_NE(one.find(">1 file</span>"), std::string::npos);
    EXPECT_EQ(countOf(one, "class=\"card\""), 1U);
}

TEST(PlainTIFF, ReadsWhatTheHelperWrites)
{
    for (const bool hasAlpha : { false, true }) {
        std::vector<std::uint8_t> pixels(3 * 200 * 4, hasAlpha ? 128 : 255);
        for (std::size_t index = 0; index < pixels.size(); index += 4)
            pixels[index] = static_cast<std::uint8_t>(index / 4 % 128);
        const Bitmap bitmap { 3, 200, hasAlpha, Data::adopt(pixels) };
        const auto tiff = TIFFRepresentation(bitmap);
        ASSERT_TRUE(tiff);
        const auto read = bitmapOfPlainTIFF(*tiff);
        ASSERT_TRUE(read);
        EXPECT_EQ(read->pixelsWide, 3U);
        EXPECT_EQ(read->pixelsHigh, 200U);
        EXPECT_EQ(read->pixels, bitmap.pixels);
        const std::string bytes(tiff->chars());
        for (std::size_t length = 0; length < bytes.size(); length += 7)
            bitmapOfPlainTIFF(Data::copyOf(bytes.substr(0, length))); // Whatever comes, within the file.
        for (std::size_t place = 0; place < 250; ++place) {
            std::string damaged = bytes;
            damaged[bytes.size() - 1 - place] ^= '\x55';
            bitmapOfPlainTIFF(Data::copyOf(damaged));
        }
    }
    EXPECT_FALSE(bitmapOfPlainTIFF(Data()));
    EXPECT_FALSE(bitmapOfPlainTIFF(*TIFFRepresentation(
        Bitmap { 1, 1, false, Data::copyOf("abc\xFF") }, { 1, 1 }, TIFFCompression::LZW)));
}

} // namespace
} // namespace caddis::tool
