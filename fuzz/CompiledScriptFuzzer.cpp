// Compiled scripts.
//
// Invariants: any bytes give an outline or nil; an outline has no more names than the bytes have room for.

#include "Fuzz.h"
#include "platform/script/applescript/CompiledOutline.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (const auto outline = caddis::compiledOutline({ data, size }))
        INVARIANT((outline->handlers.size() + outline->properties.size()) * 2 <= size);
    return 0;
}
