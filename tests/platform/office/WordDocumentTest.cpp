#include "platform/office/OfficeDocument.h"

#include "support/RichTextTrace.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

constexpr const char* Relation = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";

// A package whose parts are related as Word relates them.
class Docx {
public:
    Docx& part(const std::string& type, const std::string& name, const std::string& contents)
    {
        m_relations
            += "<Relationship Id=\"" + type + "\" Type=\"" + Relation + type + "\" Target=\"" + name + "\"/>";
        m_zip.add("word/" + name, contents);
        return *this;
    }
    Docx& external(const std::string& id, const std::string& address)
    {
        m_relations += "<Relationship Id=\"" + id + "\" Type=\"" + Relation + "hyperlink\" Target=\""
            + address + "\" TargetMode=\"External\"/>";
        return *this;
    }
    Docx& member(const std::string& name, const std::string& contents)
    {
        m_zip.add(name, contents);
        return *this;
    }
    std::optional<AttributedString> read(const std::string& body)
    {
        m_zip.add("word/document.xml", "<w:document><w:body>" + body + "</w:body></w:document>");
        m_zip.add("word/_rels/document.xml.rels", "<Relationships>" + m_relations + "</Relationships>");
        return attributedStringWithOfficePackage(m_folder.write("a.docx", m_zip.bytes()));
    }
    std::string trace(const std::string& body)
    {
        const auto text = read(body);
        return text ? traceOf(*text) : "nil";
    }

private:
    TemporaryFolder m_folder;
    ZipBuilder m_zip;
    std::string m_relations;
};

std::string run(const std::string& text, const std::string& properties = {})
{
    return "<w:r><w:rPr>" + properties + "</w:rPr><w:t xml:space=\"preserve\">" + text + "</w:t></w:r>";
}

std::string paragraph(const std::string& content, const std::string& properties = {})
{
    return "<w:p><w:pPr>" + properties + "</w:pPr>" + content + "</w:p>";
}

constexpr const char* Styles = R"(<w:styles>
<w:docDefaults><w:rPrDefault><w:rPr><w:rFonts w:asciiTheme="minorHAnsi"/><w:sz w:val="22"/></w:rPr></w:rPrDefault></w:docDefaults>
<w:style w:type="paragraph" w:default="1" w:styleId="Normal"/>
<w:style w:type="paragraph" w:styleId="H1"><w:basedOn w:val="Base"/><w:pPr><w:outlineLvl w:val="0"/></w:pPr>
<w:rPr><w:b/><w:sz w:val="32"/></w:rPr></w:style>
<w:style w:type="paragraph" w:styleId="Base"><w:basedOn w:val="H1"/><w:pPr><w:jc w:val="center"/></w:pPr><w:rPr><w:i/></w:rPr></w:style>
<w:style w:type="character" w:styleId="Loud"><w:rPr><w:color w:val="FF0000"/></w:rPr></w:style>
</w:styles>)";

TEST(WordDocument, StylesInherit)
{
    Docx docx;
    docx.part("styles", "styles.xml", Styles)
        .part("theme", "theme/theme1.xml",
            "<a:theme><a:majorFont><a:latin typeface=\"Head\"/></a:majorFont><a:minorFont>"
            "<a:latin typeface=\"Text\"/></a:minorFont></a:theme>");
    EXPECT_EQ(
        docx.trace(paragraph(run("plain ") + run("loud", "<w:rStyle w:val=\"Loud\"/>"))
            + paragraph(run("head") + run(" not bold", "<w:b w:val=\"0\"/>"), "<w:pStyle w:val=\"H1\"/>")),
        "{Text 11}plain {Text 11 #ff0000}loud\n"
        "[h1 center] {Text 16 b i}head{Text 16 i} not bold\n");
}

TEST(WordDocument, RunsCarryWhatTheyShow)
{
    EXPECT_EQ(Docx().trace(paragraph(run("a", "<w:u w:val=\"double\"/><w:strike/>")
                  + run("2", "<w:vertAlign w:val=\"superscript\"/>")
                  + run("y", "<w:highlight w:val=\"yellow\"/>") + run("hidden", "<w:vanish/>")
                  + "<w:r><w:t> b </w:t><w:tab/><w:br/><w:noBreakHyphen/><w:sym w:font=\"Symbol\" "
                    "w:char=\"F061\"/></w:r>"
                    "<w:del><w:r><w:delText>gone</w:delText><w:t>gone</w:t></w:r></w:del>"
                    "<w:ins>"
                  + run("added") + "</w:ins>")),
        "{uu s}a{super}2{on #ffff00}y{}bTAB|\u2011\u03B1added\n");
}

