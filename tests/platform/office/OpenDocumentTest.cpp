#include "platform/office/OfficeDocument.h"

#include "support/RichTextTrace.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::optional<AttributedString> flat(const std::string& styles, const std::string& text)
{
    return attributedStringWithOfficeXML(
        Data::copyOf("<?xml version=\"1.0\"?><office:document><office:styles>" + styles
            + "</office:styles><office:body><office:text>" + text + "</office:text></office:body>"
            + "</office:document>"));
}

std::string trace(const std::string& styles, const std::string& text)
{
    const auto read = flat(styles, text);
    return read ? traceOf(*read) : "nil";
}

TEST(OpenDocument, StylesInherit)
{
    EXPECT_EQ(
        trace(
            "<style:font-face style:name=\"F1\" svg:font-family=\"'Some Font', serif\"/>"
            "<style:default-style style:family=\"paragraph\"><style:text-properties fo:font-size=\"10pt\"/>"
            "</style:default-style>"
            "<style:style style:name=\"H\" style:family=\"paragraph\" style:parent-style-name=\"B\">"
            "<style:text-properties fo:font-size=\"150%\" fo:font-weight=\"bold\"/></style:style>"
            "<style:style style:name=\"B\" style:family=\"paragraph\"><style:paragraph-properties "
            "fo:text-align=\"center\"/><style:text-properties style:font-name=\"F1\"/></style:style>"
            "<style:style style:name=\"H\" style:family=\"text\"><style:text-properties fo:color=\"#0000ff\" "
            "style:text-position=\"sub 58%\" fo:font-style=\"italic\" style:text-underline-style=\"solid\"/>"
            "</style:style>",
            "<text:h text:style-name=\"H\" text:outline-level=\"2\">Head <text:span text:style-name=\"H\">"
            "span</text:span></text:h><text:p>plain</text:p>"),
        "[h2 center] {Some Font 15 b}Head {Some Font 15 b i u #0000ff sub}span\n{10}plain\n");
}

TEST(OpenDocument, BlanksCollapse)
{
    EXPECT_EQ(
        trace(
            {}, "<text:p>\n  a \n b<text:s text:c=\"2\"/>c<text:tab/>d<text:line-break/>e</text:p><text:p/>"),
        "{}a b  cTABd|e\n\n");
}

TEST(OpenDocument, ListsHaveMarkersThatCount)
{
    const std::string styles
        = "<text:list-style style:name=\"L\"><text:list-level-style-number text:level=\"1\" "
          "style:num-format=\"1\" style:num-suffix=\")\"/><text:list-level-style-number "
          "text:level=\"2\" style:num-format=\"a\" text:display-levels=\"2\"/>"
          "<text:list-level-style-bullet text:level=\"3\" text:bullet-char=\"\u25E6\"/></text:list-style>";
    const std::string list
        = "<text:list text:style-name=\"L\"><text:list-item><text:p>one</text:p><text:p>more</text:p>"
          "<text:list><text:list-item><text:p>inner</text:p><text:list><text:list-item><text:p>deep"
          "</text:p></text:list-item></text:list></text:list-item></text:list></text:list-item>"
          "<text:list-item><text:p>two</text:p></text:list-item></text:list>";
    EXPECT_EQ(trace(styles, list + list),
        "[list {decimal})] {}TAB1)TABone\n{}more\n[list {decimal}) list {lower-alpha}] {}TAB1.aTABinner\n"
        "[list {decimal}) list {lower-alpha} list {circle}] {}TAB\u25E6TABdeep\n[list {decimal})] "
        "{}TAB2)TABtwo\n"
        "[list {decimal})] {}TAB1)TABone\n{}more\n[list {decimal}) list {lower-alpha}] {}TAB1.aTABinner\n"
        "[list {decimal}) list {lower-alpha} list {circle}] {}TAB\u25E6TABdeep\n[list {decimal})] "
        "{}TAB2)TABtwo\n");
}

