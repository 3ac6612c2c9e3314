// JSON from programs that are scripts.
//
// Invariants: any text is read or refused; what was read is written as JSON that reads as the same
// descriptor.

#include "Fuzz.h"
#include "platform/script/DescriptorJSON.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view json(reinterpret_cast<const char*>(data), size);
    const auto value = caddis::descriptorFromJson(json);
    if (!value)
        return 0;
    const std::string written = caddis::jsonFromDescriptor(*value);
    const auto again = caddis::descriptorFromJson(written);
    INVARIANT(again.has_value());
    INVARIANT(caddis::jsonFromDescriptor(*again) == written);
    return 0;
}
