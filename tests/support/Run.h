#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace caddis {

/// How a command ended and what it printed, errors included.
struct Outcome {
    int status;
    std::string output;
};

/// Runs a shell command to its end.
inline Outcome run(const std::string& command)
{
    std::FILE* pipe = popen(("(" + command + ") 2>&1").c_str(), "r");
    Outcome outcome { -1, {} };
    std::array<char, 4096> piece {};
    for (std::size_t count; (count = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;)
        outcome.output.append(piece.data(), count);
    const int status = pclose(pipe);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return outcome;
}

} // namespace caddis
