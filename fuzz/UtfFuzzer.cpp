// UTF-8 in and out.
//
// Invariants: never more units than bytes; the strict reader accepts exactly what comes back unchanged;
// what was decoded leniently is well formed, and encodes and decodes to itself.

#include "Fuzz.h"
#include "platform/base/String.h"

using caddis::String;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const String text = String::fromUtf8(bytes);
    INVARIANT(text.length() <= size);
    INVARIANT(text.isWellFormed());
    const std::string again = text.utf8();
    INVARIANT(String::fromUtf8(again) == text);

    const auto strict = String::fromStrictUtf8(bytes);
    INVARIANT(strict.has_value() == (again == bytes));
    INVARIANT(!strict || *strict == text);
    return 0;
}
