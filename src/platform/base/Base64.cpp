#include "platform/base/Base64.h"

namespace caddis {

namespace {

std::optional<unsigned> digitValue(char16_t unit, Base64Reading reading)
{
    if (unit >= u'A' && unit <= u'Z')
        return unit - u'A';
    if (unit >= u'a' && unit <= u'z')
        return unit - u'a' + 26U;
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0' + 52U;
    if (unit == u'+' || unit == u'/')
        return unit == u'+' ? 62U : 63U;
    if (reading == Base64Reading::Lenient && (unit == u'-' || unit == u'_'))
        return unit == u'-' ? 62U : 63U;
    return std::nullopt;
}

bool isWhite(char16_t unit) { return unit == u' ' || (unit >= u'\t' && unit <= u'\r'); }

} // namespace

std::optional<Data> dataFromBase64(std::u16string_view text, Base64Reading reading)
{
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    unsigned group = 0;
    unsigned bits = 0;
    for (const char16_t unit : text) {
        if (isWhite(unit))
            continue;
        if (unit == u'=')
            break;
        const auto digit = digitValue(unit, reading);
        if (!digit && reading == Base64Reading::Lenient)
            continue;
        if (!digit)
            return std::nullopt;
        group = (group << 6U | *digit) & 0xFFFFFFU;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes.push_back(static_cast<std::uint8_t>(group >> bits));
        }
    }
    return Data::adopt(std::move(bytes));
}

} // namespace caddis
