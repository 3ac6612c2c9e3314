// Property lists in all three forms.
//
// Invariants: what a list holds is bounded by its bytes, whatever they share; and what the old-style writer
// wrote of it, the old-style reader reads; of strings and data alone, it writes the same again.

#include "Fuzz.h"
#include "ValueCount.h"
#include "platform/files/PropertyList.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto list = PropertyList::read(Data::copyOf({ reinterpret_cast<const char*>(data), size }));
    if (!list)
        return 0;
    INVARIANT(countOf(*list) <= 2 * size + 1);
    const auto again = PropertyList::readOldStyle(String::fromUtf8(PropertyList::writeOldStyle(*list)));
    INVARIANT(again);
    const std::string plain = PropertyList::writeOldStyle(*again);
    INVARIANT(PropertyList::readOldStyle(String::fromUtf8(plain)) == again);
    return 0;
}
