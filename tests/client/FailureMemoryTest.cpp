#include "client/FailureMemory.h"

#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

const HelperRecord crash { .outcome = HelperOutcome::Crashed, .reason = u"a\tb\nc\\"_s, .signal = 11 };

TEST(FailureMemory, KnowsAFileUntilItOrTheSoftwareChanges)
{
    const TemporaryFolder folder;
    const std::string file = (folder.path() / "failures").string();
    const String odd = u"/tmp/two\nlines\tand \\ more"_s;
    {
        FailureMemory memory(file, u"1"_s);
        memory.add(odd, { 5, 7 }, u"info"_s, crash);
    }
    FailureMemory memory(file, u"1"_s);
    const auto found = memory.find(odd, { 5, 7 }, u"info"_s);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->outcome, HelperOutcome::Crashed);
    EXPECT_EQ(found->signal, 11);
    EXPECT_EQ(found->reason, crash.reason);
    EXPECT_FALSE(memory.find(odd, { 6, 7 }, u"info"_s));
    EXPECT_FALSE(memory.find(odd, { 5, 8 }, u"info"_s));
    EXPECT_FALSE(memory.find(odd, { 5, 7 }, u"text"_s));
    EXPECT_FALSE(FailureMemory(file, u"2"_s).find(odd, { 5, 7 }, u"info"_s));
}

TEST(FailureMemory, PassesOverLinesThatAreNone)
{
    const TemporaryFolder folder;
    folder.write("failures",
        "crashed\t9\t5\t7\t1\tinfo\t\t/a\nnonsense\ncrashed\tx\t5\t7\t1\tinfo\t\t/b\ncrashed\t9\t5");
    FailureMemory memory((folder.path() / "failures").string(), u"1"_s);
    EXPECT_TRUE(memory.find(u"/a"_s, { 5, 7 }, u"info"_s));
    EXPECT_FALSE(memory.find(u"/b"_s, { 5, 7 }, u"info"_s));
}

TEST(StateOfFile, IsNilForWhatNoHelperShouldOpen)
{
    const TemporaryFolder folder;
    String whyNot;
    EXPECT_EQ(stateOfFile(folder.write("a", "12345"), whyNot)->size, 5U);
    EXPECT_EQ(stateOfFile(folder.path("nowhere"), whyNot), std::nullopt);
    EXPECT_EQ(whyNot, u"No such file or directory"_s);
    EXPECT_EQ(stateOfFile(u"/dev/zero"_s, whyNot), std::nullopt);
    EXPECT_EQ(whyNot, u"neither a file nor a folder"_s);
}

} // namespace
} // namespace caddis
