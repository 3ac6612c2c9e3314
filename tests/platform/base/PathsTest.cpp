#include "platform/base/Paths.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

struct Row {
    const char16_t* path;
    const char16_t* lastComponent;
    const char16_t* extension;
    const char16_t* withoutLast;
    const char16_t* withoutExtension;
};

constexpr Row rows[] = {
    { u"/tmp/a.tar.gz", u"a.tar.gz", u"gz", u"/tmp", u"/tmp/a.tar" },
    { u"/tmp/a.rtfd//", u"a.rtfd", u"rtfd", u"/tmp", u"/tmp/a" },
    { u"/tmp", u"tmp", u"", u"/", u"/tmp" },
    { u"/", u"/", u"", u"/", u"/" },
    { u"//", u"/", u"", u"/", u"/" },
    { u"", u"", u"", u"", u"" },
    { u"a.txt", u"a.txt", u"txt", u"", u"a" },
    { u"/b//.hidden", u".hidden", u"", u"/b", u"/b//.hidden" },
    { u"/b.c/ends.", u"ends.", u"", u"/b.c", u"/b.c/ends." },
    { u"a..tiff", u"a..tiff", u"tiff", u"", u"a." },
};

TEST(Paths, AreTakenApartByTheirLastComponent)
{
    for (const Row& row : rows) {
        const String path(row.path);
        EXPECT_EQ(lastPathComponent(path), row.lastComponent) << readable(path);
        EXPECT_EQ(pathExtension(path), row.extension) << readable(path);
        EXPECT_EQ(stringByDeletingLastPathComponent(path), row.withoutLast) << readable(path);
        EXPECT_EQ(stringByDeletingPathExtension(path), row.withoutExtension) << readable(path);
    }
    const String plain = u"/tmp/plain"_s;
    EXPECT_TRUE(stringByDeletingPathExtension(plain).isIdenticalTo(plain));
}

TEST(Paths, AreJoinedWithOneSlash)
{
    EXPECT_EQ(stringByAppendingPathComponent(u"/tmp"_s, u"a"), u"/tmp/a");
    EXPECT_EQ(stringByAppendingPathComponent(u"/tmp//"_s, u"/a/b/"), u"/tmp/a/b");
    EXPECT_EQ(stringByAppendingPathComponent(u"/"_s, u"a"), u"/a");
    EXPECT_EQ(stringByAppendingPathComponent(String(), u"a"), u"a");
    EXPECT_EQ(stringByAppendingPathComponent(u"/tmp/"_s, u""), u"/tmp");
    EXPECT_EQ(stringByAppendingPathComponent(u"/"_s, u"/"), u"/");
}

} // namespace
} // namespace caddis
