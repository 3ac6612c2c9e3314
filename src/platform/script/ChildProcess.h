#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace caddis {

/// What a program is run with.
struct ChildCommand {
    std::vector<std::string> arguments; ///< the program's absolute path first
    std::string input; ///< its standard input; nothing: /dev/null
    std::string folder = "/"; ///< where it runs
    std::chrono::milliseconds deadline { 60'000 };
    std::size_t mostOutput = 64 << 20; ///< bytes of standard output and standard error together
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
};

/// Runs a program to its end. What it leaves in the background is not waited for, as long as that closed the
/// output it inherited.
ChildResult runChild(const ChildCommand& command);

} // namespace caddis
