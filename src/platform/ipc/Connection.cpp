#include "platform/ipc/Connection.h"

#include "platform/ipc/Message.h"
#include "platform/ipc/RuntimeDirectory.h"
#include "platform/ipc/Wire.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <dbus/dbus.h>
#include <new>
#include <sys/socket.h>

namespace caddis {

namespace {

using Clock = std::chrono::steady_clock;

// The longest single wait; whoever has no limit waits again.
constexpr int LongestWait = 60 * 1000;

std::atomic<Connection::DeathObserver> deathObserver;

[[noreturn]] void fail(std::u16string_view name, std::u16string_view reason)
{
    throw Exception(String(name), String(reason));
}

// The end of a wait, or none.
class Deadline {
public:
    explicit Deadline(double seconds)
        : m_limited(seconds > 0)
        , m_end(Clock::now() + std::chrono::microseconds(std::int64_t(std::min(seconds, 1e9) * 1e6)))
    {
    }
    bool hasPassed() const { return m_limited && Clock::now() >= m_end; }
    // Rounded up, so that the last wait does not become a busy loop.
    int milliseconds() const
    {
        if (!m_limited)
            return LongestWait;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_end - Clock::now()).count();
        return static_cast<int>(std::clamp<std::int64_t>(left, 0, LongestWait));
    }

private:
    bool m_limited;
    Clock::time_point m_end;
};

struct PendingRelease {
    void operator()(DBusPendingCall* call) const
    {
        dbus_pending_call_cancel(call);
        dbus_pending_call_unref(call);
    }
};

using PendingPointer = std::unique_ptr<DBusPendingCall, PendingRelease>;

bool isOfThisUser(DBusConnection* connection)
{
    int socket = -1;
    ucred peer = {};
    socklen_t size = sizeof peer;
    return dbus_connection_get_unix_fd(connection, &socket)
        && getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

MessagePointer newCall(const char* path, const char* interface, const char* member)
{
    MessagePointer message(dbus_message_new_method_call(nullptr, path, interface, member));
    if (!message)
        throw std::bad_alloc();
    return message;
}

// An error is thrown under its own name; a result that is not what the member promises is no result.
std::optional<Value> resultOf(DBusMessage* reply, const RemoteMember& member)
{
    if (dbus_message_get_type(reply) == DBUS_MESSAGE_TYPE_ERROR) {
        const char* text = "";
        dbus_message_get_args(reply, nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
        throw Exception(String::fromUtf8(dbus_message_get_error_name(reply)), String::fromUtf8(text));
    }
    try {
        Arguments results = wire::read(reply, member.result, DescriptorTrust::SealedOnly);
        return results.empty() ? std::nullopt : std::move(results.front());
    } catch (const Exception& exception) {
        throw Exception(String(PortExceptions::Receive), exception.reason());
    }
}

} // namespace

struct Connection::Implementation {
    explicit Implementation(DBusConnection* opened);
    ~Implementation();

    bool isConnected() const { return dbus_connection_get_is_connected(connection); }
    void drain() const;
    void sendOneWay(DBusMessage* message, const Deadline& deadline) const;
    MessagePointer ask(DBusMessage* message, const Deadline& deadline);
    void noteSignal(DBusMessage* message);

    DBusConnection* connection;
    dbus_uint32_t asked = 0; // the serial number of the call that waits for its reply
    std::vector<String> leftOut {};
};

Connection::Implementation::Implementation(DBusConnection* opened)
    : connection(opened)
{
    // Only replies are wanted, and what is said of them. Whatever else comes in is dropped, and never
    // answered on our behalf: answers that the other end does not read would pile up here.
    const auto note = [](DBusConnection*, DBusMessage* message, void* self) {
        static_cast<Implementation*>(self)->noteSignal(message);
        return DBUS_HANDLER_RESULT_HANDLED;
    };
    dbus_connection_set_exit_on_disconnect(connection, FALSE);
    dbus_connection_set_max_message_unix_fds(connection, wire::MaximumDescriptors);
    dbus_connection_set_route_peer_messages(connection, TRUE);
    if (!dbus_connection_add_filter(connection, note, this, nullptr))
        throw std::bad_alloc();
}

Connection::Implementation::~Implementation()
{
    dbus_connection_close(connection);
    dbus_connection_unref(connection);
}

// Late replies to calls that have timed out fill the receive buffer, and keep their descriptors, until
// somebody takes them out. Bounded, because a hostile peer can send faster than we read.
void Connection::Implementation::drain() const
{
    constexpr int MostMessages = 4096;
    dbus_connection_read_write(connection, 0);
    for (int count = 0; count < MostMessages; ++count) {
        if (dbus_connection_dispatch(connection) == DBUS_DISPATCH_COMPLETE
            && (!isConnected() || !dbus_connection_read_write(connection, 0)
                || dbus_connection_get_dispatch_status(connection) == DBUS_DISPATCH_COMPLETE))
            return;
    }
}

void Connection::Implementation::sendOneWay(DBusMessage* message, const Deadline& deadline) const
{
    dbus_message_set_no_reply(message, TRUE);
    if (!dbus_connection_send(connection, message, nullptr))
        fail(PortExceptions::Send, u"the request could not be sent");
    while (isConnected() && dbus_connection_has_messages_to_send(connection)) {
        if (deadline.hasPassed())
            fail(PortExceptions::Timeout, u"the request was not taken in time");
        dbus_connection_read_write(connection, deadline.milliseconds());
    }
}

// Not dbus_connection_send_with_reply_and_block: it first sends without a limit of time, so that a stopped
// peer would stop us too.
MessagePointer Connection::Implementation::ask(DBusMessage* message, const Deadline& deadline)
{
    DBusPendingCall* started = nullptr;
    if (!dbus_connection_send_with_reply(connection, message, &started, DBUS_TIMEOUT_INFINITE) || !started)
        fail(PortExceptions::Send, u"the request could not be sent");
    const PendingPointer pending(started);
    asked = dbus_message_get_serial(message);
    while (!dbus_pending_call_get_completed(started)) {
        if (deadline.hasPassed())
            fail(PortExceptions::Timeout, u"no reply came in time");
        if (!dbus_connection_read_write_dispatch(connection, deadline.milliseconds())
            && !dbus_pending_call_get_completed(started))
            fail(PortExceptions::Receive, u"the other process is gone");
    }
    MessagePointer reply(dbus_pending_call_steal_reply(started));
    // libdbus answers by itself when the connection ends.
    if (!reply || (!isConnected() && dbus_message_is_error(reply.get(), DBUS_ERROR_NO_REPLY)))
        fail(PortExceptions::Receive, u"the other process is gone");
    return reply;
}

// The other process decides neither how many are kept nor how long they are.
void Connection::Implementation::noteSignal(DBusMessage* message)
{
    constexpr std::size_t MostNotes = 8;
    constexpr std::size_t LongestNote = 200;
    dbus_uint32_t serial = 0;
    const char* what = nullptr;
    if (dbus_message_is_signal(message, LeftOutSignal.interface, LeftOutSignal.member)
        && dbus_message_get_args(
            message, nullptr, DBUS_TYPE_UINT32, &serial, DBUS_TYPE_STRING, &what, DBUS_TYPE_INVALID)
        && serial == asked && leftOut.size() < MostNotes)
        leftOut.push_back(String::fromUtf8(std::string_view(what).substr(0, LongestNote)));
}

Connection::Connection(std::unique_ptr<Implementation> implementation)
    : m_implementation(std::move(implementation))
{
}

Connection::~Connection() = default;

std::shared_ptr<Connection> Connection::lookup(const String& name, double timeout)
{
    const auto path = socketPathForName(name);
    if (!path)
        return nullptr;
    dbus_connection_set_change_sigpipe(FALSE);
    DBusConnection* opened = dbus_connection_open_private(addressOfSocket(*path).c_str(), nullptr);
    if (!opened)
        return nullptr;
    auto implementation = std::make_unique<Implementation>(opened);
    if (!isOfThisUser(opened))
        return nullptr;
    // Descriptors may be sent only when both ends have agreed on it, and that is certain once an answer came.
    const MessagePointer ping = newCall("/", DBUS_INTERFACE_PEER, "Ping");
    try {
        implementation->ask(ping.get(), Deadline(timeout));
    } catch (const Exception& exception) {
        if (exception.name() == PortExceptions::Timeout)
            throw;
        return nullptr;
    }
    std::shared_ptr<Connection> connection(new Connection(std::move(implementation)));
    connection->setTimeout(timeout);
    return connection;
}

bool Connection::isValid()
{
    m_implementation->drain();
    if (m_implementation->isConnected())
        return true;
    noteDeath();
    return false;
}

Proxy Connection::rootProxy(const RemoteProtocol* protocol)
{
    if (!isValid())
        fail(PortExceptions::InvalidSendPort, u"the other process is gone");
    return { shared_from_this(), protocol };
}

std::optional<Value> Connection::call(
    const char* path, const char* interface, const RemoteMember& member, const Arguments& arguments)
{
    if (!isValid())
        fail(PortExceptions::InvalidSendPort, u"the other process is gone");
    const MessagePointer request = newCall(path, interface, member.member);
    DBusConnection* connection = m_implementation->connection;
    const bool takesDescriptors = dbus_connection_can_send_type(connection, DBUS_TYPE_UNIX_FD);
    wire::write(request.get(), member.arguments, arguments,
        takesDescriptors ? wire::Descriptors::Attached : wire::Descriptors::None);
    const Deadline deadline(m_timeout);
    try {
        if (!member.oneWay)
            return resultOf(m_implementation->ask(request.get(), deadline).get(), member);
        m_implementation->sendOneWay(request.get(), deadline);
        return std::nullopt;
    } catch (const Exception&) {
        if (!m_implementation->isConnected())
            noteDeath();
        throw;
    }
}

std::vector<String> Connection::takeLeftOut() { return std::exchange(m_implementation->leftOut, {}); }

void Connection::noteDeath()
{
    const DeathObserver observer = deathObserver;
    if (!std::exchange(m_deathTold, true) && observer)
        observer(shared_from_this());
}

void Connection::setDeathObserver(DeathObserver observer) { deathObserver = observer; }

std::optional<Value> Proxy::call(std::string_view member, const Arguments& arguments) const
{
    const RemoteMember* found = m_protocol ? m_protocol->find(member) : nullptr;
    if (!found)
        throw Exception(String(UnknownMethodError), String::fromUtf8(member));
    return call(*found, arguments);
}

std::optional<Value> Proxy::call(const RemoteMember& member, const Arguments& arguments) const
{
    return m_connection->call(
        m_protocol ? m_protocol->path : "/", m_protocol ? m_protocol->interface : nullptr, member, arguments);
}

} // namespace caddis
