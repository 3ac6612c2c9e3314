#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace caddis {

/// What a program may use; the kernel enforces it for each process that it starts. 0: no limit.
struct ChildLimits {
    std::chrono::seconds processorTime { 10 };
    std::size_t memory = 2ULL << 30; ///< bytes of address space
    std::size_t fileSize = 256ULL << 20; ///< bytes of one written file
    /// Writes only below its folder and opens no socket: see Sandbox.h. Not for a program that makes a
    /// sandbox of its own out of namespaces.
    bool confined = true;
};

/// What a program is run with.
struct ChildCommand {
    std::vector<std::string> arguments; ///< the program's absolute path first
    std::string input; ///< its standard input; nothing: /dev/null
    std::string folder = "/"; ///< where it runs
    std::optional<std::vector<std::string>> environment {}; ///< "NAME=value" each; nil: this process's own
    std::chrono::milliseconds deadline { 60'000 };
    std::size_t mostOutput = 64 << 20; ///< bytes of standard output and standard error together
    /// Nil: the program is trusted. Otherwise it gets no descriptor but its three streams, can write only
    /// below `folder`, opens no socket (see Sandbox.h), and whatever it started is killed when it ends.
    std::optional<ChildLimits> limits {};
};

struct ChildResult {
    enum class Outcome {
        Exited,
        Signalled,
        TimedOut, ///< and was killed with its process group
        TooMuchOutput, ///< likewise
        NotStarted,
    };

    Outcome outcome = Outcome::NotStarted;
    int status = 0; ///< exit status or signal
    std::string output;
    std::string errorOutput;

    bool succeeded() const { return outcome == Outcome::Exited && status == 0; }
};

/// Runs a program to its end, in a process group of its own; it dies with the calling thread. What a trusted
/// program leaves in the background is not waited for, as long as that closed the output it inherited.
ChildResult runChild(const ChildCommand& command);

} // namespace caddis
