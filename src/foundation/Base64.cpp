#include "foundation/Base64.h"

#include "platform/base/MutableString.h"

namespace caddis {
inline namespace NSDataOstraExtensions {

namespace {

constexpr char16_t Alphabet[] = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

} // namespace

String base64EncodedString(const Data& data)
{
    MutableString result((data.size() + 2) / 3 * 4);
    const auto appendDigits = [&](unsigned group, int count) {
        for (int digit = 0; digit < 4; ++digit)
            result.append(digit < count ? Alphabet[group >> (18 - 6 * digit) & 63] : u'=');
    };
    const std::uint8_t* bytes = data.bytes();
    std::size_t left = data.size();
    for (; left >= 3; left -= 3, bytes += 3)
        appendDigits(unsigned(bytes[0]) << 16U | unsigned(bytes[1]) << 8U | bytes[2], 4);
    if (left == 2)
        appendDigits(unsigned(bytes[0]) << 16U | unsigned(bytes[1]) << 8U, 3);
    else if (left == 1)
        appendDigits(unsigned(bytes[0]) << 16U, 2);
    return std::move(result).take();
}

} // namespace NSDataOstraExtensions
} // namespace caddis