TEST(WordDocument, ListsHaveMarkersThatCount)
{
    const std::string item = "<w:numPr><w:ilvl w:val=\"0\"/><w:numId w:val=\"7\"/></w:numPr>";
    const std::string inner = "<w:numPr><w:ilvl w:val=\"1\"/><w:numId w:val=\"7\"/></w:numPr>";
    const std::string anew = "<w:numPr><w:ilvl w:val=\"0\"/><w:numId w:val=\"8\"/></w:numPr>";
    Docx docx;
    docx.part("numbering", "numbering.xml",
        "<w:numbering><w:abstractNum w:abstractNumId=\"1\">"
        "<w:lvl w:ilvl=\"0\"><w:start w:val=\"1\"/><w:numFmt w:val=\"upperRoman\"/><w:lvlText "
        "w:val=\"%1.\"/></w:lvl>"
        "<w:lvl w:ilvl=\"1\"><w:start w:val=\"3\"/><w:numFmt w:val=\"decimal\"/><w:lvlText "
        "w:val=\"%1.%2\"/></w:lvl>"
        "</w:abstractNum><w:num w:numId=\"7\"><w:abstractNumId w:val=\"1\"/></w:num>"
        "<w:num w:numId=\"8\"><w:abstractNumId w:val=\"1\"/><w:lvlOverride w:ilvl=\"0\"><w:startOverride "
        "w:val=\"5\"/>"
        "</w:lvlOverride></w:num></w:numbering>");
    EXPECT_EQ(docx.trace(paragraph(run("a"), item) + paragraph(run("b"), inner) + paragraph(run("c"), inner)
                  + paragraph(run("d"), item) + paragraph(run("e"), inner) + paragraph(run("f"), anew)),
        "[list {upper-roman}.] {}TABI.TABa\n"
        "[list {upper-roman}. list {decimal}] {}TABI.3TABb\n"
        "[list {upper-roman}. list {decimal}] {}TABI.4TABc\n"
        "[list {upper-roman}.] {}TABII.TABd\n"
        "[list {upper-roman}. list {decimal}] {}TABII.3TABe\n"
        "[list {upper-roman}.] {}TABV.TABf\n");
}

TEST(WordDocument, TablesKeepTheirCells)
{
    const auto cell = [](const std::string& content, const std::string& properties = {}) {
        return "<w:tc><w:tcPr>" + properties + "</w:tcPr>" + content + "</w:tc>";
    };
    const auto row = [](const std::string& cells) { return "<w:tr>" + cells + "</w:tr>"; };
    const std::string inner = "<w:tbl>" + row(cell(paragraph(run("deep")))) + "</w:tbl>";
    const auto text = Docx().read("<w:tbl>"
        + row(
            cell(paragraph(run("a")) + paragraph(run("a2")),
                "<w:tcW w:w=\"2000\" w:type=\"dxa\"/><w:gridSpan w:val=\"2\"/><w:shd w:fill=\"00FF00\"/>"
                "<w:tcBorders><w:bottom w:val=\"single\" w:sz=\"16\"/><w:right w:val=\"nil\"/></w:tcBorders>")
            + cell(paragraph(run("b"))))
        + row(cell(inner + paragraph({})) + cell({})) + "</w:tbl>" + paragraph(run("after")));
    EXPECT_EQ(traceOf(*text),
        "[cell 0,0 x2] {}a\n[cell 0,0 x2] {}a2\n[cell 0,2] {}b\n[cell 1,0 cell 0,0] {}deep\n[cell 1,0] \n"
        "[cell 1,1] \n{}after\n");
    const TableCell& first = text->paragraphStyles()[0].cells.at(0);
    EXPECT_EQ(first.width, 100);
    EXPECT_EQ(first.borderWidth, 2);
    EXPECT_EQ(first.background, TextColor::fromBytes(0, 255, 0));
    EXPECT_EQ(text->tables().at(first.table).columns, 3U);
}

TEST(WordDocument, LinksAndFieldsLead)
{
    Docx docx;
    docx.external("rId9", "http://example.org/");
    const auto mark
        = [](const std::string& type) { return "<w:r><w:fldChar w:fldCharType=\"" + type + "\"/></w:r>"; };
    EXPECT_EQ(
        docx.trace(paragraph("<w:hyperlink r:id=\"rId9\" w:anchor=\"top\">" + run("one") + "</w:hyperlink>"
            + run(" ") + mark("begin") + "<w:r><w:instrText> HYPERLINK \"http://b/\" </w:instrText></w:r>"
            + mark("separate") + run("two") + mark("end") + mark("begin")
            + "<w:r><w:instrText>PAGE</w:instrText></w:r>" + mark("separate") + run("3") + mark("end"))),
        "{link http://example.org/#top}one{} {link http://b/}two{}3\n");
}

