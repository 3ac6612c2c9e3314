#include "epub/EPUBParser.h"

#include "platform/base/LeftOut.h"
#include "support/EPUBBuilder.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class EPUBParserTest : public testing::Test {
protected:
    EPUBParser bookWith(const std::string& package)
    {
        return EPUBParser(m_folder.write("book.epub", epubWithPackage(package)));
    }
    // One metadata value as text, elements of a list in brackets.
    std::string metaData(const std::string& package, std::u16string_view key)
    {
        const EPUBParser book = bookWith(package);
        const Value* value = book.metaData().find(key);
        if (!value)
            return "nil";
        if (const auto* text = value->as<String>())
            return text->utf8();
        std::string line;
        for (const Value& element : *value->as<Array>())
            line += "[" + element.as<String>()->utf8() + "]";
        return line;
    }

    TemporaryFolder m_folder;
    LogCapture m_log;
};

TEST_F(EPUBParserTest, TellsBooksByTheirNames)
{
    EXPECT_TRUE(EPUBParser::isEPUBFile(u"/a/B.EPub"_s));
    EXPECT_TRUE(EPUBParser::isEPUBFile(u"b.ibooks"_s));
    EXPECT_FALSE(EPUBParser::isEPUBFile(u"/a/epub"_s));
    EXPECT_TRUE(EPUBParser::isEPUBExtension(u"IBooks"_s, u""_s));
    EXPECT_FALSE(EPUBParser::isEPUBExtension(u".epub"_s, u"org.idpf.epub-container"_s));
}

TEST_F(EPUBParserTest, ReadsDublinCore)
{
    EXPECT_EQ(metaData("<dc:title>A</dc:title><dc:title>B</dc:title>", u"kMDItemTitle"), "B");
    EXPECT_EQ(metaData("<dc:description>d</dc:description>", u"kMDItemDescription"), "d");
    EXPECT_EQ(metaData("<dc:rights>r</dc:rights>", u"kMDItemCopyright"), "r");
    EXPECT_EQ(metaData("<dc:subject>a</dc:subject><dc:subject>b</dc:subject>", u"kMDItemKeywords"), "[a][b]");
    EXPECT_EQ(metaData("<dc:publisher>p</dc:publisher>", u"kMDItemPublishers"), "[p]");
    const std::string people = "<dc:creator opf:role='aut'>a</dc:creator><dc:creator>b</dc:creator>"
                               "<dc:contributor opf:role='edt'>c</dc:contributor>"
                               "<dc:contributor opf:role='aut'>d</dc:contributor>";
    EXPECT_EQ(metaData(people, u"kMDItemAuthors"), "[a]");
    EXPECT_EQ(metaData(people, u"kMDItemContributors"), "[b][d]");
    EXPECT_EQ(metaData(people, u"kMDItemEditors"), "[c]");
    EXPECT_EQ(
        bookWith("<dc:language>en</dc:language><DC:title>t</DC:title><title>t</title>").metaData().count(),
        0U);
}

TEST_F(EPUBParserTest, ReadsMetaProperties)
{
    const std::string metas = "<meta property='dcterms:title'>t</meta>"
                              "<meta property='dcterms:creator' id='auth'>a</meta>"
                              "<meta property='dcterms:creator' id='x'>b</meta>"
                              "<meta property='dcterms:contributor'>c</meta>"
                              "<meta property='dcterms:publisher'>p</meta>"
                              "<meta property='dcterms:modified'>m</meta>";
    EXPECT_EQ(metaData(metas, u"kMDItemTitle"), "t");
    EXPECT_EQ(metaData(metas, u"kMDItemAuthors"), "[a]");
    EXPECT_EQ(metaData(metas, u"kMDItemContributors"), "[b][c]");
    EXPECT_EQ(metaData(metas, u"kMDItemPublishers"), "[p]");
}

