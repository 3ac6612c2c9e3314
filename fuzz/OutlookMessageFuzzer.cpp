// Saved messages.
//
// Invariants: those of ImporterRun.h.

#include "ImporterRun.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    caddis::importTwice("com.microsoft.outlook.msg", data, size);
    return 0;
}
