#include "platform/richtext/FileWrapper.h"

#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace caddis {
namespace {

namespace fs = std::filesystem;

FileWrapper file(std::u16string_view name, std::string_view contents)
{
    return FileWrapper::file(String(name), Data::copyOf(contents));
}

FileWrapper folder(std::vector<FileWrapper> members)
{
    return FileWrapper::folder(u"doc.rtfd"_s, std::move(members));
}

std::size_t itemsIn(const fs::path& path)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(path), {}));
}

std::string contents(const fs::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), {} };
}

TEST(FileWrapper, ReadsBackWhatItWrote)
{
    const TemporaryFolder folders;
    FileWrapper inner = folder({ file(u"b.txt", "inner") });
    inner.name = u"nested.rtfd"_s;
    const FileWrapper made = folder({ file(u"TXT.rtf", "{\\rtf1}"), inner });
    ASSERT_TRUE(writeFileWrapper(made, folders.path("doc.rtfd")));
    const auto read = readFileWrapper(folders.path("doc.rtfd"));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->members.size(), 2U);
    ASSERT_TRUE(read->member(u"nested.rtfd"));
    EXPECT_EQ(read->member(u"nested.rtfd")->member(u"b.txt")->contents.chars(), "inner");
    EXPECT_EQ(read->member(u"TXT.rtf")->contents.chars(), "{\\rtf1}");
    EXPECT_EQ(itemsIn(folders.path()), 1U);
}

TEST(FileWrapper, ReplacesWhatStoodThere)
{
    const TemporaryFolder folders;
    folders.write("doc.rtfd/old.txt", "old");
    folders.write("file.rtfd", "a plain file");
    const FileWrapper made = folder({ file(u"TXT.rtf", "new") });
    ASSERT_TRUE(writeFileWrapper(made, folders.path("doc.rtfd")));
    ASSERT_TRUE(writeFileWrapper(made, folders.path("file.rtfd/")));
    EXPECT_EQ(itemsIn(folders.path() / "doc.rtfd"), 1U);
    EXPECT_EQ(contents(folders.path() / "file.rtfd" / "TXT.rtf"), "new");
    EXPECT_EQ(itemsIn(folders.path()), 2U);
}

TEST(FileWrapper, NeverWritesOutsideItsTarget)
{
    const TemporaryFolder folders;
    const FileWrapper made = folder({ file(u"../escaped", "1"), file(u"/etc/escaped", "2"), file(u"..", "3"),
        file(u"a\u0000b", "4"), file(u"", "5"), file(std::u16string(300, u'\u00E9'), "6") });
    ASSERT_TRUE(writeFileWrapper(made, folders.path("doc.rtfd")));
    EXPECT_EQ(itemsIn(folders.path()), 1U);
    EXPECT_EQ(itemsIn(folders.path() / "doc.rtfd"), 6U);
    EXPECT_EQ(contents(folders.path() / "doc.rtfd" / "escaped"), "1");
    EXPECT_EQ(contents(folders.path() / "doc.rtfd" / "1__#$!@%!#__escaped"), "2");
    EXPECT_EQ(safeMemberName(u"plain name.png"_s), u"plain name.png"_s);
}

TEST(FileWrapper, LeavesNothingWhenItCannotBeWritten)
{
    const TemporaryFolder folders;
    folders.write("file", "");
    const FileWrapper made = folder({ file(u"TXT.rtf", "new") });
    EXPECT_FALSE(writeFileWrapper(made, folders.path("missing/doc.rtfd")));
    EXPECT_FALSE(writeFileWrapper(made, folders.path("file/doc.rtfd")));
    EXPECT_FALSE(writeFileWrapper(made, String()));
    FileWrapper deep = folder({});
    for (int level = 0; level < 40; ++level)
        deep = folder({ std::move(deep) });
    EXPECT_FALSE(writeFileWrapper(deep, folders.path("deep")));
    EXPECT_EQ(itemsIn(folders.path()), 1U);
}

TEST(FileWrapper, LeavesOutWhatIsNoFile)
{
    const TemporaryFolder folders;
    folders.write("doc.rtfd/TXT.rtf", "text");
    fs::create_symlink("/etc/passwd", folders.path() / "doc.rtfd" / "link");
    ASSERT_EQ(mkfifo((folders.path() / "doc.rtfd" / "pipe").c_str(), 0600), 0);
    const auto read = readFileWrapper(folders.path("doc.rtfd"));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->members.size(), 1U);
    EXPECT_FALSE(readFileWrapper(folders.path("nothing")));
}

} // namespace
} // namespace caddis
