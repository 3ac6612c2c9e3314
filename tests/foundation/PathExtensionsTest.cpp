#include "foundation/FileExtensions.h"
#include "foundation/URLExtensions.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(FileExtensions, TellWhatLiesInAFolder)
{
    EXPECT_EQ(relativePathToDirectory(u"/a/b/c.txt"_s, u"/a"_s), u"b/c.txt"_s);
    EXPECT_EQ(relativePathToDirectory(u"/a//b/./c/"_s, u"/a/"_s), u"b/c"_s);
    EXPECT_EQ(relativePathToDirectory(u"a/b"_s, u""_s), u"a/b"_s);
    EXPECT_TRUE(pathIsInDirectory(u"/x"_s, u"/"_s));
    for (const auto* path : { u"/a", u"/ab", u"/a/..", u"/a/../b", u"/a/b/../../c", u"a/b", u"" })
        EXPECT_FALSE(pathIsInDirectory(String(path), u"/a"_s)) << readable(path);
}

TEST(URLExtensions, CutTheAnchor)
{
    EXPECT_EQ(stringURLWithoutAnchor(u"a.xhtml#b#c"_s), u"a.xhtml");
    EXPECT_EQ(stringURLWithoutAnchor(u"#b"_s), u"");
    const String plain = u"a.xhtml"_s;
    EXPECT_TRUE(stringURLWithoutAnchor(plain).isIdenticalTo(plain));
}

} // namespace
} // namespace caddis
