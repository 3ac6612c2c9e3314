#pragma once

#include "platform/ipc/Connection.h"

/// The calling thread's connections to other processes, by registered name.
///
/// A connection belongs to the thread that made it, so each thread has its own for a name. One whose other
/// end has gone is replaced by the next one who asks for the name.
namespace caddis {
inline namespace NSConnectionOstraExtensions {

/// The proxy of the process that has `name` registered, over the cached connection or a new one, which is
/// then cached. A positive `timeout`, in seconds, becomes the connection's. Nil when no process has the name.
/// Throws PortExceptions::Timeout when the process does not answer in time.
std::optional<Proxy> rootProxyForConnectionWithRegisteredName(
    const String& name, double timeout = 0, const RemoteProtocol* protocol = nullptr);

/// Polls for the proxy of a process that is about to register `name`, every 0.01 seconds for `interval`
/// seconds; time-outs of the connection itself are not counted. Nil at once when `interval` is not positive.
std::optional<Proxy> waitForTimeInterval(
    double interval, const String& name, double timeout, const RemoteProtocol* protocol);
/// The same for 5 seconds.
std::optional<Proxy> waitForRootProxyForConnectionWithRegisteredName(
    const String& name, double timeout = 0, const RemoteProtocol* protocol = nullptr);

/// The cached connection; one that is no longer valid is dropped, and the result is null.
std::shared_ptr<Connection> connectionRegisteredWithName(const String& name);
/// Caches a connection; one that is no longer valid takes the entry away instead.
void setConnection(const std::shared_ptr<Connection>& connection, const String& name);
void removeConnectionRegisteredWithName(const String& name);
void removeConnection(const std::shared_ptr<Connection>& connection);
/// Told of every connection that dies: drops it from the cache of the thread that noticed.
void connectionDidDie(const std::shared_ptr<Connection>& connection);

/// Whether the connection failed, not the request; the second, whether it did so by time-out.
bool isPortException(const Exception& exception);
bool isPortTimeoutException(const Exception& exception);

} // namespace NSConnectionOstraExtensions
} // namespace caddis
