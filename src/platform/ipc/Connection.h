#pragma once

#include "platform/base/Exception.h"
#include "platform/ipc/RemoteObject.h"

#include <memory>

namespace caddis {

/// The names of the exceptions that a connection throws when it, not the request, fails.
namespace PortExceptions {
inline constexpr std::u16string_view Timeout = u"PortTimeoutException";
inline constexpr std::u16string_view InvalidSendPort = u"InvalidSendPortException";
inline constexpr std::u16string_view InvalidReceivePort = u"InvalidReceivePortException";
inline constexpr std::u16string_view Send = u"PortSendException";
inline constexpr std::u16string_view Receive = u"PortReceiveException";
} // namespace PortExceptions

class Proxy;

/// A connection to the process that has registered a name.
///
/// For one thread. Nothing that the other process does can hurt this one: a call ends with its time-out
/// whatever that process sends or leaves unsent, a malformed message ends the connection, and of the
/// descriptors that arrive only sealed memory is used.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    /// Connects to the process of this user that has `name` registered, and makes sure that it answers. Nil
    /// when there is none. Throws PortExceptions::Timeout when it does not answer within `timeout` seconds (0
    /// or less: no limit).
    static std::shared_ptr<Connection> lookup(const String& name, double timeout = 0);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Whether the other process still holds its end.
    bool isValid();

    /// The most seconds that a call takes, from sending the request to having the reply; 0 or less: no limit.
    double timeout() const { return m_timeout; }
    void setTimeout(double seconds) { m_timeout = seconds; }

    /// The one object that the other process serves. Throws PortExceptions::InvalidSendPort when that process
    /// is gone. Without a protocol its path is "/".
    Proxy rootProxy(const RemoteProtocol* protocol = nullptr);

    /// Calls a method and waits for its result; nil is a result. After a time-out the connection stays valid
    /// and the other process goes on with the request.
    ///
    /// Throws an Exception under one of the names above, or under the D-Bus error name with which the other
    /// process refused or failed ("org.freedesktop.DBus.Error.UnknownMethod").
    std::optional<Value> call(
        const char* path, const char* interface, const RemoteMember& member, const Arguments& arguments);

    /// What the results of calls lack because a limit of the other process has ended the work on them:
    /// phrases for people, a few at most. Those since this was last called.
    std::vector<String> takeLeftOut();

    /// Is told, on the thread that noticed it, of every connection whose other end has gone; once for each.
    using DeathObserver = void (*)(const std::shared_ptr<Connection>&);
    static void setDeathObserver(DeathObserver observer);

private:
    struct Implementation;
    explicit Connection(std::unique_ptr<Implementation> implementation);
    void noteDeath();

    std::unique_ptr<Implementation> m_implementation;
    double m_timeout = 0;
    bool m_deathTold = false;
};

/// An object of another process, as one calls it.
class Proxy {
public:
    Proxy(std::shared_ptr<Connection> connection, const RemoteProtocol* protocol)
        : m_connection(std::move(connection))
        , m_protocol(protocol)
    {
    }

    const std::shared_ptr<Connection>& connection() const { return m_connection; }
    const RemoteProtocol* protocol() const { return m_protocol; }

    /// Calls a member of the protocol by its name; throws UnknownMethodError when it has none of that name.
    std::optional<Value> call(std::string_view member, const Arguments& arguments = {}) const;
    /// Calls a member that the protocol need not have.
    std::optional<Value> call(const RemoteMember& member, const Arguments& arguments = {}) const;

private:
    std::shared_ptr<Connection> m_connection;
    const RemoteProtocol* m_protocol;
};

} // namespace caddis
