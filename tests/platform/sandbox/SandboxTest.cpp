#include "platform/sandbox/Sandbox.h"

#include "support/TemporaryFolder.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>

namespace caddis {
namespace {

// The error of each deed in a child process that has entered the reader's profile; 0 for one that succeeds.
std::vector<int> errorsOf(const std::string& scratch, const std::vector<std::function<bool()>>& deeds)
{
    int ends[2] = {};
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        if (!Sandbox::forReader(scratch).enter())
            _exit(1);
        for (const auto& deed : deeds) {
            errno = 0;
            const int error = deed() ? 0 : errno;
            if (write(ends[1], &error, sizeof error) != sizeof error)
                _exit(2);
        }
        _exit(0);
    }
    close(ends[1]);
    std::vector<int> errors(deeds.size(), -1);
    for (int& error : errors)
        EXPECT_EQ(read(ends[0], &error, sizeof error), ssize_t(sizeof error));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return errors;
}

bool canOpen(const std::string& path, int flags) { return open(path.c_str(), flags, S_IRUSR | S_IWUSR) >= 0; }

class SandboxTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (Sandbox::landlockVersion() == 0)
            GTEST_SKIP() << "this kernel has no Landlock";
        std::filesystem::create_directory(scratch);
    }

    TemporaryFolder folder;
    std::string file = folder.write("outside", "text").utf8();
    std::string scratch = (folder.path() / "scratch").string();
};

TEST_F(SandboxTest, ReadsEverywhereAndWritesInItsScratchFolderOnly)
{
    const std::string inside = scratch + "/a";
    EXPECT_EQ(errorsOf(scratch,
                  { [&] { return canOpen(file, O_RDONLY); }, [&] { return canOpen("/etc/passwd", O_RDONLY); },
                      [&] { return canOpen(inside, O_WRONLY | O_CREAT); },
                      [&] { return mkdir((scratch + "/d").c_str(), S_IRWXU) == 0; },
                      [&] { return rename(inside.c_str(), (scratch + "/d/b").c_str()) == 0; },
                      [&] { return unlink((scratch + "/d/b").c_str()) == 0; },
                      [&] { return canOpen("/dev/null", O_RDWR); } }),
        std::vector(7, 0));
    const auto errors = errorsOf(scratch,
        { [&] { return canOpen(file, O_RDWR); }, [&] { return canOpen(file + "2", O_WRONLY | O_CREAT); },
            [&] { return unlink(file.c_str()) == 0; },
            [&] { return rename(file.c_str(), (scratch + "/a").c_str()) == 0; },
            [&] { return symlink("/", (file + "3").c_str()) == 0; },
            [&] { return mkdir((file + "4").c_str(), S_IRWXU) == 0; },
            [&] { return truncate(file.c_str(), 0) == 0; }, [&] { return chmod(file.c_str(), 0777) == 0; },
            [&] { return utimes(file.c_str(), nullptr) == 0; } });
    for (const int error : errors)
        EXPECT_TRUE(error == EACCES || error == EPERM || error == EXDEV) << std::strerror(error);
    EXPECT_EQ(std::filesystem::file_size(file), 4U);
}

TEST_F(SandboxTest, OpensNoSocketAndStartsInstalledProgramsOnly)
{
    const std::string copy = scratch + "/true";
    std::filesystem::copy_file("/bin/true", copy);
    const auto execute = [](const char* program) {
        const pid_t child = vfork();
        if (child == 0) {
            execl(program, program, nullptr);
            _exit(errno);
        }
        int status = 0;
        waitpid(child, &status, 0);
        errno = WEXITSTATUS(status);
        return status == 0;
    };
    EXPECT_EQ(errorsOf(scratch,
                  { [] { return socket(AF_INET, SOCK_STREAM, 0) >= 0; },
                      [] { return socket(AF_INET, SOCK_DGRAM, 0) >= 0; },
                      [] { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; },
                      [] { return socket(AF_NETLINK, SOCK_RAW, 0) >= 0; },
                      [] { return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0; },
                      [] { return syscall(SYS_bpf, 0, nullptr, 0) == 0; },
                      [&] { return execute(copy.c_str()); }, [&] { return execute("/bin/true"); } }),
        std::vector({ EPERM, EPERM, EPERM, EPERM, EPERM, EPERM, EACCES, 0 }));
}

TEST_F(SandboxTest, HoldsWithoutAScratchFolder)
{
    EXPECT_EQ(errorsOf("", { [&] { return canOpen(scratch + "/a", O_WRONLY | O_CREAT); } }),
        std::vector { EACCES });
}

} // namespace
} // namespace caddis
