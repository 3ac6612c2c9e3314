// Bytes in every encoding. The first two bytes choose it, the rest is the text.
//
// Invariants: no more than three units a byte; nothing is replaced in what the strict reader accepts;
// well-formed text in Windows Latin 1 and UTF-8 is written as it was read.

#include "Fuzz.h"
#include "platform/unicode/TextEncoding.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    constexpr CFStringEncoding wide[] = { CFStringEncoding::UTF8, CFStringEncoding::UTF16BE,
        CFStringEncoding::UTF16LE, CFStringEncoding::UTF7, CFStringEncoding::UTF32 };
    const unsigned number = unsigned { data[0] } << 8 | data[1];
    const auto encoding = number >= 0xFF00 ? wide[number % 5] : CFStringEncoding { number };
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);

    const auto text = decodeText(bytes, encoding);
    INVARIANT(text.has_value() == isEncodingAvailable(encoding));
    if (!text)
        return 0;
    INVARIANT(text->length() <= 3 * bytes.size());
    const auto strict = decodeText(bytes, encoding, IllFormed::Fail);
    INVARIANT(!strict || *strict == *text);

    const bool isWestern = encoding == CFStringEncoding::WindowsLatin1 || encoding == CFStringEncoding::UTF8;
    if (isWestern && strict)
        INVARIANT(encodeText(*text, convertEncodingToNSStringEncoding(encoding)) == bytes);
    encodeText(*text, convertEncodingToNSStringEncoding(encoding));
    return 0;
}
