#include "service/FileArgument.h"

#include "platform/files/Bookmark.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(FileArgument, IsAPathAURLOrBookmarkData)
{
    const TemporaryFolder folder;
    const String file = folder.write("a book.epub", "x");
    EXPECT_EQ(FileArgument(Value(file)).path(), file);
    EXPECT_EQ(FileArgument(Value(URL::fileURLWithPath(file))).path(), file);
    EXPECT_EQ(FileArgument(Value(*bookmarkDataForPath(file))).path(), file);
    EXPECT_EQ(FileArgument(Value(u"any text is a path"_s)).path(), u"any text is a path"_s);
}

TEST(FileArgument, IsNoPathWhenItIsAnythingElse)
{
    const LogCapture capture;
    const Value others[] = { 7, 1.5, true, Null {}, Array { u"/tmp"_s }, Dictionary(), Date() };
    for (const Value& other : others)
        EXPECT_EQ(FileArgument(other).path(), std::nullopt);
    EXPECT_EQ(FileArgument(std::nullopt).path(), std::nullopt);
    EXPECT_EQ(FileArgument(Value(URL::fileURLWithPath(u"/nowhere/at/all"_s))).path(), std::nullopt);
    EXPECT_EQ(FileArgument(Value(*URL::fromString(u"http://example.org/tmp"_s))).path(), std::nullopt);
    EXPECT_TRUE(capture.lines().empty());
}

TEST(FileArgument, LogsWhyABookmarkCannotBeResolved)
{
    const LogCapture capture;
    EXPECT_EQ(FileArgument(Value(Data::copyOf("no bookmark"))).path(), std::nullopt);
    EXPECT_EQ(FileArgument(Value(Data())).path(), std::nullopt);
    ASSERT_EQ(capture.lines().size(), 2U);
    EXPECT_EQ(capture.lines()[0], u"The bookmark data is damaged.");
}

} // namespace
} // namespace caddis
