#include "bundles/BundleHost.h"
#include "support/TemporaryFolder.h"
#include "support/WebArchiveBuilder.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

constexpr const char* Title = "kMDItemTitle";
constexpr const char* Text = "kMDItemTextContent";

std::string bigEndian(std::uint64_t value, int bytes)
{
    std::string result;
    for (int i = bytes; i-- > 0;)
        result += static_cast<char>(value >> (8 * i));
    return result;
}

class BookBundles : public testing::Test {
protected:
    Imported import(
        const std::string& bundle, const char* type, const std::string& name, const std::string& bytes)
    {
        return importWith(bundle, type, m_folder.write(name, bytes).utf8());
    }

    TemporaryFolder m_folder;
};

TEST_F(BookBundles, ReadOutlines)
{
    const auto outline = import("Outline", "org.opml.opml", "a.opml",
        "<opml><head><title>Lamps</title><ownerName>Ada</ownerName></head><body><outline text='Oil'>"
        "<outline text='Wick &amp; glass' _note='long'/></outline></body></opml>");
    EXPECT_EQ(outline[Title], "Lamps");
    EXPECT_EQ(outline["kMDItemAuthors"], "Ada");
    EXPECT_EQ(outline[Text], "Oil\nWick & glass\nlong\n");
    EXPECT_EQ(import("Outline", "net.sourceforge.freemind.mindmap", "a.mm",
                  "<map><node TEXT='Sea'><node><richcontent><html><body><p>a <b>bold</b> one</p></body>"
                  "</html></richcontent></node></node></map>")[Text],
        "Sea\na bold one\n");
    EXPECT_EQ(
        import("Outline", "public.objective-c-plus-plus-source", "b.mm", "int main;")[Text], "int main;");
    EXPECT_EQ(import("Outline", "net.xmind.workbook", "a.xmind",
                  ZipBuilder()
                      .add("content.json",
                          R"([{"title":"Sheet","rootTopic":{"title":"Caf\u00e9 \"x\"","id":"title"}}])")
                      .bytes())[Text],
        "Sheet\nCaf\u00E9 \"x\"\n");
    EXPECT_EQ(import("Outline", "net.xmind.workbook", "b.xmind",
                  ZipBuilder()
                      .add("content.xml",
                          "<xmap-content><sheet><topic><title>Old</title></topic></sheet></xmap-content>")
                      .bytes())[Text],
        "Old\n");
}

TEST_F(BookBundles, ReadFictionBooks)
{
    if (!hasBundle("Ebook"))
        GTEST_SKIP();
    const auto book = import("Ebook", "org.fictionbook.fb2", "a.fb2",
        "<FictionBook><description><title-info><author>\n <first-name>Ada</first-name>\n "
        "<last-name>Lovelace</last-name></author><book-title>The Lamp</book-title><lang>en</lang>"
        "<annotation><p>About oil</p></annotation></title-info><document-info><author><nickname>x"
        "</nickname></author></document-info></description><body><title><p>One</p></title><section>"
        "<p>It was <emphasis>dusk</emphasis>.</p></section></body><binary>QUJD</binary></FictionBook>");
    EXPECT_EQ(book[Title], "The Lamp");
    EXPECT_EQ(book["kMDItemAuthors"], "Ada Lovelace");
    EXPECT_EQ(book["kMDItemLanguages"], "en");
    EXPECT_EQ(book[Text], "One\nIt was dusk.\n");
}

