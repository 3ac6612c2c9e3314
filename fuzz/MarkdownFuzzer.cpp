// The head of Markdown files.
//
// Invariants: those of ImporterRun.h.

#include "ImporterRun.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    caddis::importTwice("net.daringfireball.markdown", data, size);
    return 0;
}
