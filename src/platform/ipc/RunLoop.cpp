#include "platform/ipc/RunLoop.h"

#include "platform/base/Exception.h"

#include <algorithm>
#include <array>
#include <dbus/dbus.h>
#include <new>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <type_traits>

namespace caddis {

namespace {

// Connections that wait to be accepted. libdbus asks for 30, which a busy helper's clients soon fill.
constexpr int WaitingConnections = 1024;

std::uint32_t eventsOf(unsigned flags)
{
    return (flags & DBUS_WATCH_READABLE ? std::uint32_t(EPOLLIN) : 0)
        | (flags & DBUS_WATCH_WRITABLE ? std::uint32_t(EPOLLOUT) : 0);
}

unsigned flagsOf(std::uint32_t events)
{
    return (events & EPOLLIN ? unsigned(DBUS_WATCH_READABLE) : 0)
        | (events & EPOLLOUT ? unsigned(DBUS_WATCH_WRITABLE) : 0)
        | (events & EPOLLHUP ? unsigned(DBUS_WATCH_HANGUP) : 0)
        | (events & EPOLLERR ? unsigned(DBUS_WATCH_ERROR) : 0);
}

// The three callbacks that libdbus wants, for a server and for a connection alike.
template <typename Owner, typename SetWatchFunctions>
void setWatchFunctions(SetWatchFunctions set, Owner* owner, RunLoop* loop)
{
    const auto add = [](DBusWatch* watch, void* data) -> dbus_bool_t {
        if constexpr (std::is_same_v<Owner, DBusServer>)
            listen(dbus_watch_get_unix_fd(watch), WaitingConnections);
        static_cast<RunLoop*>(data)->add(watch);
        return TRUE;
    };
    const auto remove = [](DBusWatch* watch, void* data) { static_cast<RunLoop*>(data)->remove(watch); };
    const auto toggle = [](DBusWatch* watch, void* data) { static_cast<RunLoop*>(data)->toggle(watch); };
    if (!set(owner, add, remove, toggle, loop, nullptr))
        throw std::bad_alloc();
}

} // namespace

RunLoop::RunLoop()
    : m_epoll(epoll_create1(EPOLL_CLOEXEC))
{
    if (!m_epoll.isOpen())
        throw Exception(String(u"GenericException"), String(u"No descriptor for a run loop"));
}

void RunLoop::attend(DBusServer* server) { setWatchFunctions(dbus_server_set_watch_functions, server, this); }

void RunLoop::attend(DBusConnection* connection)
{
    setWatchFunctions(dbus_connection_set_watch_functions, connection, this);
}

void RunLoop::add(DBusWatch* watch)
{
    const int descriptor = dbus_watch_get_unix_fd(watch);
    auto& watches = m_watches[descriptor];
    watches.push_back(watch);
    if (watches.size() == 1) {
        epoll_event event = { .events = 0, .data = { .fd = descriptor } };
        epoll_ctl(m_epoll.number(), EPOLL_CTL_ADD, descriptor, &event);
    }
    toggle(watch);
}

void RunLoop::remove(DBusWatch* watch)
{
    const int descriptor = dbus_watch_get_unix_fd(watch);
    const auto found = m_watches.find(descriptor);
    if (found == m_watches.end())
        return;
    std::erase(found->second, watch);
    if (!found->second.empty())
        return toggle(found->second.front());
    m_watches.erase(found);
    epoll_ctl(m_epoll.number(), EPOLL_CTL_DEL, descriptor, nullptr);
}

void RunLoop::toggle(DBusWatch* watch)
{
    const int descriptor = dbus_watch_get_unix_fd(watch);
    epoll_event event = { .events = 0, .data = { .fd = descriptor } };
    for (DBusWatch* each : m_watches[descriptor]) {
        if (dbus_watch_get_enabled(each))
            event.events |= eventsOf(dbus_watch_get_flags(each));
    }
    epoll_ctl(m_epoll.number(), EPOLL_CTL_MOD, descriptor, &event);
}

void RunLoop::turn(int milliseconds)
{
    std::array<epoll_event, 64> events;
    const int count
        = epoll_wait(m_epoll.number(), events.data(), static_cast<int>(events.size()), milliseconds);
    for (int index = 0; index < count; ++index)
        handle(events[std::size_t(index)].data.fd, events[std::size_t(index)].events);
}

void RunLoop::handle(int descriptor, std::uint32_t events)
{
    const auto isPresent = [&](DBusWatch* watch) {
        const auto found = m_watches.find(descriptor);
        return found != m_watches.end() && std::ranges::count(found->second, watch) > 0;
    };
    const auto found = m_watches.find(descriptor);
    if (found == m_watches.end())
        return;
    // Handling one watch may remove the others, or all of them.
    for (DBusWatch* watch : std::vector(found->second)) {
        if (!isPresent(watch) || !dbus_watch_get_enabled(watch))
            continue;
        if (const auto wanted = events & (eventsOf(dbus_watch_get_flags(watch)) | EPOLLHUP | EPOLLERR))
            dbus_watch_handle(watch, flagsOf(wanted));
    }
}

} // namespace caddis
