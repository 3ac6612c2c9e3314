#include "bundles/BundleHost.h"
#include "support/PDFBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

constexpr const char* Title = "kMDItemTitle";
constexpr const char* Text = "kMDItemTextContent";

class DocumentBundles : public testing::Test {
protected:
    Imported import(
        const std::string& bundle, const char* type, const std::string& name, const std::string& bytes)
    {
        return importWith(bundle, type, m_folder.write(name, bytes).utf8());
    }

private:
    TemporaryFolder m_folder;
};

TEST_F(DocumentBundles, ReadTheFrontMatterOfMarkdown)
{
    const auto file = import("PlainText", "net.daringfireball.markdown", "a.md",
        "---\ntitle: \"The Lamp\"\nauthor: Ada\ntags: [sea, 'light']\ndate: 2026-03-01T09:30:00Z\n---\n# "
        "Heading\nOil.\n");
    EXPECT_TRUE(file.result);
    EXPECT_EQ(file[Title], "The Lamp");
    EXPECT_EQ(file["kMDItemAuthors"], "Ada");
    EXPECT_EQ(file["kMDItemKeywords"], "sea | light");
    EXPECT_EQ(file["kMDItemContentCreationDate"], "1772357400");
    EXPECT_EQ(file[Text], "# Heading\nOil.\n");
    const auto bare
        = import("PlainText", "net.daringfireball.markdown", "b.md", "---\nno end\n# The title #\n");
    EXPECT_EQ(bare[Title], "The title");
    EXPECT_EQ(bare[Text], "---\nno end\n# The title #\n");
}

TEST_F(DocumentBundles, ReadTextInItsEncoding)
{
    EXPECT_EQ(import("PlainText", "public.plain-text", "a.txt",
                  "Gr\xC3\xBC\xC3\x9F"
                  "e")[Text],
        "Gr\u00FC\u00DFe");
    EXPECT_EQ(import("PlainText", "public.plain-text", "b.txt",
                  std::string("\xFF\xFE"
                              "a\0\xAC\x20",
                      6))[Text],
        "a\u20AC");
    EXPECT_EQ(import("PlainText", "public.c-source", "c.c", "int main;")[Text], "int main;");
    EXPECT_FALSE(importWith("PlainText", "public.plain-text", "/nowhere").result);
}

TEST_F(DocumentBundles, ReadPages)
{
    const auto page = import("Web", "public.html", "a.html",
        "<title>Oil &amp; lamps</title><meta name=keywords content='sea, light'><meta name=author "
        "content='Ada'>"
        "<body><p>One<p>Two");
    EXPECT_EQ(page[Title], "Oil & lamps");
    EXPECT_EQ(page["kMDItemKeywords"], "sea | light");
    EXPECT_EQ(page["kMDItemAuthors"], "Ada");
    EXPECT_EQ(page[Text], "One\n\nTwo");
    const auto feed = import("Web", "public.rss", "a.rss",
        "<rss><channel><title>News</title><item><title>First</title><description>&lt;b&gt;Body&lt;/b&gt;"
        "</description></item></channel></rss>");
    EXPECT_NE(feed[Text].find("First\n"), std::string::npos) << feed[Text];
    EXPECT_NE(feed[Text].find("Body"), std::string::npos) << feed[Text];
    const auto picture
        = import("Web", "public.svg-image", "a.svg", "<svg><title>Map</title><text>North</text></svg>");
    EXPECT_EQ(picture[Title], "Map");
    EXPECT_EQ(picture[Text], "Map North");
}

TEST_F(DocumentBundles, ReadSavedPages)
{
    const std::string message
        = "Subject: x\r\nContent-Type: multipart/related;\r\n boundary=\"--b\"\r\n\r\nPreamble\r\n"
          "----b\r\nContent-Type: text/html; charset=utf-8\r\nContent-Location: http://e.org/\r\n"
          "Content-Transfer-Encoding: quoted-printable\r\n\r\n"
          "<title>K=C3=A4se</title><p>soft=\r\nly\r\n----b\r\nContent-Type: "
          "image/png\r\n\r\nx\r\n----b--\r\n";
    const auto page = import("Web", "com.microsoft.word.mhtml", "a.mhtml", message);
    EXPECT_EQ(page[Title], "K\u00E4se");
    EXPECT_EQ(page["kMDItemIdentifier"], "http://e.org/");
    EXPECT_EQ(page[Text], "K\u00E4se\n\nsoftly");
    // The host itself turns the text of this kind of file into plain text.
    EXPECT_NE(import("Web", "com.microsoft.word.mhtml", "a.mht", message)[Text].find("<p>softly"),
        std::string::npos);
    EXPECT_FALSE(
        import("Web", "com.microsoft.word.mhtml", "b.mht", "Content-Type: multipart/related\r\n\r\n--\r\n")
            .result);
}

