#pragma once

#include "platform/ipc/Requests.h"
#include "platform/ipc/RunLoop.h"

#include <functional>

namespace caddis {

/// One client of a server, from its connection to its end.
class Peer {
public:
    enum class State {
        Idle, ///< nothing to do until something arrives
        Ready, ///< more messages wait
        Blocked, ///< messages wait, but the client does not take its answers
        Gone, ///< hung up, and nothing of what it sent is left
    };

    /// `becameReady` is told when messages wait that were not there before.
    Peer(DBusConnection* connection, RunLoop& loop, const RemoteObject& object, unsigned number,
        std::function<void(Peer&)> becameReady);
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// Answers the next few messages, so many that no client has to wait long for its turn.
    State dispatch();
    /// More answers wait to be sent than a client that reads them would leave.
    bool isBlocked() const;
    bool isAuthenticated() const;
    unsigned number() const { return m_number; }

private:
    void handle(DBusMessage* message);

    DBusConnection* m_connection;
    const RemoteObject& m_object;
    unsigned m_number;
    std::function<void(Peer&)> m_becameReady;
    bool m_gone = false;
};

} // namespace caddis
