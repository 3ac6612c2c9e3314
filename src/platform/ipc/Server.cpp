#include "platform/ipc/Server.h"

#include "platform/base/Log.h"
#include "platform/ipc/Peer.h"
#include "platform/ipc/RuntimeDirectory.h"

#include <chrono>
#include <csignal>
#include <dbus/dbus.h>
#include <deque>
#include <new>
#include <sys/resource.h>

namespace caddis {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto SweepInterval = std::chrono::milliseconds(250);
// Five seconds, counted in sweeps: the time of a long request, in which nobody can say anything, is not
// held against a client.
constexpr int SilentSweeps = 20;

void prepareProcess()
{
    std::signal(SIGPIPE, SIG_IGN);
    rlimit files = {};
    if (getrlimit(RLIMIT_NOFILE, &files) == 0) {
        files.rlim_cur = files.rlim_max;
        setrlimit(RLIMIT_NOFILE, &files);
    }
}

struct ServerRelease {
    void operator()(DBusServer* server) const
    {
        dbus_server_disconnect(server);
        dbus_server_unref(server);
    }
};

using ServerPointer = std::unique_ptr<DBusServer, ServerRelease>;

ServerPointer listenAt(const std::string& path)
{
    DBusError error = DBUS_ERROR_INIT;
    ServerPointer server(dbus_server_listen(addressOfSocket(path).c_str(), &error));
    if (!server)
        log(u"%s: %s", std::string_view(path), error.message);
    dbus_error_free(&error);
    return server;
}

} // namespace

struct Server::Implementation {
    explicit Implementation(RemoteObject served)
        : object(std::move(served))
    {
    }
    ~Implementation();

    bool start(const String& name);
    void welcome(DBusConnection* connection);
    void turn();
    int patience() const;
    void dispatchRound();
    void releaseBlocked();
    void dropSilent();

    struct Newcomer {
        unsigned number;
        int sweeps = 0;
    };

    RemoteObject object;
    RunLoop loop;
    std::optional<NameLock> name;
    ServerPointer server;
    std::unordered_map<unsigned, std::unique_ptr<Peer>> peers;
    std::deque<unsigned> ready;
    std::vector<unsigned> blocked;
    std::vector<Newcomer> newcomers;
    unsigned welcomed = 0;
    Clock::time_point lastSweep;
};

Server::Implementation::~Implementation()
{
    if (server)
        unlink(name->socketPath().c_str());
}

bool Server::Implementation::start(const String& wanted)
{
    name = NameLock::acquire(wanted);
    if (!name)
        return false;
    server = listenAt(name->temporaryPath());
    if (!server)
        return false;
    const auto welcomeConnection = [](DBusServer*, DBusConnection* connection, void* data) {
        static_cast<Implementation*>(data)->welcome(connection);
    };
    // Another user cannot pass as this one: the kernel says who has connected.
    const char* mechanisms[] = { "EXTERNAL", nullptr };
    if (!dbus_server_set_auth_mechanisms(server.get(), mechanisms))
        throw std::bad_alloc();
    dbus_server_set_new_connection_function(server.get(), welcomeConnection, this, nullptr);
    loop.attend(server.get());
    return name->publish();
}

void Server::Implementation::welcome(DBusConnection* connection)
{
    const unsigned number = ++welcomed;
    if (newcomers.empty())
        lastSweep = Clock::now();
    newcomers.push_back({ number });
    peers[number] = std::make_unique<Peer>(
        connection, loop, object, number, [this](Peer& peer) { ready.push_back(peer.number()); });
}

void Server::Implementation::turn()
{
    loop.turn(patience());
    releaseBlocked();
    dispatchRound();
    dropSilent();
}

int Server::Implementation::patience() const
{
    if (!ready.empty())
        return 0;
    return newcomers.empty() ? RunLoop::Forever : static_cast<int>(SweepInterval.count());
}

void Server::Implementation::dispatchRound()
{
    for (const unsigned number : std::exchange(ready, {})) {
        const auto peer = peers.find(number);
        if (peer == peers.end())
            continue;
        switch (peer->second->dispatch()) {
        case Peer::State::Idle:
            break;
        case Peer::State::Ready:
            ready.push_back(number);
            break;
        case Peer::State::Blocked:
            blocked.push_back(number);
            break;
        case Peer::State::Gone:
            peers.erase(peer);
            break;
        }
    }
}

void Server::Implementation::releaseBlocked()
{
    std::erase_if(blocked, [this](unsigned number) {
        const auto peer = peers.find(number);
        if (peer != peers.end() && peer->second->isBlocked())
            return false;
        ready.push_back(number);
        return true;
    });
}

void Server::Implementation::dropSilent()
{
    if (newcomers.empty() || Clock::now() - lastSweep < SweepInterval)
        return;
    lastSweep = Clock::now();
    std::erase_if(newcomers, [this](Newcomer& newcomer) {
        const auto peer = peers.find(newcomer.number);
        if (peer == peers.end() || peer->second->isAuthenticated())
            return true;
        if (++newcomer.sweeps <= SilentSweeps)
            return false;
        peers.erase(peer);
        return true;
    });
}

Server::Server(RemoteObject object)
    : m_implementation(std::make_unique<Implementation>(std::move(object)))
{
    prepareProcess();
}

Server::~Server() = default;

bool Server::registerName(const String& name) { return m_implementation->start(name); }

void Server::run()
{
    for (;;)
        m_implementation->turn();
}

} // namespace caddis
