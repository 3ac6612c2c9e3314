// OpenDocument files, packed and flat.
//
// Invariants: those of ImporterRun.h.

#include "ImporterRun.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    caddis::importTwice("org.oasis-open.opendocument.text", data, size);
    return 0;
}
