#pragma once

#include "platform/ipc/Connection.h"
#include "platform/ipc/Task.h"
#include "support/TestProtocol.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace caddis {

/// A runtime directory of its own for this process and its children, while it lives.
class PrivateRuntimeDirectory {
public:
    PrivateRuntimeDirectory()
    {
        std::string path = std::filesystem::temp_directory_path() / "caddis-test-XXXXXX";
        m_path = mkdtemp(path.data());
        setenv("CADDIS_RUNTIME_DIR", path.c_str(), 1);
    }
    ~PrivateRuntimeDirectory()
    {
        unsetenv("CADDIS_RUNTIME_DIR");
        std::filesystem::remove_all(m_path);
    }
    PrivateRuntimeDirectory(const PrivateRuntimeDirectory&) = delete;
    PrivateRuntimeDirectory& operator=(const PrivateRuntimeDirectory&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

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