// A Palm database of two records: the head, and the text as it is.
std::string mobiBook(const std::string& title, const std::string& author, const std::string& html)
{
    const std::string exth = "EXTH" + bigEndian(12 + 8 + author.size(), 4) + bigEndian(1, 4)
        + bigEndian(100, 4) + bigEndian(8 + author.size(), 4) + author;
    constexpr std::size_t HeaderSize = 232;
    std::string mobi = "MOBI" + bigEndian(HeaderSize, 4) + bigEndian(2, 4) + bigEndian(65001, 4);
    mobi.resize(HeaderSize, '\0');
    mobi.replace(20, 4, bigEndian(6, 4)); // version
    mobi.replace(0x54 - 16, 8, bigEndian(16 + HeaderSize + exth.size(), 4) + bigEndian(title.size(), 4));
    mobi.replace(0x80 - 16, 4, bigEndian(0x40, 4)); // EXTH follows
    const std::string head = bigEndian(1, 2) + bigEndian(0, 2) + bigEndian(html.size(), 4) + bigEndian(1, 2)
        + bigEndian(4096, 2) + bigEndian(0, 4) + mobi + exth + title + std::string(8, '\0');
    const std::size_t first = 78 + 2 * 8 + 2;
    std::string file = "lamp";
    file.resize(60, '\0');
    file += "BOOKMOBI" + bigEndian(0, 8) + bigEndian(2, 2) + bigEndian(first, 4) + bigEndian(0, 4)
        + bigEndian(first + head.size(), 4) + bigEndian(2, 4) + bigEndian(0, 2);
    return file + head + html;
}

TEST_F(BookBundles, ReadMobiBooks)
{
    if (!hasBundle("Ebook"))
        GTEST_SKIP();
    const auto book = import("Ebook", "com.mobipocket.mobi", "a.mobi",
        mobiBook("The Lamp", "Ada", "<html><body><p>It was dusk.</p></body></html>"));
    EXPECT_TRUE(book.result);
    EXPECT_EQ(book[Title], "The Lamp");
    EXPECT_EQ(book["kMDItemAuthors"], "Ada");
    EXPECT_EQ(book["kMDItemSecurityMethod"], "None");
    EXPECT_EQ(book[Text], "It was dusk.\n\n");
}

TEST_F(BookBundles, ReadTheCommentsOfPostScript)
{
    const auto page = import("PostScript", "com.adobe.encapsulated-postscript", "a.eps",
        "%!PS-Adobe-3.0 EPSF-3.0\r\n%%Title: (Oil \\(and\\) wi\\143k)\n%%Creator: Caddis\n%%For: Ada\n"
        "%%BoundingBox: (atend)\n%%Pages: (atend)\n%%CreationDate: 2026-03-01T09:30:00Z\n%%EndComments\n"
        "%%Title: no more\n%%Trailer\n%%Pages: 3\n%%BoundingBox: 10 20 110 70\n%%EOF\n");
    EXPECT_EQ(page[Title], "Oil (and) wick");
    EXPECT_EQ(page["kMDItemAuthors"], "Ada");
    EXPECT_EQ(page["kMDItemNumberOfPages"], "3");
    EXPECT_EQ(page["kMDItemPageWidth"] + "x" + page["kMDItemPageHeight"], "100x50");
    EXPECT_EQ(page["kMDItemContentCreationDate"], "1772357400");
    const std::string inside = "%!PS\n%%Title: Inside\n";
    const auto wrapped = import("PostScript", "com.adobe.encapsulated-postscript", "b.eps",
        std::string("\xC5\xD0\xD3\xC6\x1E\0\0\0", 8) + static_cast<char>(inside.size())
            + std::string(21, '\0') + inside + "TIFF");
    EXPECT_EQ(wrapped[Title], "Inside");
    EXPECT_FALSE(import("PostScript", "com.adobe.postscript", "c.ps", "%%Title: none").result);
}

