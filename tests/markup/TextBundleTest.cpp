#include "markup/TextBundle.h"

#include "platform/files/FileSystem.h"
#include "platform/files/TemporaryFile.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class TextBundle : public testing::Test {
protected:
    // Reading must leave nothing in the temporary folder.
    std::string text(const std::string& name, NSStringEncoding encoding = NSStringEncoding::UTF8) const
    {
        const auto bundle = stringWithContentsOfTextBundleFile(m_folder.path(name), encoding);
        EXPECT_TRUE(FileSystem::contentsOfDirectory(*temporaryDirectory())->empty()) << name;
        return bundle ? bundle->text.utf8() : "nil";
    }
    bool decompresses(const std::string& from, const std::string& to) const
    {
        const bool isDone = decompressTextBundleFile(m_folder.path(from), m_folder.path(to));
        EXPECT_TRUE(FileSystem::contentsOfDirectory(*temporaryDirectory())->empty()) << from;
        return isDone;
    }
    std::string contents(const std::string& name) const
    {
        const auto data = FileSystem::contentsOfFile(m_folder.path(name));
        return data ? std::string(data->chars()) : "none";
    }

    TemporaryFolder m_folder;
};

TEST_F(TextBundle, ReadsTheTextOfAFolder)
{
    m_folder.write("a.textbundle/text.markdown", "# A");
    m_folder.write("a.textbundle/assets/text.txt", "no");
    m_folder.write("B.TextBundle/TEXT.md", "# B");
    m_folder.write("c.textbundle/content.md", "# C");
    m_folder.write("d.textbundle", "no folder");
    m_folder.write("e.textbundle/text.", "first");
    m_folder.write("e.textbundle/text.md", "second");
    m_folder.write("f.md/text.md", "no bundle");
    EXPECT_EQ(text("a.textbundle"), "# A");
    EXPECT_EQ(text("a.textbundle/"), "# A");
    EXPECT_EQ(text("B.TextBundle"), "# B");
    EXPECT_EQ(text("e.textbundle"), "first");
    for (const auto* name : { "c.textbundle", "d.textbundle", "f.md", "none.textbundle", "none.textpack" })
        EXPECT_EQ(text(name), "nil") << name;
    EXPECT_EQ(stringWithContentsOfTextBundleFile(String(), NSStringEncoding::UTF8), std::nullopt);
}

TEST_F(TextBundle, ReportsTheEncodingOfTheText)
{
    const String path = m_folder.path("a.textbundle");
    m_folder.write("a.textbundle/text.md", "caf\xC3\xA9");
    for (const auto encoding : { NSStringEncoding::ISOLatin1, NSStringEncoding::UTF8 })
        EXPECT_EQ(stringWithContentsOfTextBundleFile(path, encoding)->usedEncoding, encoding);
    EXPECT_EQ(text("a.textbundle", NSStringEncoding::ASCII), "caf\xC3\xA9");
    m_folder.write("a.textbundle/text.md", std::string_view("\xFF\xFE#\0", 4));
    EXPECT_EQ(text("a.textbundle", NSStringEncoding::ISOLatin1), "#");
}

TEST_F(TextBundle, ReadsTheLastTextOfAPack)
{
    ZipBuilder pack;
    pack.add("A.textbundle/text.md", "a").add("A.textbundle/info.json", "{}").add("__MACOSX/text.md", "no");
    m_folder.write("one.textpack", pack.bytes());
    pack.add("b.TEXTBUNDLE/text.md", "b").add("b.TEXTBUNDLE/Text.txt/inside", "no file");
    m_folder.write("two.TEXTPACK", pack.bytes());
    m_folder.write("bare.textpack", ZipBuilder().add("text.md", "not in a bundle").bytes());
    m_folder.write("cut.textpack", pack.bytes().substr(0, 200));
    m_folder.write("bad.textpack", pack.add("../text.md", "x").bytes());
    EXPECT_EQ(text("one.textpack"), "a");
    EXPECT_EQ(text("two.TEXTPACK"), "b");
    for (const auto* name : { "bare.textpack", "cut.textpack", "bad.textpack" })
        EXPECT_EQ(text(name), "nil") << name;
}

TEST_F(TextBundle, UnpacksAPackWithItsAssets)
{
    m_folder.write("a.textpack",
        ZipBuilder()
            .add("A.textbundle/text.md", "a")
            .add("A.textbundle/assets/x.png", "png")
            .add("B.textbundle/text.md", "b")
            .bytes());
    m_folder.write("out/0.textbundle/text.md", "a stranger's");
    EXPECT_TRUE(decompresses("a.textpack", "out/new.textbundle"));
    EXPECT_EQ(contents("out/new.textbundle/assets/x.png"), "png");
    EXPECT_EQ(contents("out/0.textbundle/text.md"), "a stranger's");
    EXPECT_EQ(FileSystem::contentsOfDirectory(m_folder.path("out"))->size(), 2U);
    EXPECT_FALSE(decompresses("a.textpack", "out/0.textbundle")) << "something is there already";
    EXPECT_TRUE(decompresses("a.textpack", "further/down/A.textbundle"));
    m_folder.write("none.textpack", ZipBuilder().add("text.md", "a").bytes());
    EXPECT_FALSE(decompresses("none.textpack", "out/none.textbundle"));
    EXPECT_FALSE(FileSystem::exists(m_folder.path("out/none.textbundle")));
}

TEST_F(TextBundle, CopiesAFolderWithItsAssets)
{
    m_folder.write("a.textbundle/assets/x.png", "png");
    EXPECT_TRUE(decompresses("a.textbundle", "b.textbundle"));
    EXPECT_EQ(contents("b.textbundle/assets/x.png"), "png");
    EXPECT_EQ(contents("a.textbundle/assets/x.png"), "png");
    EXPECT_FALSE(decompresses("a.textbundle", "b.textbundle"));
    EXPECT_FALSE(decompresses("a.textbundle/assets", "c"));
    EXPECT_FALSE(decompressTextBundleFile(m_folder.path("a.textbundle"), String()));
    EXPECT_FALSE(decompressTextBundleFile(String(), m_folder.path("c")));
}

} // namespace
} // namespace caddis
