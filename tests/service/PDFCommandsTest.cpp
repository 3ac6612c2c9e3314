// The tool's commands about PDF documents, run as people run them.

#include "media/PDFText.h"
#include "platform/files/MappedFile.h"
#include "support/PDFBuilder.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Run.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class PDFCommands : public testing::Test {
protected:
    PDFCommands()
    {
        PDFBuilder builder;
        builder.info("/Title (Two pages)");
        builder.page("BT /F1 12 Tf 72 400 Td (first) Tj ET", "/MediaBox [0 0 400 500]");
        builder.page("BT /F1 12 Tf 72 400 Td (second) Tj ET", "/MediaBox [0 0 400 800] /Rotate 90");
        m_document = m_folder.write("two.pdf", builder.bytes()).utf8();
    }

    Outcome caddis(const std::string& arguments) const { return run(CADDIS_TOOL " " + arguments); }
    std::string path(const std::string& name) const { return m_folder.path(name).utf8(); }

    // "80x100": what the head of a PNG file says.
    std::string sizeOf(const std::string& name) const
    {
        const auto file = MappedFile::open(m_folder.path(name));
        if (!file || file->size() < 24 || !file->chars().starts_with("\x89PNG\r\n"))
            return "no picture";
        const auto side
            = [&](std::size_t at) { return std::to_string(file->bytes()[at] * 256 + file->bytes()[at + 1]); };
        return side(18) + "x" + side(22);
    }

    const PrivateRuntimeDirectory m_directory;
    const TemporaryFolder m_folder;
    std::string m_document;
};

TEST_F(PDFCommands, PageMakesAPictureOfOnePage)
{
    EXPECT_EQ(caddis("page " + m_document + " 1 --size 100 -o " + path("1.png")).status, 0);
    EXPECT_EQ(sizeOf("1.png"), "80x100");
    EXPECT_EQ(caddis("page " + m_document + " 2 --size 100 -o " + path("2.png")).status, 0);
    EXPECT_EQ(sizeOf("2.png"), "100x50") << "as it is shown";
    const Outcome beyond = caddis("page " + m_document + " 3 -o " + path("3.png"));
    EXPECT_EQ(beyond.status, 1);
    EXPECT_NE(beyond.output.find("no page 3 among its 2"), std::string::npos) << beyond.output;
    EXPECT_EQ(caddis("page " + m_document + " 0").status, 2);
    EXPECT_EQ(caddis("page " + m_document + " one").status, 2);
}

TEST_F(PDFCommands, TextComesFromTheHelper)
{
    const Outcome text = caddis("text " + m_document);
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.output.find("first\nsecond"), std::string::npos) << text.output;
    m_folder.write("none.pdf", "no PDF at all");
    EXPECT_EQ(caddis("page " + path("none.pdf") + " 1").status, 1);
}

TEST_F(PDFCommands, PdfFixWritesTheDocumentAnew)
{
    PDFBuilder builder;
    builder.info("/Title (Kept)");
    builder.page("BT /F1 12 Tf 72 400 Td (text) Tj ET",
        "/Annots [<< /Subtype /Link /Rect [0 0 9 9] /AP << /N 7 0 R >> >>]");
    const std::string odd = m_folder.write("odd.pdf", builder.bytes()).utf8();
    EXPECT_EQ(caddis("pdf-fix " + odd + " " + path("clean.pdf")).status, 0);
    const auto data = MappedFile::open(m_folder.path("clean.pdf"));
    ASSERT_TRUE(data);
    EXPECT_FALSE(*data == builder.data());
    const auto clean = PDFDocument::initWithData(*data);
    EXPECT_EQ(fixedAndNormalizedString(*clean), u"text\n"_s);
    EXPECT_EQ(clean->documentAttributes().stringForKey(u"Title"), u"Kept"_s);
    EXPECT_EQ(
        clean->pageAtIndex(0)->annotations().at(0).keys, (std::vector<String> { u"/Rect"_s, u"/Subtype"_s }));
    EXPECT_EQ(caddis("pdf-fix " + path("missing.pdf") + " " + path("out.pdf")).status, 1);
    EXPECT_EQ(caddis("pdf-fix " + odd).status, 2);
}

} // namespace
} // namespace caddis
