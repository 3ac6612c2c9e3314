#pragma once

#include "platform/base/Descriptor.h"
#include "platform/base/String.h"

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace caddis {

/// How much a program's work matters to the person in front of the machine.
///
///     UserInteractive, UserInitiated, Default   no change
///     Utility                                   nice 5, lowest best-effort I/O
///     Background                                nice 10, runs when nothing else does, idle I/O
enum class QualityOfService { UserInteractive, UserInitiated, Default, Utility, Background };

/// A child process: described first, then launched once.
///
/// The program gets this process's environment and, unless told otherwise, standard streams, no other
/// descriptor, and default signal handling. It is not stopped when the task goes away.
class Task {
public:
    explicit Task(String launchPath, std::vector<String> arguments = {});
    Task(Task&&) noexcept = default;
    Task& operator=(Task&&) = delete;
    ~Task();

    const String& launchPath() const { return m_launchPath; }
    void setQualityOfService(QualityOfService quality) { m_quality = quality; }
    /// Standard error is appended to the file.
    void setStandardErrorToFile(std::string path) { m_errorFile = std::move(path); }
    /// The program leads a session of its own: what is typed at the terminal does not interrupt it, and
    /// killSession finds whatever it has started.
    void setOwnSession() { m_hasOwnSession = true; }

    /// Starts the program. False when it cannot be started at all: there is none at the path, or it is none.
    /// Throws Exception "InvalidArgumentException" when the task has been launched before, or when there is
    /// no descriptor for it.
    bool launch();
    bool isRunning();
    /// SIGINT and SIGTERM; nothing happens when the program has ended.
    void interrupt();
    void terminate();
    /// The exit status, or 128 and the number of the signal that ended it.
    int waitUntilExit();
    /// Waits for the end, at most so long; whether it came.
    bool waitUntilExit(double seconds);
    /// The exit status without waiting; nil while the program runs, and when it was never started.
    std::optional<int> terminationStatus();

    /// How the program ended: its exit status, or the signal that ended it, else 0.
    struct Ending {
        int status;
        int signal;
    };
    /// Waits for the end, at most so long, without collecting it: processIdentifier() stays this program's.
    /// Nil while it runs.
    std::optional<Ending> ending(double seconds) const;
    /// Ends the program and every process of its session at once; only after setOwnSession.
    void killSession();

    pid_t processIdentifier() const { return m_process; }

private:
    bool reap(int options);
    void signal(int number);

    String m_launchPath;
    std::vector<String> m_arguments;
    QualityOfService m_quality = QualityOfService::Default;
    std::string m_errorFile;
    bool m_hasOwnSession = false;

    pid_t m_process = 0;
    Descriptor m_processDescriptor;
    std::optional<int> m_status;
};

inline namespace NSTaskOstraExtensions {

/// Runs a program to its end. True when its status is 0; false when it is another one, when there is no such
/// program, and (logged) on an exception.
bool launchTaskAndWaitUntilExitWithLaunchPath(const String& path, const std::vector<String>& arguments);
bool launchAndWaitUntilExit(Task& task);

} // namespace NSTaskOstraExtensions

} // namespace caddis
