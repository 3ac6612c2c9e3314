#include "platform/base/Log.h"
#include "platform/ipc/Server.h"
#include "service/CaddisHelper.h"
#include "service/OstraImExport.h"

#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

using namespace caddis;

namespace {

// So long a second helper stays before it leaves, so that a caller who waits for it sees a normal process
// end.
constexpr unsigned FarewellSeconds = 1;

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

int main()
{
    keepFreedMemory();
    CaddisHelper helper;
    Server server(ostraImExport(helper));
    const String name(ServiceName);
    if (!server.registerName(name)) {
        log(u"Couldn't register service %@", name);
        sleep(FarewellSeconds);
        return EXIT_SUCCESS;
    }
    server.run();
}