TEST(WordDocument, PicturesAreAttachmentsAndNotesComeLast)
{
    Docx docx;
    docx.part("image", "media/photo.png", "PNG")
        .part("footnotes", "footnotes.xml",
            "<w:footnotes><w:footnote w:id=\"0\"><w:p>" + run("separator")
                + "</w:p></w:footnote><w:footnote w:id=\"2\"><w:p><w:r><w:footnoteRef/></w:r>"
                + run(" the note") + "</w:p></w:footnote></w:footnotes>");
    const auto text
        = docx.read(paragraph("<w:r><w:drawing><wp:inline><wp:extent cx=\"508000\" cy=\"254000\"/>"
                              "<a:blip r:embed=\"image\"/></wp:inline></w:drawing></w:r>"
            + run("see") + "<w:r><w:footnoteReference w:id=\"2\"/></w:r>"));
    EXPECT_EQ(traceOf(*text), "{}*photo.png*{}see{super}1\n{super}1{} the note\n");
    EXPECT_EQ(text->attachments().at(0).size, (Size { 40, 20 }));
    EXPECT_EQ(text->attachments().at(0).file.contents.chars(), "PNG");
}

TEST(WordDocument, BoxesAreParagraphsOfTheirOwn)
{
    EXPECT_EQ(Docx().trace(paragraph(run("before") + "<w:r><mc:AlternateContent><mc:Choice><w:txbxContent>"
                  + paragraph(run("box")) + "</w:txbxContent></mc:Choice><mc:Fallback>"
                  + paragraph(run("again")) + "</mc:Fallback></mc:AlternateContent></w:r>" + run("after"))),
        "{}before\n{}box\n{}after\n");
}

TEST(WordDocument, SaysWhatItIs)
{
    Docx docx;
    docx.member("_rels/.rels",
            "<Relationships><Relationship Id=\"a\" Type=\"x/officeDocument\" Target=\"/word/document.xml\"/>"
            "<Relationship Id=\"b\" Type=\"x/core-properties\" "
            "Target=\"docProps/core.xml\"/></Relationships>")
        .member("docProps/core.xml",
            "<p><dc:title>T</dc:title><dc:creator>A</dc:creator><cp:keywords>a, b c</cp:keywords>"
            "<dcterms:created>2001-01-01T00:00:10Z</dcterms:created></p>");
    const auto text
        = docx.read("<w:sectPr><w:pgSz w:w=\"12240\" w:h=\"15840\"/><w:pgMar w:left=\"1440\"/></w:sectPr>");
    EXPECT_EQ(text->documentAttributes,
        (Dictionary { { u"NSTitleDocumentAttribute"_s, u"T"_s }, { u"NSAuthorDocumentAttribute"_s, u"A"_s },
            { u"NSKeywordsDocumentAttribute"_s, Array { u"a"_s, u"b c"_s } },
            { u"NSCreationTimeDocumentAttribute"_s, Date { 10 } }, { u"PaperSize"_s, u"{612, 792}"_s },
            { u"LeftMargin"_s, 72.0 }, { u"DocumentType"_s, u"NSOfficeOpenXML"_s },
            { u"UTI"_s, u"org.openxmlformats.wordprocessingml.document"_s } }));
}

