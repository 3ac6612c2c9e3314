#include "platform/ipc/Server.h"

#include "platform/ipc/Message.h"
#include "platform/ipc/RuntimeDirectory.h"
#include "support/LogCapture.h"
#include "support/RawSocket.h"
#include "support/TestServer.h"
#include "support/Text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <dbus/dbus.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>

namespace caddis {
namespace {

using namespace std::string_literals;
using std::chrono::milliseconds;

std::string requestForZeros(std::int64_t count)
{
    const MessagePointer message(dbus_message_new_method_call(nullptr, "/Test", "org.caddis.Test", "Zeros"));
    dbus_message_append_args(message.get(), DBUS_TYPE_INT64, &count, DBUS_TYPE_INVALID);
    dbus_message_set_serial(message.get(), 5);
    char* bytes = nullptr;
    int size = 0;
    dbus_message_marshal(message.get(), &bytes, &size);
    std::string result(bytes, std::size_t(size));
    dbus_free(bytes);
    return result;
}

bool hangsUpWithin(const Descriptor& socket, int timeout)
{
    pollfd wanted { socket.number(), POLLIN, 0 };
    char byte = 0;
    return poll(&wanted, 1, timeout) == 1 && recv(socket.number(), &byte, 1, 0) <= 0;
}

// What a command prints, both streams; the placeholder SOCKET stands for the server's address.
std::string outputOf(const PrivateRuntimeDirectory& directory, std::string command)
{
    const auto at = command.find("SOCKET");
    command.replace(at, 6, "unix:path=" + (directory.path() / "Test").native());
    std::string output;
    FILE* pipe = popen((command + " 2>&1").c_str(), "re");
    std::array<char, 256> text {};
    while (fgets(text.data(), text.size(), pipe))
        output += text.data();
    pclose(pipe);
    return output;
}

TEST(Server, AnswersTheToolsOfTheDesktop)
{
    const PrivateRuntimeDirectory directory;
    const TestServer server;
    ASSERT_TRUE(server.connect());
    const auto run = [&](const char* command) { return outputOf(directory, command); };
    EXPECT_EQ(
        run("busctl --address=SOCKET call x.y /Test org.caddis.Test Echo v s hello"), "av 1 s \"hello\"\n");
    EXPECT_EQ(
        run("busctl --address=SOCKET call x.y /Test org.caddis.Test Echo v '(sv)' nil b false"), "av 0\n");
    EXPECT_NE(run("busctl --address=SOCKET introspect x.y /Test").find("Echo"), std::string::npos);
    EXPECT_EQ(
        run("gdbus call --address SOCKET --dest x.y --object-path /Test --method org.caddis.Test.Echo '<5>'"),
        "([<int64 5>],)\n");
    EXPECT_NE(run("dbus-send --peer=SOCKET --print-reply /Test org.caddis.Test.Echo variant:int32:5")
                  .find("int64 5"),
        std::string::npos);
    EXPECT_NE(run("busctl --address=SOCKET call x.y /Test org.caddis.Test Echo v '(sv)' odd b false")
                  .find("a tag is unknown"),
        std::string::npos);
}

TEST(Server, OfEightStartedAtOnceOneHasTheName)
{
    const PrivateRuntimeDirectory directory;
    for (int round = 0; round < 20; ++round) {
        std::vector<std::unique_ptr<Task>> tasks;
        for (int count = 0; count < 8; ++count) {
            tasks.push_back(
                std::make_unique<Task>(String::fromUtf8(CADDIS_TEST_SERVER), std::vector { u"Test"_s }));
            tasks.back()->launch();
        }
        for (int count = 0; count < 500 && !Connection::lookup(u"Test"_s, 5); ++count)
            std::this_thread::sleep_for(milliseconds(5));
        std::size_t running = 8;
        for (int count = 0; count < 500 && running > 1; ++count) {
            std::this_thread::sleep_for(milliseconds(2));
            running = std::size_t(std::ranges::count_if(tasks, [](auto& task) { return task->isRunning(); }));
        }
        EXPECT_EQ(running, 1U);
        EXPECT_TRUE(Connection::lookup(u"Test"_s, 5));
        for (const auto& task : tasks) {
            // The winner without a warning, so that the next round meets what a crash leaves behind.
            if (task->isRunning())
                kill(task->processIdentifier(), SIGKILL);
            else
                EXPECT_EQ(task->terminationStatus(), 3);
            task->waitUntilExit();
        }
    }
}

TEST(Server, DropsClientsThatDoNotAuthenticate)
{
    const PrivateRuntimeDirectory directory;
    const TestServer server;
    const auto good = server.connect();
    const Descriptor silent = connectedSocket(directory.path() / "Test");
    const Descriptor halfway = connectedSocket(directory.path() / "Test");
    EXPECT_TRUE(sendRaw(halfway, "\0AUTH EXTERNAL\r\n"s));
    const Descriptor babbling = connectedSocket(directory.path() / "Test");
    EXPECT_TRUE(sendRaw(babbling, "GET / HTTP/1.0\r\n\r\n"));
    EXPECT_TRUE(hangsUpWithin(babbling, 1000));
    EXPECT_FALSE(hangsUpWithin(silent, 4000));
    EXPECT_TRUE(hangsUpWithin(silent, 3000));
    EXPECT_TRUE(good->isValid());
    EXPECT_EQ(Proxy(good, &TestProtocol).call("Echo", { 1 }), Value(1));
}

TEST(Server, DoesNotPileUpAnswersThatNobodyTakes)
{
    const PrivateRuntimeDirectory directory;
    TestServer server;
    const auto good = server.connect();
    ASSERT_TRUE(good);
    const Descriptor greedy = connectedSocket(directory.path() / "Test");
    EXPECT_TRUE(sendRaw(greedy, authentication() + "BEGIN\r\n"));
    const std::string request = requestForZeros(100'000);
    for (int count = 0; count < 2000; ++count)
        EXPECT_TRUE(sendRaw(greedy, request));
    std::this_thread::sleep_for(milliseconds(200));
    EXPECT_EQ(Proxy(good, &TestProtocol).call("Echo", { 1 }), Value(1));
    EXPECT_LT(residentBytes(server.task().processIdentifier()), 40U << 20);
}

TEST(Server, RefusesWhatIsNoPrivatePlaceForAName)
{
    const LogCapture logged;
    const PrivateRuntimeDirectory directory;
    EXPECT_TRUE(NameLock::acquire(u"Test"_s));
    EXPECT_FALSE(NameLock::acquire(u"a/b"_s) || NameLock::acquire(u".hidden"_s) || NameLock::acquire(u""_s));
    chmod(directory.path().c_str(), 0755);
    EXPECT_FALSE(NameLock::acquire(u"Test"_s));
    chmod(directory.path().c_str(), 0700);
    std::filesystem::create_directory_symlink(directory.path(), directory.path() / "link");
    setenv("CADDIS_RUNTIME_DIR", (directory.path() / "link").c_str(), 1);
    EXPECT_FALSE(NameLock::acquire(u"Test"_s));
    setenv("CADDIS_RUNTIME_DIR", (directory.path() / std::string(100, 'x')).c_str(), 1);
    EXPECT_FALSE(NameLock::acquire(u"Test"_s));
    ASSERT_EQ(logged.lines().size(), 3U);
    EXPECT_TRUE(logged.lines()[0].view().ends_with(u": not a private directory of this user"));
    EXPECT_TRUE(logged.lines()[2].view().ends_with(u": too long for a socket"));
}

} // namespace
} // namespace caddis
