// Outlines and mind maps.
//
// Invariants: those of ImporterRun.h.

#include "ImporterRun.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    caddis::importTwice("org.opml.opml", data, size);
    return 0;
}
