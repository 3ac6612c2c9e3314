// Workers on a real queue: a nats-server of our own on a port of the loopback.

#include "support/PrivateRuntimeDirectory.h"
#include "support/Run.h"
#include "support/TemporaryFolder.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace caddis::tool {
namespace {

// A port that was free a moment ago.
int freePort()
{
    const int probe = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const place = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(probe, place, size), 0);
    EXPECT_EQ(getsockname(probe, place, &size), 0);
    close(probe);
    return ntohs(address.sin_port);
}

class WorkerTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (run("command -v nats-server").status != 0)
            GTEST_SKIP() << "no nats-server is installed";
        start();
    }
    ~WorkerTest() override { shell("kill $(cat " + folder + "/server.pid)"); }

    static Outcome shell(const std::string& command) { return run(command); }
    void start() const
    {
        shell("nats-server -js -a 127.0.0.1 -p " + port + " -sd " + folder + "/store -P " + folder
            + "/server.pid > " + folder + "/server.log 2>&1 & for i in $(seq 100); do grep -q 'ready$' "
            + folder + "/server.log && break; sleep 0.05; done");
    }
    std::string enqueue(const std::string& arguments) const
    {
        return CADDIS_TOOL " enqueue --quiet --nats nats://127.0.0.1:" + port + ' ' + arguments;
    }
    std::string worker(const std::string& arguments) const
    {
        return CADDIS_TOOL " worker --jobs 1 --patience 2 --nats nats://127.0.0.1:" + port + " --out "
            + folder + "/results " + arguments;
    }
    std::string results() const
    {
        return shell("find " + folder + "/results -name '*.json' | wc -l | tr -d '\\n'").output;
    }
    // Distinct files in the results with an outcome.
    std::string filesWith(const std::string& outcome) const
    {
        return shell("cat $(find " + folder + "/results -name '*.json') | grep '\"outcome\": \"" + outcome
            + "\"' | grep -o '\"file\": \"[^\"]*\"' | sort -u | wc -l | tr -d '\\n'")
            .output;
    }
    void makeBooks(int count) const
    {
        for (int index = 0; index < count; ++index)
            std::filesystem::copy_file(CADDIS_TEST_DATA "/lighthouse.epub",
                files.path() / ("book" + std::to_string(index) + ".epub"));
    }

    PrivateRuntimeDirectory directory;
    TemporaryFolder home;
    TemporaryFolder files;
    std::string folder = home.path().string();
    std::string port = std::to_string(freePort());
};

TEST_F(WorkerTest, WorkersShareAQueue)
{
    makeBooks(60);
    EXPECT_EQ(shell(enqueue(files.path().string())).status, 0);
    EXPECT_EQ(shell(enqueue(files.path().string())).status, 0) << "twice: the second is dropped";
    const Outcome both = shell(
        worker("--drain") + " & " + worker("--drain") + "; status=$?; wait $!; exit $((status + $?))");
    EXPECT_EQ(both.status, 0) << both.output;
    EXPECT_EQ(filesWith("ok"), "60");
    EXPECT_EQ(results(), "60");
    EXPECT_NE(both.output.find(" 0 dead"), std::string::npos) << both.output;
}

TEST_F(WorkerTest, NothingIsLostWhenAWorkerAndTheServerAreKilled)
{
    makeBooks(400);
    EXPECT_EQ(shell(enqueue(files.path().string())).status, 0);
    const Outcome killed = shell("(" + worker("--quiet") + ") & first=$!; while [ $(find " + folder
        + "/results -name '*.json' 2>/dev/null | wc -l) -lt 20 ]; do sleep 0.02; done; "
        + "pkill -KILL -P $first; kill -KILL $first; kill -KILL $(cat " + folder + "/server.pid)");
    start();
    const Outcome rest = shell(worker("--drain"));
    EXPECT_EQ(rest.status, 0) << rest.output << killed.output;
    EXPECT_EQ(filesWith("ok"), "400");
    EXPECT_EQ(results(), "400");
}

TEST_F(WorkerTest, AJobThatNoWorkerCanFinishIsPutAside)
{
    makeBooks(1);
    EXPECT_EQ(shell(enqueue(files.path().string())).status, 0);
    // A worker that can't store its result ends without acknowledging.
    for (int count = 0; count < 2; ++count) {
        shell("touch " + folder + "/results"); // No folder.
        EXPECT_EQ(shell(worker("--quiet")).status, 3);
    }
    shell("rm " + folder + "/results");
    const Outcome last = shell(worker("--drain --deliveries 2"));
    EXPECT_EQ(last.status, 0) << last.output;
    EXPECT_NE(last.output.find(" 1 dead"), std::string::npos) << last.output;
    EXPECT_EQ(filesWith("crashed"), "1");
}

} // namespace
} // namespace caddis::tool
