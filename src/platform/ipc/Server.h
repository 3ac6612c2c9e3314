#pragma once

#include "platform/ipc/RemoteObject.h"

#include <memory>

namespace caddis {

/// Serves one object to the other processes of this user, over a socket that has a registered name.
///
///     Server server({ .path = "/Clock", .interface = "org.example.Clock", .introspection = xml,
///         .methods = { { "Now", "", "av", [](const Arguments&) { return Date::now(); } } } });
///     if (server.registerName(u"Clock"_s))
///         server.run();
///
/// Requests are served one at a time, on the thread that runs the server; clients take turns. A client that
/// does not authenticate as this user within five seconds is dropped, one that asks without taking its
/// answers is not served until it does.
///
/// The protocol is D-Bus from peer to peer, without a bus: `busctl --address=unix:path=…` calls the methods.
class Server {
public:
    /// For the whole process SIGPIPE is ignored from here on, and the limit of open descriptors raised as far
    /// as the system lets it.
    explicit Server(RemoteObject object);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// False when another process has the name, and (logged) when it cannot be registered at all.
    /// The name is this process's until it ends.
    bool registerName(const String& name);

    /// Serves for ever.
    [[noreturn]] void run();

private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace caddis
