#include "platform/files/Bookmark.h"
#include "platform/files/SecurityScopedAccess.h"

#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace caddis {
namespace {

std::optional<String> resolvedPath(const Data& bookmark)
{
    const auto resolved = URLByResolvingBookmarkData(bookmark);
    EXPECT_NE(resolved.url.has_value(), resolved.error.has_value());
    return resolved.url ? resolved.url->path() : std::nullopt;
}

TEST(Bookmark, LeadsBackToTheFile)
{
    const TemporaryFolder folder;
    const String file = folder.write("a/b/book \xC3\xBC%.epub", "x");
    const auto bookmark = bookmarkDataForPath(file);
    ASSERT_TRUE(bookmark);
    const auto resolved = URLByResolvingBookmarkData(*bookmark);
    ASSERT_TRUE(resolved.url);
    EXPECT_EQ(resolved.url->path(), file);
    EXPECT_FALSE(resolved.isStale);
    EXPECT_FALSE(bookmarkDataForPath(folder.path("none")));
    EXPECT_FALSE(bookmarkDataForPath(u"relative"_s));
    EXPECT_FALSE(bookmarkDataForPath(String(std::u16string_view(u"/tmp\0x", 6))));
}

TEST(Bookmark, FollowsRenamedFilesAndFolders)
{
    const TemporaryFolder folder;
    const auto bookmark = bookmarkDataForPath(folder.write("a/b/book.epub", "x"));
    std::filesystem::rename(folder.path() / "a/b/book.epub", folder.path() / "a/b/other.epub");
    EXPECT_EQ(resolvedPath(*bookmark), folder.path("a/b/other.epub"));
    std::filesystem::rename(folder.path() / "a", folder.path() / "z");
    EXPECT_EQ(resolvedPath(*bookmark), folder.path("z/b/other.epub"));
    EXPECT_TRUE(URLByResolvingBookmarkData(*bookmark).isStale);
    folder.write("z/b/book.epub", "the old name, another file");
    EXPECT_EQ(resolvedPath(*bookmark), folder.path("z/b/other.epub"));
    std::filesystem::remove(folder.path() / "z/b/other.epub");
    EXPECT_EQ(resolvedPath(*bookmark), folder.path("z/b/book.epub"));
    std::filesystem::remove_all(folder.path() / "z");
    EXPECT_EQ(resolvedPath(*bookmark), std::nullopt);
}

TEST(Bookmark, RefusesDamagedData)
{
    const TemporaryFolder folder;
    const auto bookmark = bookmarkDataForPath(folder.write("book.epub", "x"));
    const std::string bytes(bookmark->chars());
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_EQ(resolvedPath(Data::copyOf(bytes.substr(0, length))), std::nullopt) << length;
    std::string flipped = bytes;
    flipped[20] = static_cast<char>(flipped[20] ^ 1);
    EXPECT_EQ(URLByResolvingBookmarkData(Data::adopt(flipped)).error, u"The bookmark data is damaged."_s);
}

void append(std::string& out, std::initializer_list<std::uint32_t> numbers)
{
    for (const std::uint32_t number : numbers)
        out.append(reinterpret_cast<const char*>(&number), sizeof number);
}

// The other layout: header, first table's offset, two texts, their array, the table.
TEST(Bookmark, ReadsThePathOfBookData)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("b", "x").utf8(); // "/tmp/caddis-test-…/b"
    std::string body;
    append(body, { 0 });
    std::vector<std::uint32_t> texts;
    for (std::size_t from = 1, end = 0; end != path.npos; from = end + 1) {
        end = path.find('/', from);
        const std::string component = path.substr(from, end - from);
        texts.push_back(static_cast<std::uint32_t>(body.size()));
        append(body, { static_cast<std::uint32_t>(component.size()), 0x0101 });
        body += component;
    }
    const auto array = static_cast<std::uint32_t>(body.size());
    append(body, { static_cast<std::uint32_t>(4 * texts.size()), 0x0601 });
    for (const std::uint32_t text : texts)
        append(body, { text });
    const auto table = static_cast<std::uint32_t>(body.size());
    append(body, { 0, 0xFFFFFFFE, 1, table, 1, 0x1004, array, 0 }); // chained to itself
    body.replace(0, 4, reinterpret_cast<const char*>(&table), 4);
    const std::string data = "book" + std::string(44, '\0') + body;
    EXPECT_EQ(resolvedPath(Data::copyOf(data)), String::fromUtf8(path));
    for (std::size_t length = 48; length + 12 < data.size(); ++length)
        EXPECT_EQ(resolvedPath(Data::copyOf(data.substr(0, length))), std::nullopt) << length;
}

TEST(SecurityScopedAccess, StartsForWhatCanBeReadOrWritten)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(SecurityScopedAccess::start(URL::fileURLWithPath(folder.write("a", "x"))));
    EXPECT_TRUE(SecurityScopedAccess::start(URL::fileURLWithPath(folder.path("new.rtfd"))));
    EXPECT_FALSE(SecurityScopedAccess::start(URL::fileURLWithPath(folder.path("none/new.rtfd"))));
    EXPECT_FALSE(SecurityScopedAccess::start(*URL::fromString(u"http://example.org/tmp"_s)));
    EXPECT_FALSE(SecurityScopedAccess::start(*URL::fromString(u"file:///%zz"_s)));
}

} // namespace
} // namespace caddis
