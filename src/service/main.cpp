#include "platform/base/Log.h"
#include "platform/ipc/Server.h"
#include "service/CaddisHelper.h"
#include "service/HelperOptions.h"
#include "service/OstraImExport.h"
#include "service/ProcessLimits.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

using namespace caddis;

namespace {

// So long a second helper stays before it leaves, so that a caller who waits for it sees a normal process
// end.
constexpr unsigned FarewellSeconds = 1;
constexpr int WrongUsage = 2;

// Requests come in series, and each needs about as much memory as the one before. Given back to the kernel
// after each, it would be faulted in again page by page, which takes as long as inflating a book does.
void keepFreedMemory()
{
    constexpr int KeptBytes = 64 << 20;
    constexpr int GrowthBytes = 1 << 20;
    constexpr int LargestInHeap = 32 << 20; // The most that glibc takes.
    mallopt(M_TRIM_THRESHOLD, KeptBytes);
    mallopt(M_TOP_PAD, GrowthBytes);
    mallopt(M_MMAP_THRESHOLD, LargestInHeap);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const auto options
        = HelperOptions::read({ arguments + 1, static_cast<std::size_t>(std::max(argumentCount - 1, 0)) });
    if (!options)
        return WrongUsage;
    keepFreedMemory();
    limitProcess(*options);
    CaddisHelper helper;
    const bool isReader = options->profile == HelperOptions::Profile::Reader;
    Server server(isReader ? withoutWriting(ostraImExport(helper)) : ostraImExport(helper));
    if (!server.registerName(options->name)) {
        log(u"Couldn't register service %@", options->name);
        sleep(FarewellSeconds);
        return EXIT_SUCCESS;
    }
    if (options->hasScratchFolder())
        useScratchFolder(options->name);
    if (isReader)
        enterReaderProfile();
    server.run();
}
