#include "platform/script/ScriptText.h"

#include "support/TemporaryFolder.h"
#include "support/Text.h"

namespace caddis {
namespace {

TEST(ScriptText, ReadsEveryEncodingThatScriptsAreSavedIn)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(decodeScript("say \"\xC3\xA4\""), u"say \"ä\""_s);
    EXPECT_EQ(decodeScript("\xEF\xBB\xBFsay"), u"say"_s);
    EXPECT_EQ(decodeScript("a \xC2\r"), u"a ¬\r"_s);
    EXPECT_EQ(decodeScript("\xFE\xFF\0a\0\xE4"sv), u"aä"_s);
    EXPECT_EQ(decodeScript("\xFF\xFE"
                           "a\0\xE4\0"sv),
        u"aä"_s);
    EXPECT_EQ(decodeScript("a\0b\0"sv), u"ab"_s);
    EXPECT_EQ(decodeScript(""), String());
}

TEST(ScriptText, FilesAndBundlesAreReadAndCompiledOnesRecognised)
{
    const TemporaryFolder folder;
    const auto plain = ScriptText::fromFile(folder.write("a.applescript", "return 1"));
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->text, u"return 1"_s);
    EXPECT_FALSE(plain->isCompiled());

    folder.write("b.scptd/Contents/Resources/Scripts/main.scpt", "FasdUAS 1.101.10\x0e");
    const auto bundle = ScriptText::fromFile(folder.path("b.scptd"));
    ASSERT_TRUE(bundle);
    EXPECT_TRUE(bundle->isCompiled());
    EXPECT_TRUE(bundle->text.isEmpty());
    EXPECT_TRUE(
        ScriptText::fromFile(folder.write("c.scpt", "#!/usr/bin/osascript\nFasdUAS 1"))->isCompiled());
    EXPECT_FALSE(ScriptText::fromFile(folder.path("absent.scpt")));
}

} // namespace
} // namespace caddis
