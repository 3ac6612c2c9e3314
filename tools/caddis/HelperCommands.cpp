#include "HelperCommands.h"

#include "client/HelperProxy.h"

#include <chrono>
#include <cstdio>

namespace caddis::tool {

ExitCode ping(const Invocation& invocation)
{
    const HelperProxy helper(invocation.helper());
    const auto start = std::chrono::steady_clock::now();
    helper.ping();
    const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
    if (invocation.json)
        std::printf("{\"milliseconds\": %.3f}\n", elapsed.count());
    else
        std::printf("the helper answered in %.3f ms\n", elapsed.count());
    return Success;
}

ExitCode terminate(const Invocation& invocation)
{
    const auto running = invocation.runningHelper();
    if (!running) {
        std::fputs("no helper is running\n", stderr);
        return NothingFound;
    }
    HelperProxy(*running).terminate();
    return Success;
}

} // namespace caddis::tool
