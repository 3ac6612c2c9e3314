#include "epub/EPUBParser.h"

#include "support/EPUBBuilder.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <utility>

namespace caddis {
namespace {

// A GIF of two pixels.
const std::string Picture("GIF89a\2\0\1\0\x80\0\0\xFF\0\0\0\0\xFF,\0\0\0\0\2\0\1\0\0\2\2D\n\0;", 35);

// A book under construction: documents in reading order, other members, an NCX.
struct Book {
    std::vector<std::pair<std::string, std::string>> documents;
    std::vector<std::pair<std::string, std::string>> others {};
    std::string navPoints {};
    std::string manifest {}; ///< further items

    std::string bytes() const
    {
        std::string items = manifest;
        std::string spine;
        ZipBuilder zip;
        zip.add({ "mimetype", "application/epub+zip", true })
            .add("META-INF/container.xml", containerDocument);
        for (const auto& [name, html] : documents) {
            items.append("<item media-type='application/xhtml+xml' id='").append(name);
            items.append("' href='").append(name).append("'/>");
            spine.append("<itemref idref='").append(name).append("'/>");
            zip.add("OPS/" + name, html);
        }
        for (const auto& [name, content] : others)
            zip.add(name, content);
        if (!navPoints.empty()) {
            items += "<item id='ncx' href='toc.ncx' media-type='application/x-dtbncx+xml'/>";
            zip.add("OPS/toc.ncx", "<ncx><navMap>" + navPoints + "</navMap></ncx>");
        }
        return zip
            .add("OPS/a.opf",
                packageDocument(
                    "<manifest>" + items + "</manifest><spine>" + spine + "<itemref idref='none'/></spine>"))
            .bytes();
    }
};

std::string navPoint(const std::string& target, const std::string& label, const std::string& inner = {})
{
    return "<navPoint><navLabel><text>" + label + "</text></navLabel><content src='" + target + "'/>" + inner
        + "</navPoint>";
}

// A tree on one line: label(children).
std::string line(const Array& entries)
{
    std::string text;
    for (const Value& value : entries) {
        const auto& entry = *value.as<Dictionary>();
        text += (text.empty() ? "" : " ") + entry.stringForKey(u"label")->utf8();
        if (const Value* children = entry.find(u"children"))
            text += '(' + line(*children->as<Array>()) + ')';
    }
    return text;
}

class EPUBContentsTest : public testing::Test {
protected:
    String write(const Book& book) const { return m_folder.write("book.epub", book.bytes()); }
    std::string tree(const Book& book) const
    {
        EPUBParser parser(write(book));
        return parser.rootChildren() ? line(*parser.rootChildren()) : "nil";
    }

