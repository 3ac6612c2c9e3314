// A seeded stream of damaged messages over real sockets, with stray descriptors and broken handshakes: what
// the fuzz target cannot reach. The server has to come out of it alive, and with nothing left over.

#include "platform/ipc/Message.h"
#include "platform/ipc/Wire.h"
#include "support/RawSocket.h"
#include "support/TestServer.h"

#include <dbus/dbus.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <random>

namespace caddis {
namespace {

using std::chrono::steady_clock;

constexpr auto Duration = std::chrono::seconds(2);

std::string request(const char* member, const char* signature, const Arguments& arguments)
{
    const MessagePointer message(dbus_message_new_method_call(nullptr, "/Test", "org.caddis.Test", member));
    dbus_message_set_serial(message.get(), 3);
    wire::write(message.get(), signature, arguments, wire::Descriptors::None);
    char* bytes = nullptr;
    int size = 0;
    dbus_message_marshal(message.get(), &bytes, &size);
    std::string result(bytes, static_cast<std::size_t>(size));
    dbus_free(bytes);
    return result;
}

class Attacker {
public:
    explicit Attacker(std::filesystem::path socket)
        : m_path(std::move(socket))
    {
    }

    // One connection: a handshake that is mostly right, and messages that mostly are not.
    void attack()
    {
        const Descriptor socket = connectedSocket(m_path);
        if (!socket.isOpen())
            return;
        std::string handshake = authentication() + "NEGOTIATE_UNIX_FD\r\n";
        if (oneIn(8))
            damage(handshake);
        sendRaw(socket, handshake);
        char answer[256];
        const timeval patience { .tv_sec = 0, .tv_usec = 20'000 };
        setsockopt(socket.number(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        if (recv(socket.number(), answer, sizeof answer, 0) <= 0 || !sendRaw(socket, "BEGIN\r\n"))
            return;
        for (std::size_t count = below(6); count > 0; --count) {
            std::string message = m_requests[below(m_requests.size())];
            if (!oneIn(4))
                damage(message);
            const std::vector<int> strays(
                oneIn(3) ? below(40) : 0, oneIn(2) ? m_file.number() : m_folder.number());
            if (!message.empty() && !sendRaw(socket, message, strays))
                return;
        }
    }

private:
    std::size_t below(std::size_t bound) { return m_random() % bound; }
    bool oneIn(std::size_t count) { return below(count) == 0; }

    void damage(std::string& bytes)
    {
        for (std::size_t count = 1 + below(3); count > 0 && !bytes.empty(); --count) {
            const std::size_t at = below(bytes.size());
            switch (below(4)) {
            case 0:
                bytes[at] = static_cast<char>(m_random());
                break;
            case 1:
                bytes[at] = static_cast<char>(bytes[at] ^ 1 << below(8));
                break;
            case 2: // The lengths of the body and of the header's fields stand at 4 and 12.
                bytes[std::min(bytes.size() - 1, 4 + 8 * below(2) + below(4))]
                    = static_cast<char>(m_random());
                break;
            default:
                bytes.resize(at);
            }
        }
    }

    std::filesystem::path m_path;
    std::minstd_rand m_random { 1 };
    Descriptor m_file { open("/etc/hostname", O_RDONLY | O_CLOEXEC) };
    Descriptor m_folder { open("/", O_RDONLY | O_CLOEXEC) };
    const std::vector<std::string> m_requests {
        request("Echo", "v", { u"path"_s }),
        request("Echo", "v", { Array { 1, 2.5, Null(), Dictionary { { u"key"_s, Date { 1 } } } } }),
        request("Options", "vxb", { Data::copyOf("bytes"), 7, true }),
        request("Record", "(uay)", { Array { 5, Data::copyOf("abc") } }),
    };
};

TEST(Server, OutlivesDamagedMessages)
{
    const PrivateRuntimeDirectory directory;
    TestServer server;
    const auto good = server.connect();
    ASSERT_TRUE(good);
    const pid_t process = server.task().processIdentifier();
    const std::size_t open = openDescriptors(process);
    Attacker attacker(directory.path() / "Test");
    for (const auto start = steady_clock::now(); steady_clock::now() - start < Duration;)
        attacker.attack();
    EXPECT_EQ(Proxy(good, &TestProtocol).call("Echo", { 1 }), Value(1));
    // A connection that the attacker has closed is noticed with the next turns.
    for (int count = 0; count < 300 && openDescriptors(process) > open; ++count)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_LE(openDescriptors(process), open);
    EXPECT_LT(residentBytes(process), std::size_t(400) << 20);
}

} // namespace
} // namespace caddis