TEST_F(BookBundles, ReadRichTextAndWebArchives)
{
    const auto text = import("RichText", "public.rtf", "a.rtf",
        R"({\rtf1\ansi{\info{\title The Lamp}{\author Ada}{\keywords sea, light}}Oil\par wick})");
    EXPECT_EQ(text[Title], "The Lamp");
    EXPECT_EQ(text["kMDItemAuthors"], "Ada");
    EXPECT_EQ(text["kMDItemKeywords"], "sea | light");
    EXPECT_EQ(text[Text], "Oil\nwick");
    m_folder.write("b.rtfd/TXT.rtf", R"({\rtf1 In a {{\NeXTGraphic x.png}\'ac} folder})");
    EXPECT_EQ(importWith("RichText", "com.apple.rtfd", m_folder.path("b.rtfd").utf8())[Text], "In a  folder");
    const auto archive = WebArchiveBuilder("http://e.org/", "<title>Page</title><p>Oil").data();
    const auto page = import("Web", "com.apple.webarchive", "a.webarchive", std::string(archive.chars()));
    EXPECT_EQ(page[Title], "Page");
    EXPECT_EQ(page["kMDItemIdentifier"], "http://e.org/");
    EXPECT_NE(page[Text].find("Oil"), std::string::npos);
}

// One page of 100 by 50 dots at 100 dpi with hidden text, (page x y x y "text"), in its uncompressed form.
std::string djvuPage(const std::string& text)
{
    const std::string info = bigEndian(100, 2) + bigEndian(50, 2) + std::string("\x1A\0\x64\0\x16\1", 6);
    constexpr unsigned Middle = 0x8000; // numbers below it are negative
    std::string hidden = bigEndian(text.size(), 3) + text + '\1'; // version
    hidden += '\1'; // a zone that is a page: place, size, text, no zones inside
    for (const unsigned number : { 0U, 0U, 100U, 50U, 0U })
        hidden += bigEndian(Middle + number, 2);
    hidden += bigEndian(text.size(), 3) + bigEndian(0, 3);
    if (hidden.size() % 2 != 0)
        hidden += '\0';
    const std::string chunks
        = "DJVUINFO" + bigEndian(info.size(), 4) + info + "TXTa" + bigEndian(hidden.size(), 4) + hidden;
    return "AT&TFORM" + bigEndian(chunks.size(), 4) + chunks;
}

TEST_F(BookBundles, ReadDjVuAndHelpFiles)
{
    if (hasBundle("DjVu")) {
        const auto page = import("DjVu", "com.lizardtech.djvu", "a.djvu", djvuPage("Oil and wick"));
        EXPECT_TRUE(page.result);
        EXPECT_EQ(page["kMDItemNumberOfPages"], "1");
        EXPECT_EQ(page["kMDItemPageWidth"] + "x" + page["kMDItemPageHeight"], "72x36");
        EXPECT_EQ(page[Text], "Oil and wick\n");
        EXPECT_FALSE(import("DjVu", "com.lizardtech.djvu", "b.djvu", "AT&TFORM").result);
    }
    if (hasBundle("Help")) {
        const auto help = importWith("Help", "com.microsoft.chm-archive", CADDIS_TEST_DATA "/lamps.chm");
        EXPECT_EQ(help[Title], "The Lamp");
        EXPECT_EQ(help[Text], "Lamps\n\nOil and wick\n\nThe sea at dusk\n\n");
    }
}

TEST_F(BookBundles, ReadFontsAndOldDocuments)
{
    if (hasBundle("Font")) {
        const auto font = importWith("Font", "com.adobe.postscript-pfb-font",
            "/usr/share/fonts/type1/urw-base35/NimbusRoman-Regular.t1");
        EXPECT_EQ(font[Title], "Nimbus Roman Regular");
        EXPECT_EQ(font["kMDItemFonts"], "Nimbus Roman Regular");
    }
    if (hasBundle("Legacy")) {
        const auto old = import("Legacy", "org.abisource.abiword", "a.abw",
            "<?xml version='1.0'?><abiword xmlns='http://www.abisource.com/awml.dtd' fileformat='1.1'>"
            "<metadata><m key='dc.title'>The Lamp</m></metadata><section><p>Oil</p><p>Wick</p></section>"
            "</abiword>");
        EXPECT_EQ(old[Title], "The Lamp");
        EXPECT_EQ(old[Text], "Oil\nWick\n");
        EXPECT_FALSE(import("Legacy", "com.microsoft.visio", "a.vsd", "none of these").result);
    }
}

} // namespace
} // namespace caddis