    TemporaryFolder m_folder;
    LogCapture m_log;
};

TEST_F(EPUBContentsTest, JoinsTheTextOfTheSpine)
{
    EPUBParser book(write({ { { "a.xhtml", "<html><head><title>T</title></head><body>One</body></html>" },
        { "b.xhtml", "<html><body>T&auml;o</body></html>" } } }));
    ASSERT_TRUE(book.textContents());
    EXPECT_EQ(*book.textContents(), u"One\nT\u00E4o\n");
    EPUBParser empty(m_folder.write("none.epub", "no zip"));
    EXPECT_EQ(*empty.textContents(), u"");
}

TEST_F(EPUBContentsTest, ReadsTheBeginningOfADocumentThatIsABomb)
{
    const std::string bomb = "<body>first " + std::string(std::size_t(33) << 20, ' ') + "never";
    EPUBParser book(write({ { { "a.xhtml", bomb }, { "b.xhtml", "<body>second</body>" } } }));
    EXPECT_EQ(*book.textContents(), u"first\nsecond\n");
}

TEST_F(EPUBContentsTest, GivesNothingOfAProtectedBookButItsCover)
{
    EPUBParser book(write({ { { "a.xhtml", "<body>x</body>" } },
        { { "META-INF/rights.xml", "<r><operatorURL>x</operatorURL></r>" }, { "OPS/c.gif", Picture } },
        navPoint("a.xhtml", "A"),
        "<item id='c' href='c.gif' media-type='image/gif' properties='cover-image'/>" }));
    EXPECT_TRUE(book.hasDRM());
    EXPECT_FALSE(book.textContents());
    EXPECT_FALSE(book.htmlContents());
    EXPECT_FALSE(book.richTextContents());
    EXPECT_FALSE(book.firstPage());
    ASSERT_TRUE(book.cover());
    EXPECT_EQ(book.cover()->size(), (Size { 2, 1 }));
}

TEST_F(EPUBContentsTest, HasNoCoverWithoutAPicture)
{
    const std::string item = "<item id='c' href='c.gif' media-type='image/gif' properties='cover-image'/>";
    const auto coverOf = [&](const Book& book) { return EPUBParser::coverForFile(write(book)); };
    EXPECT_TRUE(coverOf({ { { "a.xhtml", "" } }, { { "OPS/c.gif", Picture } }, "", item }));
    EXPECT_FALSE(coverOf({ { { "a.xhtml", "" } }, { { "OPS/c.gif", "text" } }, "", item }));
    EXPECT_FALSE(coverOf({ { { "a.xhtml", "" } }, {}, "", item }));
    EXPECT_FALSE(coverOf({ { { "a.xhtml", "" } }, { { "OPS/c.gif", Picture } } }));
    EXPECT_FALSE(EPUBParser::coverForFile(std::nullopt));
}

TEST_F(EPUBContentsTest, TakesAnNCXAsItStandsWhenItIsDeepOrLongEnough)
{
    const Book book { { { "a.xhtml", "" }, { "b.xhtml", "" }, { "c.xhtml", "" } } };
    Book nested = book;
    nested.navPoints = navPoint("a.xhtml", "A", navPoint("a.xhtml#x", "X"));
    EXPECT_EQ(tree(nested), "A(X)");
    Book complete = book;
    complete.navPoints = navPoint("c.xhtml", "C") + navPoint("b.xhtml", "B") + navPoint("a.xhtml", "A")
        + navPoint("a.xhtml", "E");
    EXPECT_EQ(tree(complete), "C B A E");
    EXPECT_EQ(tree({ {}, {}, navPoint("a.xhtml", "A") }), "A");
}

TEST_F(EPUBContentsTest, FillsAFlatShortNCXFromTheSpine)
{
    Book book { { { "cover.xhtml", "<body> </body>" }, { "1.xhtml", "" },
        { "2.xhtml", "<body><h1>Two </h1>x</body>" }, { "3.xhtml", "" }, { "4.xhtml", "" },
        { "5.xhtml", "" } } };
    book.navPoints = navPoint("1.xhtml", "One") + navPoint("3.xhtml", "Three") + navPoint("5.xhtml", "Five");
    book.others
        = { { "OPS/nav.xhtml", "<a href='2.xhtml'><b>Second</b>\n &amp; more</a><a href='4.xhtml'> </a>" } };
    EXPECT_EQ(tree(book), "cover One(Two) Three(4) Five()");
    book.manifest = "<item id='toc' href='nav.xhtml' media-type='application/xhtml+xml'/>";
    EXPECT_EQ(tree(book), "cover One(Second & more) Three(4) Five()");
    book.navPoints.clear();
    EXPECT_EQ(tree(book), "cover 1 Second & more 3 4 5");
}

TEST_F(EPUBContentsTest, FindsTheFirstPageInTheUnpackedCopy)
{
    EPUBParser book(write({ { { "a.xhtml", "x" } }, {}, navPoint("a.xhtml", "A") }));
    ASSERT_TRUE(book.firstPage());
    EXPECT_EQ(*book.firstPage(), String(std::u16string(*book.unzippedEPUB()) + u"/OPS/a.xhtml"));
    EXPECT_TRUE(std::filesystem::exists(book.firstPage()->utf8()));
    EPUBParser without(write({ { { "a.xhtml", "x" } } }));
    EXPECT_FALSE(without.firstPage());
    EXPECT_TRUE(without.rootChildren());
}

TEST_F(EPUBContentsTest, EmbedsABookInOneDocument)
{
    EPUBParser book(write(
        { { { "1.xhtml",
                "<?xml version='1.0'?><html><head><link rel='StyleSheet' href='s.css'/>"
                "<link rel='next' href='2.xhtml'/></head><body class='c'><p>"
                "<img alt='i.png' src='i.png'/><img src='none.png'/><img src='data:x,y'/>"
                "<a id='l' href='sub/../2.xhtml#f'>two</a><a href='http://example.org/'>out</a></p>"
                "</body></html>" },
              { "2.xhtml", "<html><head><title>gone</title></head><body><p>Second</p></body></html>" } },
            { { "OPS/s.css", "\xEF\xBB\xBFp { margin: 0 }" }, { "OPS/i.png", "abc" } } }));
    EXPECT_EQ(book.htmlContents()->utf8(),
        "<html>\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=UTF-8\"/>\n"
        "<head><style><!--\np { margin: 0 }\n--></style>\n<link rel='next' href='2.xhtml'/></head>"
        "<body class='c'><a name=\"1.xhtml\"/>\n<p>"
        "<img alt='data:image/png;base64,YWJj' src='data:image/png;base64,YWJj'/><img src='data:x,y'/>"
        "<a href=\"#2.xhtml\">\ntwo</a><a href='http://example.org/'>out</a></p></body>"
        "<body>\n<p>Second</p>\n</body></html>");
}

TEST_F(EPUBContentsTest, IsRichTextWithItsStylesAndPictures)
{
    EPUBParser book(write({ { { "1.xhtml",
                                  "<html><head><link rel='stylesheet' href='s.css'/></head><body><h1>One</h1>"
                                  "<p>a <b>bold</b> word <img src='i.gif'/></p></body></html>" },
                                { "2.xhtml", "<html><body><p class='x'>Zwei \xC3\xA4</p></body></html>" } },
        { { "OPS/s.css", ".x { font-style: italic }" }, { "OPS/i.gif", Picture } } }));
    const auto text = book.richTextContents();
    ASSERT_TRUE(text);
    const std::u16string_view read = text->string();
    EXPECT_LT(read.find(u"One"), read.find(u"a bold word \uFFFC"));
    EXPECT_LT(read.find(u"bold"), read.find(u"Zwei \u00E4"));
    ASSERT_EQ(text->attachments().size(), 1U);
    EXPECT_EQ(text->attachments()[0].file.contents.chars(), Picture);
    const auto any
        = [&](auto test) { return std::any_of(text->styles().begin(), text->styles().end(), test); };
    EXPECT_TRUE(any([](const CharacterStyle& style) { return style.font.bold; }));
    EXPECT_TRUE(any([](const CharacterStyle& style) { return style.font.italic; }));
    EXPECT_TRUE(text->documentAttributes.isEmpty());
}

// What lies beside the book is none of its business, however its documents name it.
TEST_F(EPUBContentsTest, ReadsNothingOutsideTheBook)
{
    const std::string secret = m_folder.write("secret.png", "secret").utf8();
    EPUBParser book(write({ { { "1.xhtml",
        "<html><body><img src='file://" + secret + "'/><img src='../../../../../../../../../../.." + secret
            + "'/><link rel='stylesheet' href='file://" + secret + "'/></body></html>" } } }));
    EXPECT_EQ(book.htmlContents()->view().find(u"secret"), std::u16string_view::npos)
        << book.htmlContents()->utf8();
    EXPECT_EQ(book.htmlContents()->view().find(u"c2VjcmV0"), std::u16string_view::npos);
}

TEST_F(EPUBContentsTest, ReadsOnlySoMuchHoweverOftenTheSpineNamesIt)
{
    std::string spine;
    for (int reference = 0; reference < 40'000; ++reference)
        spine += "<itemref idref='a'/>";
    EPUBParser book(m_folder.write("many.epub",
        ZipBuilder()
            .add("META-INF/container.xml", containerDocument)
            .add("OPS/a.opf",
                packageDocument("<item id='a' href='a.html' media-type='application/xhtml+xml'/>" + spine))
            .add("OPS/a.html", "<body>x</body>")
            .bytes()));
    EXPECT_EQ(book.textContents()->length(), 2U * 32'768);
    EXPECT_EQ(book.rootChildren()->size(), 40'000U);
    EXPECT_EQ(book.rootChildren()->back().as<Dictionary>()->stringForKey(u"label"), u"a"_s)
        << "its file's name";
}

} // namespace
} // namespace caddis
