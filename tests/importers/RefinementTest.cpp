// What the host makes of an importer's answer by the kind of document, and what it reads itself.

#include "importers/ImporterHostTest.h"
#include "support/Deflate.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class Refinement : public ImporterHost {
protected:
    void installFor(const std::string& extension)
    {
        setTool(listOf({ "/Apps/A.mdimporter" }));
        install("/Apps/A.mdimporter", { .contentType = "public.plain-text", .extension = extension });
    }
    std::string textOf(const String& path)
    {
        return host.textContentOfFileAtPath(path).value_or(u"(nil)"_s).utf8();
    }
};

TEST_F(Refinement, RemovesPlaceholders)
{
    installFor("mellel");
    const auto metaData = host.metaDataOfFileAtPath(root.write("a.mellel.MELLEL", ""));
    ASSERT_TRUE(metaData);
    EXPECT_FALSE(metaData->find(u"word"));
    EXPECT_FALSE(metaData->find(u"list"));
    EXPECT_EQ(metaData->stringForKey(u"words"), u"<a title>"_s) << "white space inside";
    EXPECT_TRUE(metaData->find(u"lists")) << "more than one";
}

TEST_F(Refinement, MakesPlainTextOfPages)
{
    installFor("mht");
    EXPECT_EQ(textOf(root.write("a.mht", "")), "One & two\n\n");
    const auto metaData = host.metaDataOfFileAtPath(root.write("data.txt", ""));
    EXPECT_EQ(metaData->stringForKey(u"kMDItemTextContent"), u"One & two\n\n"_s);
    EXPECT_TRUE(metaData->stringForKey(u"kMDItemHTMLContent"));
    EXPECT_EQ(textOf(root.write("html.txt", "")), "One & two\n\n");
}

TEST_F(Refinement, JoinsNotes)
{
    installFor("scap");
    EXPECT_EQ(textOf(root.write("a.scap", "")), "one\ntwo");
}

TEST_F(Refinement, ReadsThePreviewOfSavedSearches)
{
    installFor("pdf");
    root.write("x.fennikSearch/QuickLook/Preview.pdf", "");
    const auto metaData = host.metaDataOfFileAtPath(root.path("x.fennikSearch"));
    EXPECT_EQ(metaData, (Dictionary { { u"kMDItemTextContent"_s, u"found"_s } }));
    EXPECT_EQ(host.metaDataOfFileAtPath(root.write("y.FENNIKSEARCH", "")), Dictionary());
}

TEST_F(Refinement, ReadsOutlinesItself)
{
    setTool("nothing here");
    const std::string outline = "<?xml version='1.0'?><o><style-attribute "
                                "a='1'>style</style-attribute><editor x='1'>settings</editor>"
                                "<print-info>A4</print-info><t>Tom  &amp;\n Ada</t></o>";
    root.write("plain.oo3/contents.xml", outline);
    root.write("gzip.OO3/contents.xml", deflated(outline, 31));
    root.write("zlib.ooutline/contents.xml", deflated(outline, 15));
    for (const char* name : { "plain.oo3", "gzip.OO3", "zlib.ooutline" })
        EXPECT_EQ(textOf(root.path(name)), " Tom & Ada") << name;
    root.write("short.oo3/contents.xml", "<o/>");
    root.write("broken.oo3/contents.xml", "neither");
    EXPECT_FALSE(host.metaDataOfFileAtPath(root.path("broken.oo3")));
}

TEST_F(Refinement, ReadsChatLogsAndTextBundlesItself)
{
    setTool("nothing here");
    root.write("c.chatlog/a.xml", "<chat><message>hello &amp; goodbye</message></chat>");
    EXPECT_NE(textOf(root.path("c.chatlog")).find("hello & goodbye"), std::string::npos);
    root.write("c.chatlog/b.xml", "<chat/>");
    EXPECT_FALSE(host.metaDataOfFileAtPath(root.path("c.chatlog"))) << "two logs";
    root.write("n.textbundle/info.json", R"({"version":2,"type":"net.daringfireball.markdown"})");
    root.write("n.textbundle/text.md", "# Lamps");
    EXPECT_EQ(textOf(root.path("n.textbundle")), "# Lamps");
}

} // namespace
} // namespace caddis
