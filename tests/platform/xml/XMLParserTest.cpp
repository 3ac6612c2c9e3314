#include "platform/xml/XMLParser.h"

#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

// A whole parse as one line: <name>, [text], </name>, !code for the error and "." for a well-formed end.
class Trace : public XMLParserDelegate {
public:
    static std::string of(std::string_view document, std::string_view attribute = {})
    {
        Trace trace;
        trace.m_attribute = attribute;
        const bool isWellFormed = XMLParser::parse(Data::copyOf(document), trace);
        EXPECT_EQ(isWellFormed, trace.m_errors == 0);
        return trace.m_text + (isWellFormed ? "." : "");
    }

private:
    void didStartElement(std::string_view name, const XMLAttributes& attributes) override
    {
        m_text.append("<").append(name);
        if (const auto value = m_attribute.empty() ? std::nullopt : attributes.value(m_attribute))
            m_text.append("=").append(value->utf8());
        m_text.append(">");
    }
    void didEndElement(std::string_view name) override { m_text.append("</").append(name).append(">"); }
    void foundCharacters(const String& characters) override { m_text.append("[" + characters.utf8() + "]"); }
    void parseErrorOccurred(const XMLParseError& error) override
    {
        m_text.append("!" + std::to_string(error.code));
        EXPECT_FALSE(error.message.isEmpty());
        ++m_errors;
    }

    std::string m_text;
    std::string_view m_attribute;
    int m_errors = 0;
};

std::string repeated(std::string_view text, int count)
{
    std::string result;
    for (int index = 0; index < count; ++index)
        result += text;
    return result;
}

TEST(XMLParser, DeliversNamesAsTheyAreWritten)
{
    EXPECT_EQ(Trace::of("<a:b><c/></a:b>"), "<a:b><c></c></a:b>.") << "an undeclared prefix is no error";
    const std::string_view document = "<p:a xmlns:p='u' xmlns='v' p:x='1' x='2' xml:lang='en'/>";
    EXPECT_EQ(Trace::of(document, "p:x"), "<p:a=1></p:a>.");
    EXPECT_EQ(Trace::of(document, "x"), "<p:a=2></p:a>.");
    EXPECT_EQ(Trace::of(document, "xmlns:p"), "<p:a=u></p:a>.");
    EXPECT_EQ(Trace::of(document, "xmlns"), "<p:a=v></p:a>.");
    EXPECT_EQ(Trace::of(document, "xml:lang"), "<p:a=en></p:a>.");
    EXPECT_EQ(Trace::of(document, "X"), "<p:a></p:a>.");
}

