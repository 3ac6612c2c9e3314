// Server and Connection beside the same exchange by hand over a bare socket, in the same run.

#include "platform/ipc/Connection.h"
#include "platform/ipc/SharedBytes.h"
#include "platform/ipc/Task.h"

#include <array>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>

namespace {

using namespace caddis;

constexpr std::size_t LargeBytes = 300 << 20;
constexpr RemoteMember Ping { "Ping", "", "" };
constexpr RemoteMember Take { "Take", "v", "av" };
constexpr RemoteMember Give { "Give", "", "av" };

struct RuntimeDirectory {
    RuntimeDirectory()
    {
        path = mkdtemp(path.data());
        setenv("CADDIS_RUNTIME_DIR", path.c_str(), 1);
    }
    ~RuntimeDirectory() { std::filesystem::remove_all(path); }
    std::string path = std::filesystem::temp_directory_path() / "caddis-bench-XXXXXX";
};

void prepare() { static const RuntimeDirectory directory; }

// A program that is ended with the benchmark.
struct Program {
    explicit Program(const char* path, std::vector<String> arguments = {})
        : task(String::fromUtf8(path), std::move(arguments))
    {
        prepare();
        task.launch();
    }
    ~Program()
    {
        task.terminate();
        task.waitUntilExit();
    }
    Task task;
};

std::shared_ptr<Connection> connectTo(const char16_t* name)
{
    std::shared_ptr<Connection> connection;
    while (!(connection = Connection::lookup(String(name), 10)))
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    return connection;
}

std::optional<Value> call(Connection& connection, const RemoteMember& member, const Arguments& arguments = {})
{
    return connection.call("/Peer", "org.caddis.Peer", member, arguments);
}

std::uint64_t sumOf(std::span<const std::uint8_t> bytes)
{
    return std::accumulate(bytes.begin(), bytes.end(), std::uint64_t(0));
}

void pingCaddis(benchmark::State& state)
{
    const Program server(CADDIS_BENCH_PEER);
    const auto connection = connectTo(u"Peer");
    for (auto _ : state)
        call(*connection, Ping);
}

// A child that answers byte by byte, over a socket pair.
struct EchoChild {
    EchoChild()
    {
        std::array<int, 2> ends {};
        if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0)
            std::abort();
        child = fork();
        if (child == 0) {
            close(ends[0]);
            char byte = 0;
            while (read(ends[1], &byte, 1) == 1 && write(ends[1], &byte, 1) == 1) { }
            _exit(0);
        }
        close(ends[1]);
        socket = Descriptor(ends[0]);
    }
    ~EchoChild()
    {
        socket = Descriptor();
        waitpid(child, nullptr, 0);
    }
    pid_t child;
    Descriptor socket;
};

void pingSocket(benchmark::State& state)
{
    const EchoChild echo;
    char byte = 0;
    for (auto _ : state) {
        if (write(echo.socket.number(), &byte, 1) != 1 || read(echo.socket.number(), &byte, 1) != 1)
            state.SkipWithError("no echo");
    }
}

void sendCaddis(benchmark::State& state)
{
    const Program server(CADDIS_BENCH_PEER);
    const auto connection = connectTo(u"Peer");
    const Value data = Data::adopt(std::vector<std::uint8_t>(LargeBytes, 1));
    for (auto _ : state)
        call(*connection, Take, { data });
}

void receiveCaddis(benchmark::State& state)
{
    const Program server(CADDIS_BENCH_PEER);
    const auto connection = connectTo(u"Peer");
    for (auto _ : state)
        benchmark::DoNotOptimize(sumOf(call(*connection, Give)->as<Data>()->span()));
}

// What cannot be saved: the bytes are written into a memory file once, and mapped and read once.
void writeAndMap(benchmark::State& state)
{
    const std::vector<std::uint8_t> bytes(LargeBytes, 1);
    for (auto _ : state) {
        const Descriptor file(memfd_create("floor", MFD_CLOEXEC));
        for (std::size_t done = 0; done < LargeBytes;) {
            const ssize_t wrote = write(file.number(), bytes.data() + done, LargeBytes - done);
            if (wrote <= 0)
                return state.SkipWithError("no memory");
            done += static_cast<std::size_t>(wrote);
        }
        void* pages = mmap(nullptr, LargeBytes, PROT_READ, MAP_PRIVATE, file.number(), 0);
        benchmark::DoNotOptimize(sumOf({ static_cast<const std::uint8_t*>(pages), LargeBytes }));
        munmap(pages, LargeBytes);
    }
}

void launchCaddis(benchmark::State& state)
{
    for (auto _ : state) {
        const Program server(CADDIS_BENCH_PEER);
        call(*connectTo(u"Peer"), Ping);
    }
}

// The least that a program launched to be talked to does: it connects and writes a byte.
void launchBare(benchmark::State& state)
{
    prepare();
    const std::string path = std::string(std::getenv("CADDIS_RUNTIME_DIR")) + "/floor";
    sockaddr_un address = { .sun_family = AF_UNIX, .sun_path = {} };
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const Descriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    unlink(path.c_str());
    if (bind(listener.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0
        || listen(listener.number(), 1) != 0)
        return state.SkipWithError("no socket");
    for (auto _ : state) {
        const Program program(CADDIS_BENCH_FLOOR, { String::fromUtf8(path) });
        const Descriptor accepted(accept(listener.number(), nullptr, nullptr));
        char byte = 0;
        if (read(accepted.number(), &byte, 1) != 1)
            state.SkipWithError("no byte");
    }
}

BENCHMARK(pingCaddis)->Name("ipc/ping/caddis")->UseRealTime();
BENCHMARK(pingSocket)->Name("ipc/ping/floor:socket")->UseRealTime();
BENCHMARK(sendCaddis)->Name("ipc/send-300MB/caddis")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(writeAndMap)->Name("ipc/send-300MB/floor:memfd")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(receiveCaddis)->Name("ipc/receive-300MB/caddis")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(writeAndMap)->Name("ipc/receive-300MB/floor:memfd")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(launchCaddis)->Name("ipc/launch/caddis")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(launchBare)->Name("ipc/launch/floor:spawn")->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