TEST_F(EPUBParserTest, CollectsTheTextOfAnElement)
{
    EXPECT_EQ(metaData("<dc:title>\n  AT&amp;T,\t  a <![CDATA[b]]> </dc:title> tail", u"kMDItemTitle"),
        "AT&T, a b");
    EXPECT_EQ(metaData("<dc:title>a<b>c</b>d</dc:title>", u"kMDItemTitle"), "a c") << "any end tag ends it";
    EXPECT_EQ(metaData("<dc:title/>x", u"kMDItemTitle"), "");
    EXPECT_EQ(
        metaData("<dc:creator opf:file-as='Melville, Herman'>Herman</dc:creator>", u"kMDItemContributors"),
        "[Melville, Herman]");
    EXPECT_EQ(metaData("<dc:title opf:file-as=''>t</dc:title>", u"kMDItemTitle"), "t");
    EXPECT_EQ(metaData("<dc:title>a<dc:subject>s</dc:subject></dc:title>", u"kMDItemTitle"), "a");
    EXPECT_EQ(metaData("<dc:title>a<dc:title opf:file-as='b'/>c</dc:title>", u"kMDItemTitle"), "b");
    EXPECT_EQ(
        metaData("<dc:subject>a<dc:subject opf:file-as='b'>c</dc:subject></dc:subject>", u"kMDItemKeywords"),
        "[a c][b]");
    EXPECT_EQ(metaData("<dc:title>a<b>c<broken", u"kMDItemTitle"), "a c");
}

