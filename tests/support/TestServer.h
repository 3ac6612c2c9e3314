#pragma once

#include "platform/ipc/Connection.h"
#include "platform/ipc/Task.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/TestProtocol.h"

#include <chrono>
#include <csignal>
#include <thread>

namespace caddis {

/// The test server, running under a name; killed at the end.
class TestServer {
public:
    explicit TestServer(const char16_t* name = u"Test")
        : m_name(name)
        , m_task(String::fromUtf8(CADDIS_TEST_SERVER), { m_name })
    {
        m_task.launch();
    }
    ~TestServer() { kill(); }
    TestServer(const TestServer&) = delete;
    TestServer& operator=(const TestServer&) = delete;

    /// A new connection; null when the server does not register within five seconds.
    std::shared_ptr<Connection> connect(double timeout = 5) const
    {
        std::shared_ptr<Connection> connection;
        for (int count = 0; count < 500 && !(connection = Connection::lookup(m_name, timeout)); ++count)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return connection;
    }
    void signal(int number) const { ::kill(m_task.processIdentifier(), number); }
    void kill()
    {
        if (m_task.isRunning())
            signal(SIGKILL);
        m_task.waitUntilExit();
    }
    Task& task() { return m_task; }

private:
    String m_name;
    Task m_task;
};

} // namespace caddis
