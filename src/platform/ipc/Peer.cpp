#include "platform/ipc/Peer.h"

#include "platform/base/LeftOut.h"

#include <dbus/dbus.h>
#include <new>
#include <unistd.h>

namespace caddis {

namespace {

constexpr int MessagesPerTurn = 16;
constexpr long UnsentBytes = 8 << 20;

// Without it libdbus lets the superuser in as well.
dbus_bool_t isThisUser(DBusConnection*, unsigned long user, void*) { return user == geteuid(); }

} // namespace

Peer::Peer(DBusConnection* connection, RunLoop& loop, const RemoteObject& object, unsigned number,
    std::function<void(Peer&)> becameReady)
    : m_connection(dbus_connection_ref(connection))
    , m_object(object)
    , m_number(number)
    , m_becameReady(std::move(becameReady))
{
    const auto filter = [](DBusConnection*, DBusMessage* message, void* peer) {
        static_cast<Peer*>(peer)->handle(message);
        return DBUS_HANDLER_RESULT_HANDLED;
    };
    const auto statusChanged = [](DBusConnection*, DBusDispatchStatus status, void* data) {
        auto& peer = *static_cast<Peer*>(data);
        if (status == DBUS_DISPATCH_DATA_REMAINS)
            peer.m_becameReady(peer);
    };
    dbus_connection_set_exit_on_disconnect(connection, FALSE);
    dbus_connection_set_max_message_unix_fds(connection, wire::MaximumDescriptors);
    dbus_connection_set_unix_user_function(connection, isThisUser, nullptr, nullptr);
    dbus_connection_set_dispatch_status_function(connection, statusChanged, this, nullptr);
    if (!dbus_connection_add_filter(connection, filter, this, nullptr))
        throw std::bad_alloc();
    loop.attend(connection);
}

Peer::~Peer()
{
    dbus_connection_set_dispatch_status_function(m_connection, nullptr, nullptr, nullptr);
    dbus_connection_close(m_connection);
    // What the close has left in the queue must not find this peer any more.
    dbus_connection_set_watch_functions(m_connection, nullptr, nullptr, nullptr, nullptr, nullptr);
    dbus_connection_unref(m_connection);
}

Peer::State Peer::dispatch()
{
    for (int count = 0; count < MessagesPerTurn; ++count) {
        if (isBlocked())
            return State::Blocked;
        const auto status = dbus_connection_dispatch(m_connection);
        if (m_gone)
            return State::Gone;
        if (status != DBUS_DISPATCH_DATA_REMAINS)
            return State::Idle;
    }
    return State::Ready;
}

bool Peer::isBlocked() const
{
    // What a client that has hung up had asked for is still done; it has no answers to take.
    return dbus_connection_get_outgoing_size(m_connection) > UnsentBytes
        && dbus_connection_get_is_connected(m_connection);
}

bool Peer::isAuthenticated() const { return dbus_connection_get_is_authenticated(m_connection); }

void Peer::handle(DBusMessage* message)
{
    if (dbus_message_is_signal(message, DBUS_INTERFACE_LOCAL, "Disconnected"))
        m_gone = true;
    if (dbus_message_get_type(message) != DBUS_MESSAGE_TYPE_METHOD_CALL)
        return;
    const bool takesDescriptors = dbus_connection_can_send_type(m_connection, DBUS_TYPE_UNIX_FD);
    const Caller caller { m_number,
        takesDescriptors ? wire::Descriptors::Attached : wire::Descriptors::None };
    const MessagePointer reply = answerRequest(m_object, message, caller);
    const auto leftOut = takeLeftOut();
    if (dbus_message_get_no_reply(message))
        return;
    for (const String& what : leftOut) {
        if (const MessagePointer signal = leftOutSignal(m_object, message, what))
            dbus_connection_send(m_connection, signal.get(), nullptr);
    }
    dbus_connection_send(m_connection, reply.get(), nullptr);
}

} // namespace caddis
