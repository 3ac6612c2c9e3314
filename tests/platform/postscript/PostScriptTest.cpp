#include "platform/postscript/PostScript.h"

#include "platform/files/FileSystem.h"
#include "platform/files/TemporaryFile.h"
#include "support/TemporaryFolder.h"

#include <chrono>

namespace caddis {
namespace {

std::optional<Data> converted(const std::string& program)
{
    return PDFWithPostScript(Data::copyOf("%!PS-Adobe-3.0 EPSF-3.0\n" + program));
}

TEST(PostScript, AnEncapsulatedDocumentIsCutToItsBoundingBox)
{
    const auto pdf = converted("%%BoundingBox: 0 0 120 80\n10 10 50 50 rectfill showpage\n");
    ASSERT_TRUE(pdf);
    EXPECT_TRUE(pdf->chars().starts_with("%PDF-"));
    EXPECT_NE(pdf->chars().find("/MediaBox [0 0 120 80]"), std::string_view::npos);
}

TEST(PostScript, WhatIsNoneOrFailsGivesNothing)
{
    EXPECT_FALSE(PDFWithPostScript(Data::copyOf("plain text")));
    EXPECT_FALSE(PDFWithPostScript(Data()));
    EXPECT_FALSE(converted("no such operator\n"));
    EXPECT_TRUE(isPostScript(Data::copyOf(std::string("\xC5\xD0\xD3\xC6\x1E", 5))));
}

TEST(PostScript, AProgramThatNeverEndsIsEnded)
{
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(converted("{ } loop\n"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(12));
}

TEST(PostScript, AProgramNeitherReadsNorWritesFiles)
{
    const TemporaryFolder folder;
    const std::string written = folder.path("written").utf8();
    const String secret = folder.write("secret", "(secret)");
    EXPECT_FALSE(converted("(" + written + ") (w) file closefile showpage\n"));
    EXPECT_FALSE(FileSystem::exists(folder.path("written")));
    EXPECT_FALSE(converted("(" + secret.utf8() + ") (r) file closefile showpage\n"));
}

// The interpreter's safe mode allows temporary files.
TEST(PostScript, TemporaryFilesAreBoundedAndGoWithTheirProgram)
{
    const std::string page = "0 0 9 9 rectfill showpage\n";
    const std::string open = "null (w) .tempfile ";
    EXPECT_TRUE(
        converted("%%BoundingBox: 0 0 9 9\n" + open + "dup (text) writestring closefile pop\n" + page));
    EXPECT_FALSE(converted(open + "exch pop { dup 65535 string writestring } loop\n" + page))
        << "a full disk";
    const auto left = FileSystem::contentsOfDirectory(*temporaryDirectory());
    EXPECT_EQ(left, std::vector<String>());
}

TEST(PostScript, AProgramThatFillsMemoryIsRefused)
{
    EXPECT_FALSE(converted("[ { 65535 array } loop ]\nshowpage\n"));
    EXPECT_FALSE(converted("/f { f f } def f\nshowpage\n"));
}

} // namespace
} // namespace caddis
