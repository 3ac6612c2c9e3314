// Web pages saved as one message.
//
// Invariants: the page is at most as long as the message; reading it again gives the same.

#include "Fuzz.h"
#include "bundles/Web/MhtmlFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    const auto page = caddis::bundles::readMhtml(file);
    const auto again = caddis::bundles::readMhtml(file);
    INVARIANT(page.has_value() == again.has_value() && (!page || page->bytes == again->bytes));
    INVARIANT(!page || page->bytes.size() <= size);
    return 0;
}
