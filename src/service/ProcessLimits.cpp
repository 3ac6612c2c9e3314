#include "service/ProcessLimits.h"

#include "platform/base/Log.h"
#include "platform/files/FileSystem.h"
#include "platform/files/InstallRoots.h"
#include "platform/ipc/RuntimeDirectory.h"
#include "platform/sandbox/Sandbox.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace caddis {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool MemoryCanBeLimited = false; // The sanitizer's shadow alone is terabytes.
#else
constexpr bool MemoryCanBeLimited = true;
#endif

constexpr std::uint64_t MostMemory = std::uint64_t(16) << 30;

std::uint64_t spareMemory()
{
    std::ifstream file("/proc/meminfo");
    std::string name;
    std::uint64_t kibibytes = 0;
    for (std::string unit; file >> name >> kibibytes; std::getline(file, unit)) {
        if (name == "MemAvailable:")
            return std::min(MostMemory, kibibytes * 1024 / 5 * 4);
    }
    return MostMemory;
}

void setLimit(__rlimit_resource resource, rlim_t most)
{
    const rlimit both { most, most };
    setrlimit(resource, &both);
}

} // namespace

void limitProcess(const HelperOptions& options)
{
    setLimit(RLIMIT_CORE, 0);
    std::ofstream("/proc/self/oom_score_adj") << 300;
    // Of data, not of address space: what is mapped to be read costs nothing, and the modules map much.
    if (MemoryCanBeLimited)
        setLimit(RLIMIT_DATA, options.memory ? options.memory : spareMemory());
    if (options.launcher == 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != options.launcher) // It has gone before the line above.
        std::exit(EXIT_SUCCESS);
}

void useScratchFolder(const String& name)
{
    const auto path = scratchPathForName(name);
    std::error_code error;
    std::filesystem::remove_all(*path, error);
    if (mkdir(path->c_str(), S_IRWXU) == 0)
        setenv("TMPDIR", path->c_str(), 1);
    else
        log(u"%s: no folder for temporary files", std::string_view(*path));
}

void enterReaderProfile()
{
    const char* const scratch = std::getenv("TMPDIR");
    const auto tool = fileSystemRepresentation(InstallRoots::real(u"/usr/bin/mdimport"_s)).value_or("");
    const Sandbox sandbox
        = Sandbox::forReader(scratch ? scratch : "", std::filesystem::path(tool).parent_path().string());
    if (!sandbox.enter())
        log(u"The reader's profile could not be entered");
    for (const std::string& line : sandbox.whatIsMissing())
        log(u"%s", std::string_view(line));
}

} // namespace caddis
