// Flat RTFD.
//
// Invariants: contents lie in the block; what is written of a folder reads as the same folder, and is then
// written byte for byte the same.

#include "Fuzz.h"
#include "platform/richtext/FlatRTFD.h"

namespace {

void checkInside(const caddis::FileWrapper& item, const caddis::Data& block)
{
    INVARIANT(item.contents.isEmpty()
        || (item.contents.bytes() >= block.bytes()
            && item.contents.bytes() + item.contents.size() <= block.bytes() + block.size()));
    for (const auto& member : item.members)
        checkInside(member, block);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace caddis;
    const Data block = Data::copyOf({ reinterpret_cast<const char*>(data), size });
    const auto folder = fileWrapperWithFlatRTFD(block);
    if (!folder)
        return 0;
    checkInside(*folder, block);
    const auto written = flatRTFDOfFileWrapper(*folder);
    INVARIANT(written);
    const auto again = fileWrapperWithFlatRTFD(*written);
    INVARIANT(again);
    INVARIANT(flatRTFDOfFileWrapper(*again) == written);
    return 0;
}
