// Compressed rich text of mails.
//
// Invariants: the text is at most as long as its head says, but for the last reference, which is whole; nine
// bytes of input give at most 8 references of 17 characters.

#include "Fuzz.h"
#include "bundles/OutlookMessage/CompressedRtf.h"
#include "bundles/support/LittleEndian.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace caddis::bundles;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto text = decompressRtf(bytes);
    if (!text)
        return 0;
    constexpr std::size_t LongestItems = 8 * 17;
    INVARIANT(text->size() <= u32(bytes, 4) + LongestItems);
    INVARIANT(text->size() <= (size + 9) * 17);
    return 0;
}