TEST_F(DocumentBundles, ReadPDF)
{
    PDFBuilder pdf;
    pdf.info("/Title (The Lamp) /Author (Ada)");
    pdf.page("BT /F1 12 Tf 72 700 Td (Oil and wick) Tj ET");
    pdf.page("");
    const auto file = import("PDF", "com.adobe.pdf", "a.pdf", pdf.bytes());
    EXPECT_EQ(file[Title], "The Lamp");
    EXPECT_EQ(file["kMDItemAuthors"], "Ada");
    EXPECT_EQ(file["kMDItemNumberOfPages"], "2");
    EXPECT_EQ(file["kMDItemPageWidth"] + "x" + file["kMDItemPageHeight"], "612x792");
    EXPECT_EQ(file[Text], "Oil and wick\n");
    EXPECT_FALSE(import("PDF", "com.adobe.pdf", "b.pdf", "no such thing").result);
}

const std::string CoreProperties
    = "<cp:coreProperties xmlns:cp='c' xmlns:dc='d' xmlns:t='t'><dc:title>The Lamp</dc:title>"
      "<dc:creator>Ada; Charles</dc:creator><t:created>2026-03-01T09:30:00Z</t:created></cp:coreProperties>";

TEST_F(DocumentBundles, ReadOfficeOpenDocuments)
{
    const auto document = import("OfficeOpen", "org.openxmlformats.wordprocessingml.document", "a.docx",
        ZipBuilder()
            .add("docProps/core.xml", CoreProperties)
            .add("docProps/app.xml",
                "<Properties><Application>Writer</Application><Pages>3</Pages></Properties>")
            .add("word/document.xml",
                "<w:document xmlns:w='w'><w:p><w:pPr><w:tabs><w:tab/></w:tabs></w:pPr><w:t>Oil</w:t><w:tab/>"
                "<w:t>and &lt;wick&gt;</w:t></w:p><w:p><w:t>End</w:t></w:p></w:document>")
            .bytes());
    EXPECT_EQ(document[Title], "The Lamp");
    EXPECT_EQ(document["kMDItemAuthors"], "Ada | Charles");
    EXPECT_EQ(document["kMDItemContentCreationDate"], "1772357400");
    EXPECT_EQ(document["kMDItemNumberOfPages"], "3");
    EXPECT_EQ(document[Text], "Oil\tand <wick>\nEnd\n");
}

TEST_F(DocumentBundles, ReadWorkbooks)
{
    const auto workbook = import("OfficeOpen", "org.openxmlformats.spreadsheetml.sheet", "a.xlsx",
        ZipBuilder()
            .add("xl/workbook.xml", "<workbook xmlns:r='r'><sheet name='Costs' r:id='R1'/></workbook>")
            .add("xl/_rels/workbook.xml.rels", "<x><Relationship Id='R1' Target='worksheets/one.xml'/></x>")
            .add("xl/sharedStrings.xml",
                "<sst><si><t>Oil</t></si><si><r><t>Wi</t></r><r><t>ck</t></r></si></sst>")
            .add("xl/worksheets/one.xml",
                "<x><row><c t='s'><v>1</v></c><c><f>A1</f><v>2.5</v></c></row><row><c t='s'><v>0</v></c>"
                "<c t='s'><v>99</v></c><c t='inlineStr'><is><t>here</t></is></c></row></x>")
            .bytes());
    EXPECT_TRUE(workbook.result);
    EXPECT_EQ(workbook[Text], "Costs\nWick\t2.5\nOil\there\n");
}

