// The table of contents and the rights document of a book, each read from the same bytes.
//
// Invariants: entries of the contents have content and label, and children are never an empty list; a scheme
// of rights management has a name.

#include "Fuzz.h"
#include "epub/DRMParser.h"
#include "epub/NCXParser.h"

using namespace caddis;

namespace {

void checkEntries(const Array& entries)
{
    for (const Value& value : entries) {
        const Dictionary& entry = *value.as<Dictionary>();
        INVARIANT(entry.stringForKey(u"content") && entry.stringForKey(u"label"));
        const Value* children = entry.find(u"children");
        INVARIANT(!children || !children->as<Array>()->empty());
        if (children)
            checkEntries(*children->as<Array>());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Data bytes = Data::copyOf({ reinterpret_cast<const char*>(data), size });
    checkEntries(NCXParser(bytes).children());
    const DRMParser rights(bytes);
    INVARIANT(!rights.DRM() || !rights.DRM()->isEmpty());
    return 0;
}
