#include "platform/ipc/Task.h"

#include "platform/base/ArgumentPointers.h"
#include "platform/base/Exception.h"
#include "platform/ipc/Session.h"

#include <csignal>
#include <fcntl.h>
#include <linux/ioprio.h>
#include <mutex>
#include <poll.h>
#include <sched.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace caddis {

namespace {

constexpr int FirstClosedDescriptor = 3;

[[noreturn]] void fail(std::u16string_view reason)
{
    throw Exception(String(u"InvalidArgumentException"), String(reason));
}

// What posix_spawn wants besides the program: the streams, and signals as the program expects them.
class SpawnSettings {
public:
    explicit SpawnSettings(bool ownSession)
    {
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_init(&m_attributes);
        const int session = ownSession ? POSIX_SPAWN_SETSID : 0;
        posix_spawnattr_setflags(
            &m_attributes, static_cast<short>(POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | session));
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, FirstClosedDescriptor);
    }
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    void appendStandardErrorTo(const std::string& path)
    {
        posix_spawn_file_actions_addopen(
            &m_actions, STDERR_FILENO, path.c_str(), O_WRONLY | O_APPEND | O_CREAT, S_IRUSR | S_IWUSR);
    }

    const posix_spawn_file_actions_t* actions() const { return &m_actions; }
    const posix_spawnattr_t* attributes() const { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

// A name for the process that no other one can get. By number, because glibc 2.36 declares the functions for
// C only.
Descriptor descriptorOf(pid_t process)
{
    return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
}

// From outside, so that the program runs no code of ours; the few instructions before that do not matter.
void applyQuality(pid_t process, QualityOfService quality)
{
    const auto setInputOutput = [process](int priorityClass, int level) {
        syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, process, IOPRIO_PRIO_VALUE(priorityClass, level));
    };
    const auto id = static_cast<id_t>(process);
    if (quality == QualityOfService::Utility) {
        setpriority(PRIO_PROCESS, id, 5);
        setInputOutput(IOPRIO_CLASS_BE, 6);
    } else if (quality == QualityOfService::Background) {
        const sched_param unused = {};
        setpriority(PRIO_PROCESS, id, 10);
        sched_setscheduler(process, SCHED_IDLE, &unused);
        setInputOutput(IOPRIO_CLASS_IDLE, 0);
    }
}

// Children whose task went away while they ran. They are waited for when the next task comes or goes, so that
// they do not stay behind as zombies.
class Abandoned {
public:
    void add(Descriptor process)
    {
        const std::scoped_lock guard(m_lock);
        m_processes.push_back(std::move(process));
    }
    void reap()
    {
        const std::scoped_lock guard(m_lock);
        std::erase_if(m_processes, [](const Descriptor& process) {
            siginfo_t information = {};
            const auto id = static_cast<id_t>(process.number());
            return waitid(P_PIDFD, id, &information, WEXITED | WNOHANG) != 0 || information.si_pid != 0;
        });
    }

private:
    std::mutex m_lock;
    std::vector<Descriptor> m_processes;
};

Abandoned& abandoned()
{
    static auto& instance = *new Abandoned;
    return instance;
}

} // namespace

Task::Task(String launchPath, std::vector<String> arguments)
    : m_launchPath(std::move(launchPath))
    , m_arguments(std::move(arguments))
{
}

Task::~Task()
{
    if (m_processDescriptor.isOpen() && isRunning())
        abandoned().add(std::move(m_processDescriptor));
    abandoned().reap();
}

bool Task::launch()
{
    abandoned().reap();
    if (m_process != 0)
        fail(u"the task has been launched before");
    std::vector<std::string> words { m_launchPath.utf8() };
    for (const String& argument : m_arguments)
        words.push_back(argument.utf8());
    SpawnSettings settings(m_hasOwnSession);
    if (!m_errorFile.empty())
        settings.appendStandardErrorTo(m_errorFile);
    pid_t process = 0;
    if (posix_spawn(&process, words[0].c_str(), settings.actions(), settings.attributes(),
            pointersTo(words).data(), environ)
        != 0)
        return false;
    m_process = process;
    m_processDescriptor = descriptorOf(process);
    applyQuality(process, m_quality);
    if (!m_processDescriptor.isOpen())
        fail(u"no descriptor for the process");
    return true;
}

// Whether the program has ended by now. Somebody else may have waited for it; then the status is unknown.
bool Task::reap(int options)
{
    if (m_status || !m_processDescriptor.isOpen())
        return true;
    siginfo_t information = {};
    int result = 0;
    do {
        result = waitid(P_PIDFD, id_t(m_processDescriptor.number()), &information, WEXITED | options);
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        m_status = EXIT_FAILURE;
    else if (information.si_pid != 0)
        m_status = information.si_status + (information.si_code == CLD_EXITED ? 0 : 128);
    return m_status.has_value();
}

bool Task::isRunning() { return m_process != 0 && !reap(WNOHANG); }

std::optional<int> Task::terminationStatus()
{
    reap(WNOHANG);
    return m_status;
}

int Task::waitUntilExit()
{
    reap(0);
    return m_status.value_or(EXIT_FAILURE);
}

bool Task::waitUntilExit(double seconds)
{
    // The descriptor becomes readable when the program ends. A signal that cuts the wait short does no harm.
    pollfd ended { m_processDescriptor.number(), POLLIN, 0 };
    poll(&ended, 1, static_cast<int>(seconds * 1000));
    return !isRunning();
}

std::optional<Task::Ending> Task::ending(double seconds) const
{
    pollfd ended { m_processDescriptor.number(), POLLIN, 0 };
    poll(&ended, 1, static_cast<int>(seconds * 1000));
    siginfo_t information = {};
    const auto id = static_cast<id_t>(m_processDescriptor.number());
    if (waitid(P_PIDFD, id, &information, WEXITED | WNOHANG | WNOWAIT) != 0 || information.si_pid == 0)
        return std::nullopt;
    if (information.si_code == CLD_EXITED)
        return Ending { information.si_status, 0 };
    return Ending { 0, information.si_status };
}

void Task::killSession()
{
    if (m_process == 0 || m_status)
        return;
    syscall(SYS_pidfd_send_signal, m_processDescriptor.number(), SIGKILL, nullptr, 0);
    // The dead leader is not collected before: until then its number can't become another session's.
    if (m_hasOwnSession)
        killProcessesOfSession(m_process);
    reap(0);
}

void Task::signal(int number)
{
    if (isRunning())
        syscall(SYS_pidfd_send_signal, m_processDescriptor.number(), number, nullptr, 0);
}

void Task::interrupt() { signal(SIGINT); }

void Task::terminate() { signal(SIGTERM); }

inline namespace NSTaskOstraExtensions {

bool launchTaskAndWaitUntilExitWithLaunchPath(const String& path, const std::vector<String>& arguments)
{
    Task task(path, arguments);
    return guarded(u"launchTaskAndWaitUntilExitWithLaunchPath:arguments:", u"NSTask",
        [&] { return task.launch() && task.waitUntilExit() == 0; });
}

bool launchAndWaitUntilExit(Task& task)
{
    return guarded(
        u"launchAndWaitUntilExit", u"NSTask", [&] { return task.launch() && task.waitUntilExit() == 0; });
}

} // namespace NSTaskOstraExtensions

} // namespace caddis
