#include "client/ConnectionCache.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <thread>

namespace caddis {
inline namespace NSConnectionOstraExtensions {

namespace {

constexpr double StandardWait = 5.0;
constexpr double PollInterval = 0.01;

std::map<String, std::shared_ptr<Connection>>& threadDictionary()
{
    thread_local std::map<String, std::shared_ptr<Connection>> connections;
    return connections;
}

std::optional<Proxy> cachedRootProxy(const String& name, double timeout, const RemoteProtocol* protocol)
{
    const auto connection = connectionRegisteredWithName(name);
    if (!connection)
        return std::nullopt;
    try {
        const Proxy proxy = connection->rootProxy(protocol);
        if (timeout > 0)
            connection->setTimeout(timeout);
        return proxy;
    } catch (const Exception& exception) {
        logException(u"rootProxyForConnectionWithRegisteredName:timeout:protocol:", u"NSThread", exception);
        removeConnectionRegisteredWithName(name);
        return std::nullopt;
    }
}

} // namespace

std::optional<Proxy> rootProxyForConnectionWithRegisteredName(
    const String& name, double timeout, const RemoteProtocol* protocol)
{
    if (auto proxy = cachedRootProxy(name, timeout, protocol))
        return proxy;
    const auto connection = Connection::lookup(name, timeout);
    if (!connection)
        return std::nullopt;
    setConnection(connection, name);
    return Proxy(connection, protocol);
}

std::optional<Proxy> waitForTimeInterval(
    double interval, const String& name, double timeout, const RemoteProtocol* protocol)
{
    // In steps, not on the clock: what a look-up takes is not counted.
    for (int step = 0; step * PollInterval < interval; ++step) {
        std::this_thread::sleep_for(std::chrono::duration<double>(PollInterval));
        if (auto proxy = rootProxyForConnectionWithRegisteredName(name, timeout, protocol))
            return proxy;
    }
    return std::nullopt;
}

std::optional<Proxy> waitForRootProxyForConnectionWithRegisteredName(
    const String& name, double timeout, const RemoteProtocol* protocol)
{
    return waitForTimeInterval(StandardWait, name, timeout, protocol);
}

std::shared_ptr<Connection> connectionRegisteredWithName(const String& name)
{
    const auto entry = threadDictionary().find(name);
    if (entry == threadDictionary().end())
        return nullptr;
    // A copy: the news of its death takes the entry away.
    auto connection = entry->second;
    if (connection->isValid())
        return connection;
    removeConnectionRegisteredWithName(name);
    return nullptr;
}

void setConnection(const std::shared_ptr<Connection>& connection, const String& name)
{
    static const bool subscribed = [] {
        Connection::setDeathObserver(connectionDidDie);
        return true;
    }();
    static_cast<void>(subscribed);
    if (connection && connection->isValid() && !name.isEmpty())
        threadDictionary().insert_or_assign(name, connection);
    else
        removeConnectionRegisteredWithName(name);
}

void removeConnectionRegisteredWithName(const String& name) { threadDictionary().erase(name); }

void removeConnection(const std::shared_ptr<Connection>& connection)
{
    auto& connections = threadDictionary();
    const auto entry
        = std::ranges::find_if(connections, [&](const auto& each) { return each.second == connection; });
    if (entry != connections.end())
        connections.erase(entry);
}

void connectionDidDie(const std::shared_ptr<Connection>& connection) { removeConnection(connection); }

bool isPortException(const Exception& exception)
{
    const auto& name = exception.name();
    return isPortTimeoutException(exception) || name == PortExceptions::InvalidSendPort
        || name == PortExceptions::InvalidReceivePort || name == PortExceptions::Send
        || name == PortExceptions::Receive;
}

bool isPortTimeoutException(const Exception& exception)
{
    return exception.name() == PortExceptions::Timeout;
}

} // namespace NSConnectionOstraExtensions
} // namespace caddis
