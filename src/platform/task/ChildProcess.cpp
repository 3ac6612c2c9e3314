#include "platform/task/ChildProcess.h"

#include "platform/base/ArgumentPointers.h"
#include "platform/base/Descriptor.h"
#include "platform/sandbox/Sandbox.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace caddis {

namespace {

using Outcome = ChildResult::Outcome;

constexpr int CannotExecute = 127;
constexpr unsigned FirstClosedDescriptor = 3;

struct Pipe {
    Descriptor reader;
    Descriptor writer;

    bool open()
    {
        std::array<int, 2> ends {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            return false;
        reader = Descriptor(ends[0]);
        writer = Descriptor(ends[1]);
        return true;
    }
};

// All that the child needs is ready before the fork: between fork and exec only calls are allowed that take
// no lock.
struct Start {
    char* const* arguments;
    char* const* environment;
    const ChildCommand& command;
    int input;
    int output;
    int errors;
    pid_t parent;
    const Sandbox* sandbox; // null: not confined
};

void limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit both { most, most };
    if (most > 0)
        setrlimit(resource, &both);
}

void apply(const ChildLimits& limits)
{
    const rlimit noDump { 0, 0 };
    limit(RLIMIT_CPU, static_cast<rlim_t>(limits.processorTime.count()));
    limit(RLIMIT_AS, limits.memory);
    limit(RLIMIT_FSIZE, limits.fileSize);
    setrlimit(RLIMIT_CORE, &noDump);
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
}

[[noreturn]] void becomeProgram(const Start& start)
{
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != start.parent) // It died before the line above.
        _exit(CannotExecute);
    dup2(start.input, STDIN_FILENO);
    dup2(start.output, STDOUT_FILENO);
    dup2(start.errors, STDERR_FILENO);
    if (chdir(start.command.folder.c_str()) != 0)
        _exit(CannotExecute);
    if (start.command.limits)
        apply(*start.command.limits);
    if (start.sandbox && !start.sandbox->enter())
        _exit(CannotExecute);
    if (start.command.limits)
        syscall(SYS_close_range, FirstClosedDescriptor, ~0U, 0);
    execve(start.arguments[0], start.arguments, start.environment);
    _exit(CannotExecute);
}

class Exchange {
public:
    Exchange(const ChildCommand& command, ChildResult& result)
        : m_command(command)
        , m_result(result)
        , m_end(std::chrono::steady_clock::now() + command.deadline)
    {
    }

    bool start()
    {
        std::vector<std::string> words = m_command.arguments;
        std::vector<std::string> variables = m_command.environment.value_or(std::vector<std::string>());
        const auto arguments = pointersTo(words);
        const auto environment = pointersTo(variables);
        const Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
        if (!m_output.open() || !m_errors.open() || (!m_command.input.empty() && !m_input.open()))
            return false;
        const bool isConfined = m_command.limits && m_command.limits->confined;
        const auto sandbox = isConfined ? std::optional(Sandbox::forChild(m_command.folder)) : std::nullopt;
        const Start start { arguments.data(), m_command.environment ? environment.data() : environ, m_command,
            m_command.input.empty() ? nothing.number() : m_input.reader.number(), m_output.writer.number(),
            m_errors.writer.number(), getpid(), sandbox ? &*sandbox : nullptr };
        m_process = fork();
        if (m_process == 0)
            becomeProgram(start);
        if (m_process < 0)
            return false;
        // By number, because glibc 2.36 declares the function for C only.
        m_processDescriptor = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, m_process, 0)));
        m_output.writer = {};
        m_errors.writer = {};
        m_input.reader = {};
        if (m_input.writer.isOpen())
            fcntl(m_input.writer.number(), F_SETFL, O_NONBLOCK);
        return true;
    }

    void finish()
    {
        while (m_output.reader.isOpen() || m_errors.reader.isOpen() || !m_hasEnded) {
            const int left = millisecondsLeft();
            if (left <= 0)
                return endWith(Outcome::TimedOut);
            exchangeOnce(left);
            if (m_result.output.size() + m_result.errorOutput.size() > m_command.mostOutput)
                return endWith(Outcome::TooMuchOutput);
        }
        int status = 0;
        waitpid(m_process, &status, 0);
        m_result.outcome = WIFEXITED(status) ? Outcome::Exited : Outcome::Signalled;
        m_result.status = WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
    }

private:
    int millisecondsLeft() const
    {
        using std::chrono::milliseconds;
        const auto left = std::chrono::duration_cast<milliseconds>(m_end - std::chrono::steady_clock::now());
        return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 1000));
    }

    void exchangeOnce(int milliseconds)
    {
        const int process = m_hasEnded ? -1 : m_processDescriptor.number();
        std::array<pollfd, 4> waits { { { m_output.reader.number(), POLLIN, 0 },
            { m_errors.reader.number(), POLLIN, 0 }, { m_input.writer.number(), POLLOUT, 0 },
            { process, POLLIN, 0 } } };
        if (poll(waits.data(), waits.size(), milliseconds) <= 0)
            return;
        if (waits[0].revents)
            readInto(m_output.reader, m_result.output);
        if (waits[1].revents)
            readInto(m_errors.reader, m_result.errorOutput);
        if (waits[2].revents)
            writeSome();
        if (waits[3].revents)
            noticeEnd();
    }

    // The process has not been waited for yet, so its number is still its group's and nobody else's.
    void noticeEnd()
    {
        m_hasEnded = true;
        if (m_command.limits)
            kill(-m_process, SIGKILL);
    }

    static void readInto(Descriptor& from, std::string& text)
    {
        std::array<char, 16384> buffer {};
        const ssize_t count = read(from.number(), buffer.data(), buffer.size());
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            from = {};
    }

    void writeSome()
    {
        const ssize_t count = write(
            m_input.writer.number(), m_command.input.data() + m_written, m_command.input.size() - m_written);
        if (count > 0)
            m_written += static_cast<std::size_t>(count);
        if (m_written == m_command.input.size() || (count < 0 && errno != EAGAIN && errno != EINTR))
            m_input.writer = {};
    }

    void endWith(Outcome outcome)
    {
        kill(-m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
        m_result.outcome = outcome;
    }

    const ChildCommand& m_command;
    ChildResult& m_result;
    const std::chrono::steady_clock::time_point m_end;
    Pipe m_input;
    Pipe m_output;
    Pipe m_errors;
    pid_t m_process = -1;
    Descriptor m_processDescriptor;
    bool m_hasEnded = false;
    std::size_t m_written = 0;
};

// A program that does not read its input must not end this one.
class IgnoredPipeSignal {
public:
    IgnoredPipeSignal() { m_previous = std::signal(SIGPIPE, SIG_IGN); }
    ~IgnoredPipeSignal() { std::signal(SIGPIPE, m_previous); }
    IgnoredPipeSignal(const IgnoredPipeSignal&) = delete;
    IgnoredPipeSignal& operator=(const IgnoredPipeSignal&) = delete;

private:
    void (*m_previous)(int);
};

} // namespace

ChildResult runChild(const ChildCommand& command)
{
    const IgnoredPipeSignal guard;
    ChildResult result;
    Exchange exchange(command, result);
    if (exchange.start())
        exchange.finish();
    return result;
}

} // namespace caddis
