#include "platform/script/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace caddis {

namespace {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }
    void reset(int number)
    {
        close();
        m_number = number;
    }
    void close()
    {
        if (m_number >= 0)
            ::close(m_number);
        m_number = -1;
    }

private:
    int m_number = -1;
};

struct Pipe {
    Descriptor reader;
    Descriptor writer;

    bool open()
    {
        std::array<int, 2> ends {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            return false;
        reader.reset(ends[0]);
        writer.reset(ends[1]);
        return true;
    }
};

constexpr int CannotExecute = 127;

// Between fork and exec: only calls that are safe there.
[[noreturn]] void becomeProgram(
    char* const* arguments, const char* folder, int input, const Pipe& output, const Pipe& errors)
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(input, STDIN_FILENO);
    dup2(output.writer.number(), STDOUT_FILENO);
    dup2(errors.writer.number(), STDERR_FILENO);
    signal(SIGPIPE, SIG_DFL);
    if (chdir(folder) != 0)
        _exit(CannotExecute);
    execv(arguments[0], arguments);
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
        std::vector<std::string> texts = m_command.arguments;
        std::vector<char*> arguments;
        arguments.reserve(texts.size() + 1);
        for (std::string& text : texts)
            arguments.push_back(text.data());
        arguments.push_back(nullptr);
        Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
        if (!m_output.open() || !m_errors.open() || (!m_command.input.empty() && !m_input.open()))
            return false;
        const int input = m_command.input.empty() ? nothing.number() : m_input.reader.number();
        m_process = fork();
        if (m_process == 0)
            becomeProgram(arguments.data(), m_command.folder.c_str(), input, m_output, m_errors);
        m_output.writer.close();
        m_errors.writer.close();
        m_input.reader.close();
        if (m_input.writer.isOpen())
            fcntl(m_input.writer.number(), F_SETFL, O_NONBLOCK);
        return m_process > 0;
    }

    void finish()
    {
        using Outcome = ChildResult::Outcome;
        while (m_output.reader.isOpen() || m_errors.reader.isOpen()) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                m_end - std::chrono::steady_clock::now());
            if (left.count() <= 0)
                return endWith(Outcome::TimedOut);
            exchangeOnce(static_cast<int>(std::min<std::int64_t>(left.count(), 1000)));
            if (m_result.output.size() + m_result.errorOutput.size() > m_command.mostOutput)
                return endWith(Outcome::TooMuchOutput);
        }
        waitForEnd();
    }

private:
    void exchangeOnce(int milliseconds)
    {
        std::array<pollfd, 3> waits { { { m_output.reader.number(), POLLIN, 0 },
            { m_errors.reader.number(), POLLIN, 0 }, { m_input.writer.number(), POLLOUT, 0 } } };
        if (poll(waits.data(), waits.size(), milliseconds) <= 0)
            return;
        if (waits[0].revents)
            readInto(m_output.reader, m_result.output);
        if (waits[1].revents)
            readInto(m_errors.reader, m_result.errorOutput);
        if (waits[2].revents)
            writeSome();
    }
    static void readInto(Descriptor& from, std::string& text)
    {
        std::array<char, 16384> buffer {};
        const ssize_t count = read(from.number(), buffer.data(), buffer.size());
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            from.close();
    }
    void writeSome()
    {
        const ssize_t count = write(
            m_input.writer.number(), m_command.input.data() + m_written, m_command.input.size() - m_written);
        if (count > 0)
            m_written += static_cast<std::size_t>(count);
        if (m_written == m_command.input.size() || (count < 0 && errno != EAGAIN && errno != EINTR))
            m_input.writer.close();
    }
    void endWith(ChildResult::Outcome outcome)
    {
        kill(-m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
        m_result.outcome = outcome;
    }
    // The output is closed; a program that lives on nevertheless has the rest of its time.
    void waitForEnd()
    {
        int status = 0;
        while (waitpid(m_process, &status, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() >= m_end)
                return endWith(ChildResult::Outcome::TimedOut);
            usleep(1000);
        }
        const bool exited = WIFEXITED(status);
        m_result.outcome = exited ? ChildResult::Outcome::Exited : ChildResult::Outcome::Signalled;
        m_result.status = exited ? WEXITSTATUS(status) : WTERMSIG(status);
    }

    const ChildCommand& m_command;
    ChildResult& m_result;
    const std::chrono::steady_clock::time_point m_end;
    Pipe m_input;
    Pipe m_output;
    Pipe m_errors;
    pid_t m_process = -1;
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
