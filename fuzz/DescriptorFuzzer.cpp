// Flattened descriptors.
//
// Invariants: what can be read can be written, and reads back as the same descriptor; every item can be asked
// for its text, number and date.

#include "Fuzz.h"
#include "platform/script/FlattenedDescriptor.h"

using caddis::EventDescriptor;

namespace {

void askEverything(const EventDescriptor& descriptor)
{
    (void)descriptor.stringValue();
    (void)descriptor.int32Value();
    (void)descriptor.dateValue();
    for (const auto& field : descriptor.fields())
        askEverything(field.value);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const caddis::Data bytes = caddis::Data::copyOf({ reinterpret_cast<const char*>(data), size });
    const auto descriptor = caddis::unflattenDescriptor(bytes);
    if (!descriptor)
        return 0;
    askEverything(*descriptor);
    const auto again = caddis::unflattenDescriptor(caddis::flattenDescriptor(*descriptor));
    INVARIANT(again.has_value());
    INVARIANT(*again == *descriptor);
    return 0;
}
