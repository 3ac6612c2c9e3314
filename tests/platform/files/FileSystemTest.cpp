#include "platform/files/FileSystem.h"

#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace caddis {
namespace {

namespace fs = std::filesystem;

TEST(FileSystem, TellsFoldersFilesAndPackagesApart)
{
    const TemporaryFolder folder;
    const String file = folder.write("Book.EPUB/mimetype", "x");
    EXPECT_TRUE(FileSystem::exists(file));
    EXPECT_FALSE(FileSystem::isDirectory(file));
    EXPECT_TRUE(FileSystem::isDirectory(folder.path("Book.EPUB/")));
    EXPECT_TRUE(FileSystem::isFilePackageAtPath(folder.path("Book.EPUB")));
    EXPECT_FALSE(FileSystem::isFilePackageAtPath(folder.write("plain.epub", "")));
    EXPECT_FALSE(FileSystem::isFilePackageAtPath(folder.path("")));
    EXPECT_EQ(FileSystem::sizeOfFile(file), 1U);
    EXPECT_EQ(FileSystem::sizeOfFile(folder.path("none")), 0U);
    EXPECT_EQ(
        FileSystem::contentsOfDirectory(folder.path("")), (std::vector { u"Book.EPUB"_s, u"plain.epub"_s }));
    EXPECT_FALSE(FileSystem::contentsOfDirectory(file));
}

TEST(FileSystem, FindsNothingUnderPathsThatNoFileCanHave)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("a", "x").utf8();
    for (const String& path : { String(), String::fromUtf8(file + std::string("\0", 1)), u"/tmp/\xD800"_s }) {
        EXPECT_FALSE(FileSystem::exists(path));
        EXPECT_FALSE(FileSystem::contentsOfFile(path));
        EXPECT_FALSE(FileSystem::removeItem(path));
    }
    EXPECT_EQ(mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(FileSystem::contentsOfFile(folder.path("pipe"))) << "and does not wait for a writer";
    EXPECT_FALSE(FileSystem::contentsOfFile(folder.path("")));
}

TEST(FileSystem, CopiesAFolderThatCanBeRemovedAgain)
{
    const TemporaryFolder folder;
    folder.write("from/sub/file", "text");
    fs::create_symlink("file", folder.path() / "from/sub/link");
    fs::permissions(folder.path() / "from/sub", fs::perms::owner_read | fs::perms::owner_exec);
    const String copy = folder.path("to");
    EXPECT_TRUE(FileSystem::copyItem(folder.path("from"), copy));
    EXPECT_EQ(FileSystem::contentsOfFile(folder.path("to/sub/file"))->chars(), "text");
    EXPECT_EQ(fs::read_symlink(folder.path() / "to/sub/link"), "file");
    EXPECT_FALSE(FileSystem::copyItem(folder.path("from"), copy)) << "something is there already";
    EXPECT_FALSE(FileSystem::copyItem(folder.path("from"), folder.path("from/sub/inside")));
    EXPECT_FALSE(FileSystem::copyItem(folder.path("none"), folder.path("none2")));
    EXPECT_FALSE(FileSystem::copyItem(folder.path("from"), folder.path("small"), 3));
    EXPECT_FALSE(FileSystem::exists(folder.path("small")));
    EXPECT_TRUE(FileSystem::removeItem(copy));
    EXPECT_FALSE(FileSystem::exists(copy));
    fs::permissions(folder.path() / "from/sub", fs::perms::owner_all);
}

TEST(FileSystem, MovesOnlyToWhereNothingIs)
{
    const TemporaryFolder folder;
    folder.write("from/sub/file", "text");
    folder.write("taken", "stays");
    EXPECT_FALSE(FileSystem::moveItem(folder.path("from"), folder.path("taken")));
    EXPECT_FALSE(FileSystem::moveItem(folder.path("from"), folder.path("from/sub/inside")));
    EXPECT_FALSE(FileSystem::moveItem(folder.path("none"), folder.path("none2")));
    EXPECT_TRUE(FileSystem::moveItem(folder.path("from"), folder.path("to")));
    EXPECT_FALSE(FileSystem::exists(folder.path("from")));
    EXPECT_EQ(FileSystem::contentsOfFile(folder.path("to/sub/file"))->chars(), "text");
    EXPECT_EQ(FileSystem::contentsOfFile(folder.path("taken"))->chars(), "stays");
}

TEST(FileSystem, MakesFoldersForTheOwnerAlone)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(FileSystem::createDirectory(folder.path("a/b/c")));
    EXPECT_EQ(fs::status(folder.path() / "a/b").permissions(), fs::perms::owner_all);
    EXPECT_TRUE(FileSystem::createDirectory(folder.path("a/b/c")));
    folder.write("file", "");
    EXPECT_FALSE(FileSystem::createDirectory(folder.path("file")));
    EXPECT_FALSE(FileSystem::createDirectory(folder.path("file/x")));
    EXPECT_EQ(FileSystem::canonicalPath(folder.path("a/b/../b/./c")),
        FileSystem::canonicalPath(folder.path("a/b/c")));
    EXPECT_EQ(FileSystem::canonicalPath(folder.path("none")), std::nullopt);
}

} // namespace
} // namespace caddis
