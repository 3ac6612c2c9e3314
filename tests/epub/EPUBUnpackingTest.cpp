#include "epub/EPUBParser.h"

#include "platform/files/FileSystem.h"
#include "support/EPUBBuilder.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(EPUBUnpacking, LivesAsLongAsTheParser)
{
    const TemporaryFolder folder;
    String copy;
    {
        EPUBParser book(folder.write("My Book.epub", epubWithPackage("")));
        ASSERT_TRUE(book.unzippedEPUB());
        copy = *book.unzippedEPUB();
        EXPECT_EQ(book.unzippedEPUB(), copy);
        EXPECT_NE(copy.utf8().find("/My Book"), std::string::npos);
        EXPECT_NE(book.epubFolder(), book.epubFolder());
        EXPECT_EQ(
            FileSystem::contentsOfDirectory(copy), (std::vector { u"META-INF"_s, u"OPS"_s, u"mimetype"_s }));
    }
    EXPECT_FALSE(FileSystem::exists(copy));
}

TEST(EPUBUnpacking, GoesOnlyWhereNothingIs)
{
    const TemporaryFolder folder;
    EPUBParser book(folder.write("b.epub", epubWithPackage("")));
    EXPECT_FALSE(book.unzipEPUBToPath(String()));
    EXPECT_FALSE(book.unzipEPUBToPath(folder.path("")));
    EXPECT_TRUE(book.unzipEPUBToPath(folder.path("out")));
    EXPECT_FALSE(book.unzipEPUBToPath(folder.path("out")));
    const LogCapture capture;
    EPUBParser none(folder.write("none.epub", "no zip"));
    EXPECT_FALSE(none.unzipEPUBToPath(folder.path("out2")));
    EXPECT_FALSE(none.unzippedEPUB());
}

TEST(EPUBUnpacking, MapsContentToURLsAndBack)
{
    const TemporaryFolder folder;
    EPUBParser book(folder.write("b.epub", epubWithPackage("")));
    EXPECT_FALSE(book.URLForContent(u"a.xhtml"_s)) << "not unpacked yet";
    const String copy = *book.unzippedEPUB();
    const auto url = book.URLForItem({ { u"content"_s, u"a b/\u00FC.xhtml"_s } });
    ASSERT_TRUE(url);
    EXPECT_EQ(url->path()->utf8(), copy.utf8() + "/OPS/a b/\xC3\xBC.xhtml");
    EXPECT_EQ(book.contentForURL(*url), u"a b/\u00FC.xhtml"_s);
    EXPECT_FALSE(book.URLForContent(String()));
    EXPECT_FALSE(book.URLForItem({}));
    EXPECT_FALSE(book.contentForURL(*URL::fromString(u"http://x/a"_s)));
    EXPECT_FALSE(book.contentForURL(URL::fileURLWithPath(u"/etc/passwd"_s)));
    EXPECT_FALSE(
        book.contentForURL(URL::fileURLWithPath(String::fromUtf8(copy.utf8() + "/OPS/../mimetype"))));
}

TEST(EPUBUnpacking, ReadsABookThatIsAFolder)
{
    const TemporaryFolder folder;
    folder.write("b.epub/META-INF/container.xml", containerDocument);
    folder.write("b.epub/OPS/a.opf", packageDocument("<dc:title>Folder</dc:title>"));
    folder.write("b.epub/META-INF/rights.xml", "<kdrm/>");
    folder.write("secret", "secret");
    std::filesystem::create_symlink(folder.path() / "secret", folder.path() / "b.epub/link");
    EPUBParser book(folder.path("b.epub"));
    EXPECT_EQ(book.metaData().stringForKey(u"kMDItemTitle"), u"Folder"_s);
    EXPECT_EQ(book.DRM(), u"Kobo");
    EXPECT_NE(book.unzippedEPUB(), folder.path("b.epub"));
    EXPECT_TRUE(book.testForNamedFile(u"OPS/a.opf"_s));
    EXPECT_FALSE(book.testForNamedFile(u"OPS/none"_s));
    for (const auto* name :
        { u"link", u"../../../../../../../../../etc/passwd", u"/etc/passwd", u"", u"OPS" })
        EXPECT_FALSE(book.dataForNamedFile(String(name))) << readable(name);
}

} // namespace
} // namespace caddis