TEST_F(EPUBParserTest, EndsAListThatNobodyReads)
{
    std::string subjects;
    for (int count = 0; count < 10'001; ++count)
        subjects += "<dc:subject>s</dc:subject>";
    takeLeftOut(); // What other cases left.
    const EPUBParser book = bookWith(subjects + "<dc:title>t</dc:title>");
    const auto* list = book.metaData().find(u"kMDItemKeywords")->as<Array>();
    EXPECT_EQ(list->size(), 10'000U);
    EXPECT_EQ(*list->back().as<String>(), u"s"_s);
    EXPECT_EQ(book.metaData().stringForKey(u"kMDItemTitle"), u"t"_s);
    EXPECT_EQ(takeLeftOut(), std::vector { u"entries of lists after the first 10,000"_s });
}

TEST_F(EPUBParserTest, ReadsTheManifest)
{
    const std::string xhtml = "media-type='application/xhtml+xml'";
    const EPUBParser book = bookWith("<item id='a' href='a%20b.xhtml' " + xhtml + "/><item href='no-id' "
        + xhtml + "/><item id='TOC' href='t.xhtml' " + xhtml + "/><item id='gone' href='x' " + xhtml
        + "/><item id='gone' " + xhtml + "/><item id='n' href='n.ncx' media-type='application/x-dtbncx+xml'/>"
        + "<item id='s' href='s.css' media-type='text/css'/><item id='i' href='i%zz' "
          "media-type='image/png'/>");
    EXPECT_EQ(book.opfFile(), u"OPS/a.opf"_s);
    EXPECT_EQ(book.items().size(), 2U);
    EXPECT_EQ(book.items().at(u"a"_s), u"a b.xhtml");
    EXPECT_EQ(book.tocFile(), u"OPS/t.xhtml"_s);
    EXPECT_EQ(book.ncxFile(), u"OPS/n.ncx"_s);
    EXPECT_EQ(book.auxiliaryFiles(), std::vector { u"s.css"_s });
    EXPECT_EQ(bookWith("<item id='a' properties='NAV' href='n' " + xhtml + "/>").tocFile(), u"OPS/n"_s);
    EXPECT_EQ(
        bookWith("<item id='a' properties='nav scripted' href='n' " + xhtml + "/>").tocFile(), std::nullopt);
}

TEST_F(EPUBParserTest, FindsTheFirstCover)
{
    const std::string meta = "<meta name='cover' content='C'/>";
    const std::string item = "<item id='c' href='c.png' media-type='image/png'/>";
    const std::string property
        = "<item id='p' properties='cover-image' href='p.png' media-type='image/png'/>";
    EXPECT_EQ(bookWith(meta + item + property).coverPath(), u"c.png"_s);
    EXPECT_EQ(bookWith(item + meta).coverPath(), std::nullopt) << "the item stands before the meta element";
    EXPECT_EQ(bookWith(property + meta + item).coverPath(), u"p.png"_s);
    EXPECT_EQ(bookWith(property).auxiliaryFiles(), std::vector { u"p.png"_s });
    EXPECT_EQ(bookWith("<meta property='dcterms:title' name='cover' content='c'/>" + item).coverPath(),
        std::nullopt);
}

TEST_F(EPUBParserTest, ReadsTheReadingOrder)
{
    const EPUBParser book
        = bookWith("<itemref idref='a'/><itemref idref='b' linear='no'/>"
                   "<itemref idref='c' linear='yes'/><itemref idref='d' linear=' 01'/><itemref/>");
    EXPECT_EQ(book.spines(), (std::vector { u"a"_s, u"c"_s, u"d"_s }));
}

TEST_F(EPUBParserTest, FindsRightsManagement)
{
    const auto schemeIn = [&](const std::string& name, const std::string& rights) {
        EPUBParser book(m_folder.write("b.epub", ZipBuilder().add("x", "x").add(name, rights).bytes()));
        EXPECT_EQ(book.hasDRM(), !book.DRM().isEmpty());
        return book.DRM();
    };
    const std::string adobe = "<rights><operatorURL>http://example.com</operatorURL></rights>";
    EXPECT_EQ(schemeIn("META-INF/rights.xml", adobe), u"Adobe");
    EXPECT_EQ(schemeIn("META-INF/sinf.xml", "<fairplay:sinf/>"), u"Apple");
    EXPECT_EQ(schemeIn("rights.xml", "<kdrm/>"), u"Kobo");
    EXPECT_EQ(schemeIn("META-INF/encryption.xml", adobe), u"");
    EXPECT_EQ(schemeIn("META-INF/rights.xml", "no markup"), u"");
}

TEST_F(EPUBParserTest, IsAValidObjectForWhateverFile)
{
    const std::string container = "META-INF/container.xml";
    const std::string opf = packageDocument("<dc:title>t</dc:title>");
    const std::string books[] = {
        "",
        "no zip",
        ZipBuilder().bytes(),
        ZipBuilder().add("a", "b").bytes(),
        ZipBuilder().add(container, "<container/>").bytes(),
        ZipBuilder().add(container, "<rootfile full-path=''/>").bytes(),
        ZipBuilder().add(container, "<rootfile full-path='none'/>").bytes(),
        ZipBuilder().add(container, "<rootfile full-path='META-INF/container.xml'/>").bytes(),
        ZipBuilder().add(container, "<a><rootfile full-path='o'/>").add("o", opf).bytes(),
        ZipBuilder().add(container, "<rootfile full-path='o'/>").add("o", "<package><item").bytes(),
    };
    for (const std::string& bytes : books) {
        EPUBParser book(m_folder.write("b.epub", bytes));
        EXPECT_EQ(book.metaData().count() + book.items().size() + book.spines().size(), 0U) << bytes;
        EXPECT_FALSE(book.hasDRM());
        EXPECT_FALSE(book.dataForNamedFile(u"none"_s));
    }
    EXPECT_FALSE(EPUBParser(m_folder.path("none.epub")).opfFile());
}

TEST_F(EPUBParserTest, TakesTimeInProportionToTheBook)
{
    std::string package;
    for (int index = 0; index < 200'000; ++index)
        package += "<item id='" + std::to_string(index)
            + "' href='h' media-type='application/xhtml+xml'/>"
              "<dc:subject>s</dc:subject>";
    const EPUBParser book = bookWith(package + "<dc:title>");
    EXPECT_EQ(book.items().size(), 200'000U);
    EXPECT_EQ(book.metaData().find(u"kMDItemKeywords")->as<Array>()->size(), 10'000U);
    std::string nested = "<dc:title>";
    for (int index = 0; index < 200; ++index)
        nested.append(10'000, 'a').append("<b>");
    EXPECT_EQ(metaData(nested, u"kMDItemTitle").size(), 200U * 10'001 - 1);
}

} // namespace
} // namespace caddis
