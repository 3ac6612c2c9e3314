#include "service/ScriptCache.h"

#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <thread>

namespace caddis {
namespace {

class ScriptCache : public testing::Test {
protected:
    ScriptCache() { setUseCachingForStaticScripts(true); }
    ~ScriptCache() override { setUseCachingForStaticScripts(false); }

    static std::optional<String> text(const std::optional<EventDescriptor>& descriptor)
    {
        return descriptor ? descriptor->stringValue() : std::nullopt;
    }

    TemporaryFolder m_folder;
};

const String counter(u"property n : 0\non Count_()\nset n to n + 1\nreturn n\nend Count_");

TEST_F(ScriptCache, KeepsFilesUntilItIsCleared)
{
    const String path = m_folder.write("a.applescript", "on f()\n\"old\"\nend f");
    EXPECT_EQ(text(compileAndExecuteFile(path, u"F"_s, {})), u"old"_s);
    m_folder.write("a.applescript", "on f()\n\"new\"\nend f");
    EXPECT_EQ(text(compileAndExecuteFile(path, u"f"_s, {})), u"old"_s);
    clearCacheForStaticScripts();
    EXPECT_EQ(text(compileAndExecuteFile(path, u"f"_s, {})), u"new"_s);
    setUseCachingForStaticScripts(false);
    m_folder.write("a.applescript", "on f()\n\"newest\"\nend f");
    EXPECT_EQ(text(compileAndExecuteFile(path, u"f"_s, {})), u"newest"_s);
}

TEST_F(ScriptCache, OnlyStaticSourcesKeepTheirProperties)
{
    EXPECT_EQ(text(compileAndExecuteSource(counter, true, u"COUNT_"_s, {})), u"1"_s);
    EXPECT_EQ(text(compileAndExecuteSource(counter, true, u"count_"_s, {})), u"2"_s);
    EXPECT_EQ(text(compileAndExecuteSource(counter, false, u"count_"_s, {})), u"1"_s);
    EXPECT_EQ(text(compileAndExecuteSource(counter, false, u"count_"_s, {})), u"1"_s);
    EXPECT_EQ(compileAndExecuteSource(String(), true, u"f"_s, {}), std::nullopt);
    EXPECT_EQ(compileAndExecuteSource(counter, true, String(), {}), std::nullopt);
}

TEST_F(ScriptCache, LogsWhatDoesNotCompileLoadOrEndWell)
{
    const LogCapture log;
    EXPECT_FALSE(compileAndCacheSource(u"set to"_s));
    EXPECT_EQ(compileAndExecuteFile(m_folder.path("absent.scpt"), u"f"_s, {}), std::nullopt);
    EXPECT_EQ(compileAndExecuteFile(m_folder.write("c.scpt", "FasdUAS 1.101.10"), u"f"_s, {}), std::nullopt);
    EXPECT_EQ(compileAndExecuteSource(counter, true, u"Absent"_s, {}), std::nullopt);
    EXPECT_EQ(compileAndExecuteSource(u"1 / 0"_s, true), std::nullopt);
    ASSERT_EQ(log.lines().size(), 4U);
    EXPECT_TRUE(log.lines()[0].view().starts_with(u"Invalid script: set to\n{\n"));
    EXPECT_TRUE(
        log.lines()[1].view().starts_with(format(u"Invalid script: %@\n{", m_folder.path("absent.scpt"))));
    EXPECT_NE(log.lines()[2].view().find(u"NSAppleScriptErrorNumber = \"-1758\""), std::u16string_view::npos);
    EXPECT_TRUE(log.lines()[3].view().starts_with(u"on Absent: {\n"));
}

TEST_F(ScriptCache, WarnsOffTheMainThread)
{
    const LogCapture log;
    std::thread([] { setUseCachingForStaticScripts(true); }).join();
    ASSERT_EQ(log.lines().size(), 2U);
    EXPECT_EQ(
        log.lines()[0], u"WARNING: setUseCachingForStaticScripts: should be called from main thread."_s);
    EXPECT_TRUE(usesCachingForStaticScripts());
}

TEST_F(ScriptCache, RecognisesScriptFiles)
{
    EXPECT_EQ(AppleScriptTypes().size(), 8U);
    EXPECT_EQ(AppleScriptTypes().front(), u"'scpt'"_s);
    EXPECT_TRUE(isAppleScriptExtension(u"ScptD"_s, String()));
    EXPECT_TRUE(isAppleScriptExtension(String(), u"'osas'"_s));
    EXPECT_FALSE(isAppleScriptExtension(u"'scpt'"_s, u"'OSAS'"_s));
    EXPECT_TRUE(isTemplateScriptExtension(u"TemplateScript"_s));
    EXPECT_FALSE(isTemplateScriptExtension(u"scpt"_s));
    EXPECT_EQ(sourceAtPath(m_folder.write("a.applescript", "1")), u"1"_s);
    EXPECT_EQ(sourceAtPath(m_folder.write("a.txt", "1")), std::nullopt);
}

TEST_F(ScriptCache, BuildsTheEventThatCallsAHandler)
{
    const AppleEvent event = handlerCall(u"DoIt"_s, { EventDescriptor::withInt32(1) });
    EXPECT_EQ(event.eventClass, "ascr"_code);
    EXPECT_EQ(event.eventID, "psbr"_code);
    EXPECT_EQ(event.target.data(), Data::copyOf(std::string_view("\0\0\0\0\2\0\0\0", 8)));
    EXPECT_EQ(event.returnID, -1);
    EXPECT_EQ(event.parameter("snam"_code).stringValue(), u"doit"_s);
    EXPECT_EQ(event.parameter("----"_code).numberOfItems(), 1U);
}

} // namespace
} // namespace caddis
