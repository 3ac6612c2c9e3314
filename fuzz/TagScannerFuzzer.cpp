// The tag scanner on any units, at every vector width.
//
// Invariants: text runs and tags, in order, are the whole text; a name lies inside its tag; the calls are
// those of the reference scanner.

#include "Fuzz.h"
#include "markup/ReferenceScanner.h"
#include "markup/UnitMasks.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const String text = String::fromUtf8({ reinterpret_cast<const char*>(data), size });
    const auto expected = reference::Scanner(text).scan();
    std::size_t next = 0;
    for (const reference::Call& call : expected) {
        INVARIANT(call.text.location == next && call.tag.location == call.text.end());
        INVARIANT(!call.name.isFound()
            || (call.name.location > call.tag.location && call.name.end() < call.tag.end()));
        next = call.tag.end();
    }
    INVARIANT(next == text.length());
    for (int width = 0; width <= static_cast<int>(widestVectors()); ++width) {
        useVectors(static_cast<VectorWidth>(width));
        INVARIANT(reference::fastCalls(text) == expected);
    }
    return 0;
}
