#include "markup/MarkDown.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(MarkDown, TellsItsFilesByTheirExtension)
{
    ASSERT_EQ(MarkDownFileTypes().size(), 18U);
    for (const std::u16string_view type : MarkDownFileTypes())
        EXPECT_TRUE(isMarkDownExtension(type));
    EXPECT_TRUE(isMarkDownFile(u"/a/Read me.MarkDown"_s));
    for (const auto* path : { u"/a/md", u"/a/b.md/c", u"b.mdx", u"b.txt", u"" })
        EXPECT_FALSE(isMarkDownFile(String(path)));
}

TEST(MarkDown, TellsTextBundlesByTheirExtension)
{
    EXPECT_EQ(TextBundleFileTypes()[3], u"TEXTPACK");
    EXPECT_TRUE(isTextBundleFile(u"/a/Note.TextBundle/"_s));
    EXPECT_TRUE(isTextBundleFile(u"Note.textpack"_s));
    EXPECT_FALSE(isTextBundleFile(u"Note.textpacks"_s));
    EXPECT_FALSE(isTextBundleExtension(u""));
}

} // namespace
} // namespace caddis