TEST(WordDocument, ReadsTheOneDocumentForm)
{
    const auto text = attributedStringWithOfficeXML(Data::copyOf(
        R"(<?xml version="1.0"?><w:wordDocument><o:DocumentProperties><o:Title>T</o:Title></o:DocumentProperties>
<w:lists><w:listDef w:listDefId="0"><w:lvl w:ilvl="0"><w:nfc w:val="23"/><w:lvlText w:val="·"/></w:lvl></w:listDef>
<w:list w:ilfo="1"><w:ilst w:val="0"/></w:list></w:lists>
<w:styles><w:style w:type="paragraph" w:styleId="N" w:default="on"><w:rPr><w:sz w:val="20"/></w:rPr></w:style></w:styles>
<w:body><w:sect><w:p><w:pPr><w:listPr><w:ilvl w:val="0"/><w:ilfo w:val="1"/></w:listPr></w:pPr><w:r><w:t>item </w:t></w:r>
<w:hlink w:dest="http://a/"><w:r><w:t>link</w:t></w:r></w:hlink><w:r><w:footnote><w:p><w:r><w:footnoteRef/></w:r><w:r>
<w:t> note</w:t></w:r></w:p></w:footnote></w:r></w:p><w:p><w:r><w:pict><w:binData w:name="wordml://1.png">UE5H</w:binData>
<v:shape style="width:30pt;height:20pt"><v:imagedata src="wordml://1.png"/></v:shape></w:pict></w:r></w:p>
<w:sectPr><w:hdr><w:p><w:r><w:t>head</w:t></w:r></w:p></w:hdr></w:sectPr></w:sect></w:body></w:wordDocument>)"));
    ASSERT_TRUE(text);
    EXPECT_EQ(traceOf(*text),
        "[list {disc}] {10}TAB\u2022TABitem {10 link http://a/}link{10 super}1\n{10}*1.png*\n{10 super}1{10} "
        "note\n");
    EXPECT_EQ(text->attachments().at(0).size, (Size { 30, 20 }));
    EXPECT_EQ(text->documentAttributes.stringForKey(u"DocumentType"), u"NSWordML"_s);
    EXPECT_EQ(text->documentAttributes.stringForKey(u"NSTitleDocumentAttribute"), u"T"_s);
}

TEST(WordDocument, WhatIsNoneGivesNothingAndWhatBreaksOffItsBeginning)
{
    const TemporaryFolder folder;
    const auto read = [&](const std::string& bytes) {
        return attributedStringWithOfficePackage(folder.write("file", bytes));
    };
    EXPECT_FALSE(read(ZipBuilder().add("a.txt", "text").bytes()));
    EXPECT_FALSE(read(ZipBuilder().add("word/document.xml", "<w:styles/>").bytes()));
    EXPECT_FALSE(read("PK\3\4"));
    EXPECT_FALSE(attributedStringWithOfficeXML(Data::copyOf("<html>")));
    const auto broken
        = read(ZipBuilder()
                   .add("word/document.xml", "<w:document><w:body><w:p><w:r><w:t>text</w:t></w:r><w:oops")
                   .bytes());
    ASSERT_TRUE(broken);
    EXPECT_EQ(broken->string(), u"text\n");
}

TEST(WordDocument, EndsWhatIsOpenWhereTheMarkupBreaksOff)
{
    const auto text = attributedStringWithOfficeXML(
        Data::copyOf("<w:wordDocument><w:body><w:tbl><w:tr><w:tc><w:p><w:r><w:t>cell</w:t></"
                     "w:r><w:r><w:footnote><w:tbl><w:tr><w:tc>"
                     "<w:p><w:r><w:t>note</w:t>"));
    ASSERT_TRUE(text);
    EXPECT_EQ(traceOf(*text), "[cell 0,0] {}cell{super}1\n[cell 0,0] {}note\n");
    EXPECT_EQ(text->tables().size(), 2U);
}

TEST(WordDocument, WhatIsReplacedWhileItIsOpenIsLeft)
{
    const auto text = attributedStringWithOfficeXML(Data::copyOf(
        "<w:wordDocument><w:lists><w:listDef w:listDefId='1'><w:lvl w:ilvl='0'><w:pPr><w:listDef "
        "w:listDefId='1'/>"
        "<w:ind w:left='720'/><w:jc w:val='center'/></w:pPr><w:start "
        "w:val='3'/></w:lvl></w:listDef></w:lists>"
        "<w:body><w:p><w:pPr><w:p/><w:p/><w:p/><w:jc w:val='center'/><w:ilvl w:val='1'/></w:pPr>"
        "<w:r><w:rPr><w:p/><w:p/><w:b/></w:rPr><w:t>text</w:t></w:r></w:p></w:body></w:wordDocument>"));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->string(), u"\n\n\n\n\ntext\n");
}

TEST(WordDocument, BombsStayBounded)
{
    Docx docx;
    docx.part("image", "media/a.png", std::string(32 << 20, '\0'));
    std::string pictures;
    for (int count = 0; count < 20; ++count)
        pictures += "<w:r><a:blip r:embed=\"image\"/></w:r>";
    EXPECT_EQ(docx.read(paragraph(pictures))->attachments().size(), 4U) << "128 MiB of them";
    std::string deep;
    for (int level = 0; level < 10000; ++level)
        deep += "<w:tbl><w:tr><w:tc>";
    EXPECT_TRUE(Docx().read(paragraph(run("text")) + deep)) << "elements end at some depth";
    const auto cut
        = Docx().read(paragraph(run("text")) + std::string(25 << 20, ' ') + paragraph(run("more")));
    EXPECT_EQ(cut.value().string(), u"text\n") << "markup is read so far";
}

} // namespace
} // namespace caddis
