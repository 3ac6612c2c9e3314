#pragma once

#include "platform/base/Descriptor.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

struct DBusConnection;
struct DBusServer;
struct DBusWatch;

namespace caddis {

/// Waits for the descriptors of servers and connections, and lets libdbus read, write and accept on them.
///
/// Only input and output happen in a turn: the messages that came in wait in their connection until somebody
/// dispatches them.
class RunLoop {
public:
    static constexpr int Forever = -1;

    RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    /// The loop has to outlive what it attends to.
    void attend(DBusServer* server);
    void attend(DBusConnection* connection);

    /// Waits until something happens, at most `milliseconds`, and handles it.
    void turn(int milliseconds);

    /// For libdbus: a watch appears, goes, or wants other events than before.
    void add(DBusWatch* watch);
    void remove(DBusWatch* watch);
    void toggle(DBusWatch* watch);

private:
    void handle(int descriptor, std::uint32_t events);

    Descriptor m_epoll;
    // A connection has one watch for reading and one for writing, on one descriptor.
    std::unordered_map<int, std::vector<DBusWatch*>> m_watches;
};

} // namespace caddis
