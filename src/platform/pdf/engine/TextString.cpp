#include "platform/pdf/engine/TextString.h"

#include "platform/base/MutableString.h"
#include "platform/base/Utf.h"

#include <PDFDocEncoding.h>

#include <chrono>

namespace caddis::pdf {

namespace {

String decodeUtf16(std::string_view bytes, bool bigEndian)
{
    MutableString text(bytes.size() / 2);
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
        const auto first = static_cast<unsigned char>(bytes[index]);
        const auto second = static_cast<unsigned char>(bytes[index + 1]);
        text.append(static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first));
    }
    return std::move(text).take();
}

String withoutLanguageMarks(const String& text)
{
    if (text.view().find(u'\x1B') == std::u16string_view::npos)
        return text;
    MutableString result(text.length());
    bool inside = false;
    for (const char16_t unit : text) {
        if (unit == u'\x1B')
            inside = !inside;
        else if (!inside)
            result.append(unit);
    }
    return std::move(result).take();
}

// Takes `count` digits off the front of `bytes`; `fallback` when there are none.
std::optional<int> takeNumber(std::string_view& bytes, std::size_t count, int fallback)
{
    if (bytes.empty() || bytes[0] < '0' || bytes[0] > '9')
        return fallback;
    int value = 0;
    for (std::size_t index = 0; index < count; ++index) {
        if (index >= bytes.size() || bytes[index] < '0' || bytes[index] > '9')
            return std::nullopt;
        value = value * 10 + (bytes[index] - '0');
    }
    bytes.remove_prefix(count);
    return value;
}

// "+01'00'", "-0800", "Z" or nothing; minutes east of UTC.
std::optional<int> takeZone(std::string_view bytes)
{
    if (bytes.empty() || (bytes[0] != '+' && bytes[0] != '-'))
        return 0;
    const int sign = bytes[0] == '-' ? -1 : 1;
    bytes.remove_prefix(1);
    const auto hours = takeNumber(bytes, 2, 0);
    if (!bytes.empty() && bytes[0] == '\'')
        bytes.remove_prefix(1);
    const auto minutes = takeNumber(bytes, 2, 0);
    if (!hours || !minutes)
        return std::nullopt;
    return sign * (*hours * 60 + *minutes);
}

} // namespace

String textString(std::string_view bytes)
{
    if (bytes.starts_with("\xFE\xFF"))
        return withoutLanguageMarks(decodeUtf16(bytes.substr(2), true));
    if (bytes.starts_with("\xFF\xFE"))
        return withoutLanguageMarks(decodeUtf16(bytes.substr(2), false));
    if (bytes.starts_with("\xEF\xBB\xBF"))
        return withoutLanguageMarks(String::fromUtf8(bytes.substr(3)));
    MutableString text(bytes.size());
    for (const char byte : bytes) {
        // Bytes without a meaning stand for themselves, U+0000 too.
        const Unicode unit = pdfDocEncoding[static_cast<unsigned char>(byte)];
        text.append(static_cast<char16_t>(unit ? unit : static_cast<unsigned char>(byte)));
    }
    return std::move(text).take();
}

String singleLine(const String& text)
{
    MutableString line(text.length());
    for (std::size_t index = 0; index < text.length(); ++index) {
        const char16_t unit = text[index];
        const bool isPair
            = isHighSurrogate(unit) && index + 1 < text.length() && isLowSurrogate(text[index + 1]);
        if (isPair)
            line.append(unit).append(text[++index]);
        else if ((unit >= u'\t' && unit <= u'\r') || unit == 0x85 || unit == 0x2028 || unit == 0x2029)
            line.append(u' ');
        else if (unit >= 0x20 && (unit < 0x7F || unit >= 0xA0) && !isHighSurrogate(unit)
            && !isLowSurrogate(unit))
            line.append(unit);
    }
    return std::move(line).take();
}

std::optional<Date> dateString(std::string_view bytes)
{
    if (bytes.starts_with("D:"))
        bytes.remove_prefix(2);
    const auto year = takeNumber(bytes, 4, -1);
    const auto month = takeNumber(bytes, 2, 1);
    const auto day = takeNumber(bytes, 2, 1);
    const auto hour = takeNumber(bytes, 2, 0);
    const auto minute = takeNumber(bytes, 2, 0);
    const auto second = takeNumber(bytes, 2, 0);
    const auto zone = takeZone(bytes);
    if (!year || *year < 0 || !month || !day || !hour || !minute || !second || !zone)
        return std::nullopt;
    const std::chrono::year_month_day date { std::chrono::year(*year),
        std::chrono::month(static_cast<unsigned>(*month)), std::chrono::day(static_cast<unsigned>(*day)) };
    if (!date.ok() || *hour > 23 || *minute > 59 || *second > 60)
        return std::nullopt;
    const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
    const std::int64_t seconds = days * 86400 + *hour * 3600 + (*minute - *zone) * 60 + *second;
    return Date::fromUnixSeconds(static_cast<double>(seconds));
}

} // namespace caddis::pdf
