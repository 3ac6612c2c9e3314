#pragma once

#include "platform/ipc/Connection.h"
#include "platform/ipc/Task.h"

#include <memory>

namespace caddis {

/// What a helper may do.
enum class HelperProfile {
    Base, ///< everything that its user may
    /// For documents of strangers: it reads everywhere and writes only into its scratch folder, starts only
    /// installed programs, opens no socket, and refuses to write RTFD or to run scripts. Where the kernel
    /// does not have the means it says so once in its log and goes on with what there is.
    Reader,
};

struct HelperLaunch {
    HelperProfile profile = HelperProfile::Base;
    std::size_t memory = 0; ///< the most bytes of its own that it may have; 0: its own limit
    /// It leads a session of its own and is killed when the thread that launched it ends.
    bool attached = false;
    std::string log {}; ///< the file to which its log is appended; empty: this process's standard error
};

/// A helper process as its application sees it: started when needed, found again when it runs, stopped.
///
///     const auto helper = HelperTask::initWithPath(
///         path, HelperServiceName, &OstraImExport, 15.0, QualityOfService::Utility);
///     if (const auto proxy = helper->proxy())
///         … proxy->call("Ping") …
///
/// A task is idle, or launched (its connection is cached on the launching thread), or has given up: after two
/// failures it never launches again, but still finds a helper that somebody else has started.
class HelperTask {
public:
    /// The program at `path` registers `registeredProxyName`. `timeout`, in seconds, is the default for
    /// connecting and for requests and replies. `protocol` has to outlive the proxies; it may be null.
    /// Null, logged, when the path or the name is empty.
    static std::unique_ptr<HelperTask> initWithPath(const String& path, const String& registeredProxyName,
        const RemoteProtocol* protocol, double timeout, QualityOfService quality);
    /// Terminates the helper that this task has launched.
    ~HelperTask();
    HelperTask(const HelperTask&) = delete;
    HelperTask& operator=(const HelperTask&) = delete;

    /// Stops what this task has launched before, starts a new helper and waits up to 5 seconds for it to
    /// register. Nil, logged, when that fails; nil in silence after two failures.
    std::optional<Proxy> launchUsingTimeout(double timeout);
    std::optional<Proxy> launch() { return launchUsingTimeout(m_timeout); }
    /// The proxy of a helper that runs already, whoever started it; nil without one.
    std::optional<Proxy> launchedProxyUsingTimeout(double timeout);
    std::optional<Proxy> launchedProxy() { return launchedProxyUsingTimeout(m_timeout); }
    /// A helper that runs already, or else a new one.
    std::optional<Proxy> proxyUsingTimeout(double timeout);
    std::optional<Proxy> proxy() { return proxyUsingTimeout(m_timeout); }

    /// Whether the running helper says so; false when none runs or when it does not know the question.
    bool stillBusy();
    /// Waits while the helper is still busy, at most `seconds`.
    void waitUntilDone(double seconds);

    /// Asks the launched helper to end, by SIGINT or SIGTERM, and forgets it.
    void interrupt();
    void terminate();
    /// Forgets the launched helper and this thread's connection to it.
    void invalidate();

    /// How the helper is launched from now on. Unless it is called the program gets no arguments, and
    /// registers the name that it knows by itself; with it, the name of this task.
    void setLaunch(const HelperLaunch& launch);
    /// Ends the launched helper at once and forgets it; of an attached one, all that it has started too.
    void killWithChildren();
    /// The launched helper; null when this task has launched none.
    Task* launchedTask() const { return m_task.get(); }
    /// That, or the one that was launched before; null when there was none.
    Task* lastTask() const { return m_task ? m_task.get() : m_ending.get(); }
    const String& registeredProxyName() const { return m_proxyName; }

    double timeout() const { return m_timeout; }
    void setTimeout(double seconds) { m_timeout = seconds; }

private:
    HelperTask(String path, String registeredProxyName, const RemoteProtocol* protocol, double timeout,
        QualityOfService quality);
    std::optional<Proxy> startAndConnect(double timeout);
    std::optional<Proxy> waitForProxy(double timeout);
    bool hasGivenUp() const { return m_failedAttempts > 1; }

    std::unique_ptr<Task> m_task;
    // Told to end. Until it has, it keeps the name from a new one.
    std::unique_ptr<Task> m_ending;
    String m_proxyName;
    String m_path;
    std::vector<String> m_arguments;
    bool m_isAttached = false;
    std::string m_log;
    double m_timeout;
    const RemoteProtocol* m_protocol;
    unsigned m_failedAttempts = 0;
    QualityOfService m_qualityOfService;
};

} // namespace caddis
