#include "platform/base/Log.h"
#include "platform/ipc/Server.h"
#include "service/CaddisHelper.h"
#include "service/OstraImExport.h"

#include <cstdlib>
#include <unistd.h>

using namespace caddis;

namespace {

// So long a second helper stays before it leaves, so that a caller who waits for it sees a normal process
// end.
constexpr unsigned FarewellSeconds = 1;

} // namespace

int main()
{
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
