// Bytes without a word on their encoding; the first one chooses what the caller thinks they are.
//
// Invariants: no more than three units a byte; the encoding reported is the one that gives this text, but for
// a mark; well-formed UTF-8 comes back unchanged.

#include "Fuzz.h"
#include "platform/unicode/PlainText.h"
#include "platform/unicode/TextEncoding.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    constexpr NSStringEncoding encodings[] = { NSStringEncoding::InvalidId, NSStringEncoding::UTF8,
        NSStringEncoding::Unicode, NSStringEncoding::ASCII, NSStringEncoding::ShiftJIS };
    const NSStringEncoding given = encodings[data[0] % 5];
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);

    const PlainText plain = plainTextOfData(bytes, given);
    INVARIANT(plain.text.length() <= 3 * bytes.size());
    const auto again = decodeText(bytes, plain.usedEncoding);
    INVARIANT(again && (*again == plain.text || again->view().substr(1) == plain.text.view()));
    const auto utf8 = String::fromStrictUtf8(bytes);
    if (utf8 && plain.usedEncoding == NSStringEncoding::UTF8)
        INVARIANT(
            *utf8 == plain.text || *utf8 == String(std::u16string(1, 0xFEFF).append(plain.text.view())));
    return 0;
}