TEST_F(DocumentBundles, ReadOpenDocumentsPackedAndFlat)
{
    const std::string meta = "<office:meta><dc:title>The Lamp</dc:title><meta:keyword>sea</meta:keyword>"
                             "<meta:document-statistic meta:page-count='4'/></office:meta>";
    const std::string body
        = "<office:body><text:tracked-changes><text:p>gone</text:p></text:tracked-changes>"
          "<text:h>Head</text:h><text:p>a<text:s text:c='2'/>b<text:tab/>c</text:p></office:body>";
    const auto wrapped = [](const std::string& inner) {
        return "<office:document xmlns:office='o' xmlns:dc='d' xmlns:meta='m' xmlns:text='t'>" + inner
            + "</office:document>";
    };
    const auto packed = import("OpenDocument", "org.oasis-open.opendocument.text", "a.odt",
        ZipBuilder().add("meta.xml", wrapped(meta)).add("content.xml", wrapped(body)).bytes());
    const auto flat
        = import("OpenDocument", "org.oasis-open.opendocument.text", "a.fodt", wrapped(meta + body));
    for (const auto& file : { packed, flat }) {
        EXPECT_TRUE(file.result);
        EXPECT_EQ(file[Title], "The Lamp");
        EXPECT_EQ(file["kMDItemKeywords"], "sea");
        EXPECT_EQ(file["kMDItemNumberOfPages"], "4");
        EXPECT_EQ(file[Text], "Head\na  b\tc\n");
    }
}

TEST_F(DocumentBundles, ReadMail)
{
    if (!hasBundle("Mail"))
        GTEST_SKIP();
    const std::string message
        = "From: Ada <ada@e.org>\nTo: \"B, C\" <b@e.org>, d@e.org\nSubject: =?utf-8?q?K=C3=A4se?=\n"
          "Date: Sun, 01 Mar 2026 09:30:00 +0000\nMessage-ID: <1@e.org>\nMIME-Version: 1.0\n"
          "Content-Type: multipart/alternative; boundary=b\n\n--b\nContent-Type: text/plain\n\nplain\n"
          "--b\nContent-Type: text/html\n\n<p>rich\n--b--\n";
    const auto mail = import("Mail", "com.apple.mail.email", "a.eml", message);
    EXPECT_EQ(mail["kMDItemSubject"], "K\u00E4se");
    EXPECT_EQ(mail["kMDItemAuthors"], "Ada");
    EXPECT_EQ(mail["kMDItemRecipients"], "B, C | d@e.org");
    EXPECT_EQ(mail["kMDItemRecipientEmailAddresses"], "b@e.org | d@e.org");
    EXPECT_EQ(mail["kMDItemContentCreationDate"], "1772357400");
    EXPECT_EQ(mail[Text], "plain\n");

    const auto wrapped = import("Mail", "com.apple.mail.emlx", "a.emlx",
        std::to_string(message.size()) + "      \n" + message + "<?xml version=\"1.0\"?><plist/>");
    EXPECT_EQ(wrapped["kMDItemSubject"], "K\u00E4se");
    EXPECT_EQ(wrapped[Text], "plain\n");
    const auto folder = import("Mail", "com.apple.mail.mbox", "a.mbox",
        "From a Sun Mar  1 09:30:00 2026\nSubject: one\n\nfirst\n\nFrom b Sun Mar  1 09:30:00 2026\nSubject: "
        "two\n\nsecond\n");
    EXPECT_EQ(folder[Text], "one\nfirst\ntwo\nsecond\n");
}

TEST_F(DocumentBundles, ReadCards)
{
    const auto card = import("Cards", "public.vcard", "a.vcf",
        "BEGIN:VCARD\r\nFN:Ada Lovelace\r\nitem1.EMAIL;TYPE=home:ada@e.org\r\nTEL:+44 1\r\nORG:Engine\\, "
        "Ltd;Sums\r\n"
        "NOTE:long\r\n er\\nnote\r\nEND:VCARD\r\n");
    EXPECT_EQ(card[Title], "Ada Lovelace");
    EXPECT_EQ(card["kMDItemEmailAddresses"], "ada@e.org");
    EXPECT_EQ(card["kMDItemOrganizations"], "Engine, Ltd Sums");
    EXPECT_EQ(card[Text], "Ada Lovelace\nada@e.org\n+44 1\nEngine, Ltd Sums\nlonger\nnote\n");
    const auto event = import("Cards", "com.apple.ical.ics", "a.ics",
        "BEGIN:VEVENT\nSUMMARY:Launch\nDTSTART:20260301T093000Z\nATTENDEE;CN=\"Ada: "
        "L\":mailto:a@e.org\nEND:VEVENT\n");
    EXPECT_EQ(event[Title], "Launch");
    EXPECT_EQ(event["kMDItemParticipants"], "Ada: L");
    EXPECT_EQ(event["kMDItemContentCreationDate"], "1772357400");
}

} // namespace
} // namespace caddis