TEST(XMLParser, DeliversTheTextBetweenTwoTagsInOnePiece)
{
    EXPECT_EQ(Trace::of("<a>AT&amp;T &#xFC;<![CDATA[<b>]]><!-- c -->!</a>"), "<a>[AT&T \u00FC<b>!]</a>.");
    EXPECT_EQ(Trace::of("<a> <b>\n</b> </a>"), "<a>[ ]<b>[\n]</b>[ ]</a>.");
    const std::string text = repeated("\u6F22\u5B57 ", 20'000);
    EXPECT_EQ(Trace::of("<a>" + text + "</a>"), "<a>[" + text + "]</a>.");
}

TEST(XMLParser, ReadsOtherEncodings)
{
    EXPECT_EQ(Trace::of("\xEF\xBB\xBF<a>\u00FC</a>"), "<a>[\u00FC]</a>.");
    EXPECT_EQ(Trace::of("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xFC</a>"), "<a>[\u00FC]</a>.");
    EXPECT_EQ(Trace::of({ "\xFF\xFE<\0a\0>\0\xFC\0<\0/\0a\0>\0", 18 }), "<a>[\u00FC]</a>.");
    EXPECT_EQ(Trace::of("<a>\xFC</a>"), "<a>!9") << "neither declared nor UTF-8";
    testing::internal::CaptureStderr();
    EXPECT_NE(Trace::of({ "\xFF\xFE<\0a\0>\0\0\xDC\0\xDC<\0/\0a\0>\0", 20 }).back(), '.')
        << "lone surrogates";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(XMLParser, StopsAtTheFirstFatalErrorAndKeepsWhatCameBefore)
{
    EXPECT_EQ(Trace::of(""), "!5");
    EXPECT_EQ(Trace::of("no markup"), "!4");
    EXPECT_EQ(Trace::of("<a>x</b></a>"), "<a>[x]!76");
    EXPECT_EQ(Trace::of("<a>x<b>y"), "<a>[x]<b>!5");
    EXPECT_EQ(Trace::of("<a/><b/>"), "<a></a>!5");
    EXPECT_EQ(Trace::of("<a x='1' x='2'/>"), "!42");
    const std::string document = "<?xml version='1.0'?><a b='c'>text &amp; <d/><!-- e --></a>";
    for (std::size_t length = 0; length < document.size(); ++length)
        EXPECT_NE(Trace::of(document.substr(0, length)).back(), '.') << length;
}

TEST(XMLParser, ExpandsOnlyEntitiesOfTheDocumentItself)
{
    EXPECT_EQ(Trace::of("<!DOCTYPE a [<!ENTITY x 'y<b/>'>]><a t='&lt;'>&x;&x;</a>", "t"),
        "<a=<>[y]<b></b>[y]<b></b></a>.");
    EXPECT_EQ(Trace::of("<!DOCTYPE a [<!ENTITY x 'y'>]><a t='&x;z'/>", "t"), "<a=yz></a>.");
    EXPECT_EQ(Trace::of("<a>1&nbsp;2</a>"), "<a>[1]!26");
    EXPECT_EQ(Trace::of("<!DOCTYPE a PUBLIC 'p' 'http://127.0.0.1:1/a.dtd'><a>1&nbsp;2</a>"), "<a>[12]</a>.");
}

TEST(XMLParser, NeverReadsAFileThatADocumentNames)
{
    const TemporaryFolder folder;
    const std::string secret = folder.write("secret", "secret").utf8();
    const std::string dtd = folder.write("dtd", "<!ENTITY x 'secret'>").utf8();
    EXPECT_EQ(Trace::of("<!DOCTYPE a [<!ENTITY x SYSTEM '" + secret + "'>]><a>1&x;2</a>"), "<a>[12]</a>.");
    EXPECT_EQ(Trace::of("<!DOCTYPE a [<!ENTITY % p SYSTEM '" + dtd + "'>%p;]><a>1&x;2</a>"), "<a>[12]</a>.");
    EXPECT_EQ(Trace::of("<!DOCTYPE a SYSTEM '" + dtd + "'><a>1&x;2</a>"), "<a>[12]</a>.");
    EXPECT_EQ(
        Trace::of("<a xmlns:i='http://www.w3.org/2001/XInclude'><i:include href='" + secret + "'/></a>"),
        "<a><i:include></i:include></a>.");
}

TEST(XMLParser, BoundsWhatEntitiesDepthAndTagsCost)
{
    std::string laughs = "<!DOCTYPE a [<!ENTITY e0 'lolololololololololol'>";
    for (int level = 1; level < 10; ++level)
        laughs += "<!ENTITY e" + std::to_string(level) + " '"
            + repeated("&e" + std::to_string(level - 1) + ";", 10) + "'>";
    EXPECT_LT(Trace::of(laughs + "]><a>&e9;</a>").size(), 20'000'000U);
    EXPECT_LT(Trace::of(laughs + "]><a b='&e9;'/>").size(), 1000U);
    EXPECT_LT(Trace::of("<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>").size(), 1000U);

    EXPECT_EQ(Trace::of(repeated("<a>", 256) + repeated("</a>", 256)).back(), '.');
    EXPECT_EQ(Trace::of(repeated("<a>", 1'000'000)), repeated("<a>", 256) + "!1");
    std::string attributes = "<a";
    std::string namespaces;
    for (int index = 0; index < 400'000; ++index)
        attributes += " a" + std::to_string(index) + "='1'";
    for (int index = 0; index < 100'000; ++index)
        namespaces += "<a xmlns:p" + std::to_string(index) + "='u'>";
    EXPECT_EQ(Trace::of(attributes + "/>"), "!73");
    EXPECT_LT(Trace::of(namespaces).size(), 10'000U);
}

} // namespace
} // namespace caddis
