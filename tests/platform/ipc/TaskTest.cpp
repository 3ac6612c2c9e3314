#include "platform/ipc/Task.h"

#include "platform/base/Exception.h"
#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace caddis {
namespace {

Task shell(const char* script) { return Task(u"/bin/sh"_s, { u"-c"_s, String::fromUtf8(script) }); }

TEST(Task, TellsHowAProgramEnded)
{
    Task three = shell("exit 3");
    EXPECT_FALSE(three.isRunning());
    EXPECT_TRUE(three.launch());
    EXPECT_EQ(three.waitUntilExit(), 3);
    EXPECT_FALSE(three.isRunning());
    EXPECT_THROW(three.launch(), Exception);

    Task sleeper = shell("exec sleep 60");
    EXPECT_TRUE(sleeper.launch());
    EXPECT_TRUE(sleeper.isRunning());
    EXPECT_EQ(sleeper.terminationStatus(), std::nullopt);
    sleeper.terminate();
    EXPECT_EQ(sleeper.waitUntilExit(), 128 + SIGTERM);
}

TEST(Task, AMissingProgramIsNotLaunched)
{
    Task missing(u"/nowhere/program"_s);
    EXPECT_FALSE(missing.launch());
    EXPECT_FALSE(missing.isRunning());
    EXPECT_FALSE(launchTaskAndWaitUntilExitWithLaunchPath(u"/nowhere/program"_s, {}));
    EXPECT_TRUE(launchTaskAndWaitUntilExitWithLaunchPath(u"/bin/true"_s, {}));
    EXPECT_FALSE(launchTaskAndWaitUntilExitWithLaunchPath(u"/bin/false"_s, {}));
}

TEST(Task, AnExceptionIsLoggedAndFailure)
{
    const LogCapture logged;
    Task done(u"/bin/true"_s);
    EXPECT_TRUE(launchAndWaitUntilExit(done));
    EXPECT_FALSE(launchAndWaitUntilExit(done));
    ASSERT_EQ(logged.lines().size(), 1U);
    EXPECT_TRUE(logged.lines()[0].view().starts_with(
        u"launchAndWaitUntilExit (NSTask): InvalidArgumentException\nthe task has been launched before\n"));
}

TEST(Task, GivesTheProgramItsSurroundingsAndNoMore)
{
    const TemporaryFolder folder;
    const std::string log = (folder.path() / "log").string();
    setenv("CADDIS_ONE", "1 2", 1);
    Task task = shell("exec >&2; echo \"$CADDIS_ONE\"; ls /proc/$$/fd; :");
    task.setStandardErrorToFile(log);
    EXPECT_TRUE(task.launch());
    EXPECT_EQ(task.waitUntilExit(), 0);
    std::ifstream file(log);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "1 2\n0\n1\n2\n");
}

TEST(Task, BackgroundWorkYields)
{
    Task task = shell("exec sleep 60");
    task.setQualityOfService(QualityOfService::Background);
    EXPECT_TRUE(task.launch());
    EXPECT_EQ(getpriority(PRIO_PROCESS, id_t(task.processIdentifier())), 10);
    EXPECT_EQ(sched_getscheduler(task.processIdentifier()), SCHED_IDLE);
    task.interrupt();
    EXPECT_NE(task.waitUntilExit(), 0);
}

} // namespace
} // namespace caddis
