#include "platform/ipc/Session.h"

#include <charconv>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace caddis {

namespace {

// A process that goes on starting others can't do so for ever: in each round all that were seen are dead.
constexpr int MostRounds = 20;

// "PID (NAME) STATE PARENT GROUP SESSION …"; the name may hold anything, parentheses too.
bool isLivingMember(const std::filesystem::path& process, pid_t session)
{
    std::ifstream file(process / "stat");
    std::string line;
    std::getline(file, line);
    const auto nameEnd = line.rfind(')');
    if (nameEnd == line.npos)
        return false;
    char state = 0;
    int parent = 0;
    int group = 0;
    int its = 0;
    return std::sscanf(line.c_str() + nameEnd + 1, " %c %d %d %d", &state, &parent, &group, &its) == 4
        && its == session && state != 'Z' && state != 'X';
}

int killOnce(pid_t session)
{
    int killed = 0;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename();
        pid_t process = 0;
        const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), process);
        if (failure == std::errc() && end == name.data() + name.size()
            && isLivingMember(entry.path(), session))
            killed += kill(process, SIGKILL) == 0;
    }
    return killed;
}

} // namespace

void killProcessesOfSession(pid_t session)
{
    for (int round = 0; round < MostRounds && killOnce(session) > 0; ++round)
        usleep(1000);
}

} // namespace caddis
