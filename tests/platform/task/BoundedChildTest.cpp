#include "platform/task/BoundedChild.h"

#include "platform/base/Descriptor.h"
#include "platform/files/FileSystem.h"
#include "support/TemporaryFolder.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <thread>

namespace caddis {
namespace {

using Outcome = ChildResult::Outcome;
using namespace std::chrono_literals;

ChildResult shell(const std::string& script, const ScratchFolder& scratch, const ChildLimits& limits = {},
    std::chrono::milliseconds deadline = 10s)
{
    return runBounded({ "/bin/sh", "-c", script }, scratch, limits, deadline);
}

// Whether the process is gone: killed children of a killed program are reaped by init at some moment.
bool ends(pid_t process)
{
    for (int tries = 0; tries < 200; ++tries) {
        std::ifstream status("/proc/" + std::to_string(process) + "/stat");
        std::string number;
        std::string name;
        std::string state;
        if (!(status >> number >> name >> state) || state == "Z")
            return true;
        std::this_thread::sleep_for(10ms);
    }
    return false;
}

TEST(BoundedChild, WorksInAFolderOfItsOwnThatGoesWithIt)
{
    String folder;
    {
        const ScratchFolder scratch;
        folder = scratch.path();
        const auto result = shell("pwd; echo $TMPDIR; echo $HOME; echo kept > note", scratch);
        const std::string path = folder.utf8() + "\n";
        EXPECT_TRUE(result.succeeded());
        EXPECT_EQ(result.output, path + path + path);
        EXPECT_TRUE(FileSystem::exists(scratch.pathOf(String(u"note"))));
    }
    EXPECT_FALSE(FileSystem::exists(folder));
}

TEST(BoundedChild, WritesNowhereElseAndOpensNoSocket)
{
    const TemporaryFolder outside;
    const std::string file = outside.write("a", "kept").utf8();
    const ScratchFolder scratch;
    for (const std::string& deed : { "echo x > " + file, "rm " + file, "chmod 777 " + file,
             "mkdir " + file + ".d", std::string("cp -p /bin/true own; ./own") })
        EXPECT_FALSE(shell(deed, scratch).succeeded()) << deed;
    EXPECT_EQ(std::filesystem::file_size(file), 4U);
    EXPECT_FALSE(std::filesystem::exists(file + ".d"));
    const auto network = runBounded(
        { "/usr/bin/python3", "-c", "import socket; socket.create_connection(('127.0.0.1', 9))" }, scratch);
    EXPECT_NE(network.errorOutput.find("Operation not permitted"), std::string::npos) << network.errorOutput;
}

TEST(BoundedChild, SeesNeitherDescriptorsNorVariablesOfItsParent)
{
    const ScratchFolder scratch;
    const Descriptor inheritable(open("/dev/null", O_RDONLY));
    setenv("CADDIS_TEST_SECRET", "secret", 1);
    const auto result = shell("ls /proc/$$/fd; echo [$CADDIS_TEST_SECRET]", scratch);
    unsetenv("CADDIS_TEST_SECRET");
    EXPECT_EQ(result.output, "0\n1\n2\n[]\n");
}

TEST(BoundedChild, IsKilledWithAllThatItStartedWhenItsTimeIsUp)
{
    const ScratchFolder scratch;
    const auto start = std::chrono::steady_clock::now();
    const auto result = shell("sleep 60 & echo $!; wait", scratch, {}, 300ms);
    EXPECT_EQ(result.outcome, Outcome::TimedOut);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    EXPECT_TRUE(ends(std::stoi(result.output)));
}

TEST(BoundedChild, LeavesNothingInTheBackground)
{
    const ScratchFolder scratch;
    const auto result = shell("sleep 60 & echo $!", scratch);
    EXPECT_TRUE(result.succeeded());
    EXPECT_TRUE(ends(std::stoi(result.output)));
}

TEST(BoundedChild, EndsAtItsLimits)
{
    const ScratchFolder scratch;
    const auto busy = shell("while :; do :; done", scratch, { .processorTime = 1s }, 90s);
    EXPECT_EQ(busy.outcome, Outcome::Signalled);
    const auto writer = shell("exec head -c 2000000 /dev/zero > big", scratch, { .fileSize = 1 << 20 });
    EXPECT_FALSE(writer.succeeded());
    EXPECT_EQ(FileSystem::sizeOfFile(scratch.pathOf(String(u"big"))), 1U << 20);
    const auto greedy = shell("exec tail /dev/zero", scratch, { .memory = 64 << 20 });
    EXPECT_FALSE(greedy.succeeded());
    EXPECT_NE(greedy.outcome, Outcome::TimedOut);
}

TEST(BoundedChild, DrainsWhatTheProgramSaysWhileFeedingIt)
{
    ChildCommand command;
    command.arguments = { "/bin/cat" };
    command.input.assign(1 << 20, 'x');
    EXPECT_EQ(runChild(command).output, command.input);
    command.mostOutput = 1000;
    EXPECT_EQ(runChild(command).outcome, Outcome::TooMuchOutput);
    command.arguments = { "/bin/true" };
    EXPECT_TRUE(runChild(command).succeeded()) << "a program that reads nothing";
}

TEST(BoundedChild, SaysThatThereIsNoSuchProgram)
{
    const ScratchFolder scratch;
    EXPECT_EQ(runBounded({ "/nothing/here" }, scratch).status, 127);
    EXPECT_FALSE(installedProgram("no-such-program"));
    EXPECT_TRUE(installedProgram("sh"));
}

} // namespace
} // namespace caddis
