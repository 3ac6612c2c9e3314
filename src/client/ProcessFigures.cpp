#include "client/ProcessFigures.h"

#include "platform/base/Descriptor.h"

#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <unistd.h>

namespace caddis {

namespace {

std::string folderOf(pid_t process) { return "/proc/" + std::to_string(process); }

// The number after a name, in a file of names and numbers.
std::uint64_t numberNamed(const std::string& name, const std::string& path)
{
    std::ifstream file(path);
    for (std::string word; file >> word;) {
        std::uint64_t number = 0;
        if (word == name && file >> number)
            return number;
    }
    return 0;
}

} // namespace

// Asked between requests, and so without a stream.
std::uint64_t residentBytes(pid_t process)
{
    const Descriptor file(open((folderOf(process) + "/statm").c_str(), O_RDONLY | O_CLOEXEC));
    char text[128] = {};
    unsigned long long pages = 0;
    if (!file.isOpen() || read(file.number(), text, sizeof text - 1) <= 0
        || std::sscanf(text, "%*u %llu", &pages) != 1)
        return 0;
    return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

std::uint64_t mostResidentBytes(pid_t process)
{
    return numberNamed("VmHWM:", folderOf(process) + "/status") << 10;
}

std::uint64_t kernelKills() { return numberNamed("oom_kill", "/proc/vmstat"); }

} // namespace caddis