TEST(OpenDocument, TablesLinksNotesAndPictures)
{
    const auto text = flat({},
        "<text:p>a<text:note><text:note-citation>1</text:note-citation><text:note-body><text:p>note</text:p>"
        "</text:note-body></text:note> <text:a xlink:href=\"http://a/\">link</text:a><draw:frame "
        "svg:width=\"1in\" "
        "svg:height=\"0.5in\" "
        "draw:name=\"pic\"><draw:image><office:binary-data>UE5H</office:binary-data></draw:image>"
        "<svg:desc>text of it</svg:desc></draw:frame></text:p>"
        "<table:table><table:table-row><table:table-cell "
        "table:number-columns-spanned=\"2\"><text:p>x</text:p>"
        "</table:table-cell><table:covered-table-cell/><table:table-cell><text:p>y</text:p></"
        "table:table-cell>"
        "</table:table-row><table:table-row><table:table-cell table:number-columns-repeated=\"99999999\"/>"
        "</table:table-row></table:table><text:p>z<office:annotation><text:p>comment</text:p></"
        "office:annotation></text:p>");
    ASSERT_TRUE(text);
    EXPECT_EQ(traceOf(*text),
        "{}a{super}1{} {link http://a/}link{}*pic*\n[cell 0,0 x2] {}x\n[cell 0,2] {}y\n[cell 1,0] \n{}z\n"
        "{super}1{} note\n");
    EXPECT_EQ(text->attachments().at(0).size, (Size { 72, 36 }));
    EXPECT_EQ(text->documentAttributes.stringForKey(u"DocumentType"), u"NSOpenDocument"_s);
}

TEST(OpenDocument, ThePartsOfAPackageGoTogether)
{
    const TemporaryFolder folder;
    const std::string package
        = ZipBuilder()
              .add({ "mimetype", "application/vnd.oasis.opendocument.text", true })
              .add("content.xml",
                  "<office:document-content><office:body><office:text><text:p "
                  "text:style-name=\"S\">text</text:p>"
                  "<draw:frame><draw:image "
                  "xlink:href=\"Pictures/a.png\"/></draw:frame></office:text></office:body>"
                  "</office:document-content>")
              .add("styles.xml",
                  "<office:document-styles><style:page-layout-properties fo:page-width=\"10in\" "
                  "fo:page-height=\"5in\" "
                  "fo:margin-left=\"1in\"/><style:style style:name=\"S\" style:family=\"paragraph\">"
                  "<style:text-properties "
                  "fo:font-weight=\"bold\"/></style:style><style:header><text:p>head</text:p>"
                  "</style:header></office:document-styles>")
              .add("meta.xml",
                  "<office:meta><dc:title>T</dc:title><meta:keyword>a</meta:keyword><meta:keyword>b</"
                  "meta:keyword>"
                  "<meta:creation-date>2001-01-02T00:00:00.5</meta:creation-date></office:meta>")
              .add("Pictures/a.png", "PNG")
              .bytes();
    const auto text = attributedStringWithOfficePackage(folder.write("a.odt", package));
    ASSERT_TRUE(text);
    EXPECT_EQ(traceOf(*text), "{b}text\n{}*a.png*\n");
    EXPECT_EQ(text->documentAttributes,
        (Dictionary { { u"NSTitleDocumentAttribute"_s, u"T"_s },
            { u"NSKeywordsDocumentAttribute"_s, Array { u"a"_s, u"b"_s } },
            { u"NSCreationTimeDocumentAttribute"_s, Date { 86400 } }, { u"PaperSize"_s, u"{720, 360}"_s },
            { u"LeftMargin"_s, 72.0 }, { u"DocumentType"_s, u"NSOpenDocument"_s },
            { u"UTI"_s, u"org.oasis-open.opendocument.text"_s } }));
}

TEST(OpenDocument, EndsWhatIsOpenWhereTheMarkupBreaksOff)
{
    const auto text = attributedStringWithOfficeXML(Data::copyOf(
        "<office:document><office:body><office:text><table:table><table:table-row><table:table-cell>"
        "<text:p>cell<text:note><text:note-citation>1</text:note-citation><text:note-body><text:p>note"));
    ASSERT_TRUE(text);
    EXPECT_EQ(traceOf(*text), "[cell 0,0] {}cell{super}1\n{super}1{} note\n");
}

TEST(OpenDocument, AListStyleInsideAnotherEndsItsLevels)
{
    EXPECT_EQ(
        trace("<text:list-style style:name=\"L\"><text:list-level-style-number text:level=\"2\">"
              "<text:list-style style:name=\"L\"/><text:list-level-style-number style:num-format=\"1\"/>"
              "<style:list-level-properties text:space-before=\"1in\"/>"
              "</text:list-level-style-number></text:list-style>",
            "<text:p>text</text:p>"),
        "{}text\n");
}

TEST(OpenDocument, SheetsAreNoText)
{
    EXPECT_FALSE(attributedStringWithOfficeXML(
        Data::copyOf("<office:document><office:body><office:spreadsheet><table:table/></office:spreadsheet></"
                     "office:body></office:document>")));
}

} // namespace
} // namespace caddis
