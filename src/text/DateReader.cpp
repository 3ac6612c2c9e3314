// The general reader counts the separators once and lets 17 rules, in order, pick the one format that a text
// of such a shape is written in. Rules 1 to 8 are final; behind a later one that does not read its text comes
// the natural-language reader, which reads most ISO 8601 date-times of feeds.

#include "text/DateReader.h"

#include "platform/base/Ascii.h"
#include "platform/base/Log.h"
#include "platform/base/MutableString.h"
#include "platform/base/UnitBuffer.h"
#include "platform/dates/CalendarFormat.h"
#include "platform/dates/DateFormatter.h"
#include "platform/dates/NaturalLanguageDate.h"
#include "text/NumericValues.h"
#include "text/StringUtilities.h"

#include <algorithm>
#include <array>

namespace caddis {
inline namespace DateExtensions {

namespace {

using Text = std::u16string_view;

constexpr Text RFC1123 = u"%a, %d %b %Y %H:%M:%S %Z";
constexpr Text RFC850 = u"%A, %d-%b-%y %H:%M:%S %Z";
constexpr Text Asctime = u"%a %b %d %H:%M:%S %Y";

// What a unit adds to four counters of 15 bits, dots lowest, then colons, dashes and slashes. The highest bit
// marks a unit before which the date ends.
using PackedCounts = std::uint64_t;
constexpr unsigned CounterBits = 15;
constexpr PackedCounts CounterMask = (1U << CounterBits) - 1;
constexpr PackedCounts DateEnds = PackedCounts { 1 } << 63;
constexpr std::array<PackedCounts, 128> Counted = [] {
    std::array<PackedCounts, 128> table {};
    for (unsigned counter = 0; counter < 4; ++counter)
        table[std::size_t(u".:-/"[counter])] = PackedCounts { 1 } << counter * CounterBits;
    for (const char16_t unit : Text(u";[]{}()"))
        table[unit] = DateEnds;
    return table;
}();

/// A text without its comment and the white space around it, and how many separators it has.
struct MeasuredText {
    Text text;
    std::size_t dots = 0, colons = 0, dashes = 0, slashes = 0;

    explicit MeasuredText(Text receiver)
    {
        std::size_t length = 0;
        // No counter overflows within CounterMask units.
        for (std::size_t counted = CounterMask; counted == CounterMask; length += counted)
            counted = count(receiver.substr(length, CounterMask));
        text = trimmingWhiteSpaces(receiver.substr(0, length));
    }
    bool hasNoSeparators() const { return dots + colons + dashes + slashes == 0; }
    bool startsWithYear() const { return text.find(u'-') == 4; }

private:
    // Up to the unit that ends the date; how many they are.
    std::size_t count(Text units)
    {
        PackedCounts counts = 0;
        const char16_t* unit = units.data();
        for (const char16_t* end = unit + units.size(); unit != end; ++unit) {
            const PackedCounts counted = *unit < Counted.size() ? Counted[*unit] : 0;
            if (counted == DateEnds)
                break;
            counts += counted;
        }
        dots += counts & CounterMask;
        colons += counts >> CounterBits & CounterMask;
        dashes += counts >> 2 * CounterBits & CounterMask;
        slashes += counts >> 3 * CounterBits & CounterMask;
        return static_cast<std::size_t>(unit - units.data());
    }
};

/// A working copy of a text with one unit replaced by another and an ending; empty when there is no memory.
class ReplacedText {
public:
    ReplacedText(Text text, char16_t from, char16_t to, Text ending = {})
    {
        if (!m_buffer.tryAllocate(text.size() + ending.size()))
            return;
        char16_t* end = std::ranges::replace_copy(text, m_buffer.data(), from, to).out;
        m_length = static_cast<std::size_t>(std::ranges::copy(ending, end).out - m_buffer.data());
    }
    Text view() const { return { m_buffer.data(), m_length }; }

private:
    UnitBuffer m_buffer;
    std::size_t m_length = 0;
};

/// The format of rules 1 to 8; empty when none of them applies.
Text finalFormat(const MeasuredText& measured)
{
    const auto& [text, dots, colons, dashes, slashes] = measured;
    const std::size_t length = text.size();
    if (length == 8 && measured.hasNoSeparators() && std::ranges::all_of(text, isAsciiDigit)) {
        if (text[0] == u'2')
            return u"%Y%m%d";
        if (text[4] == u'2')
            return u"%d%m%Y";
    }
    if (length == 15 && measured.hasNoSeparators())
        return u"%Y%m%dT%H%M%S";
    if (dots != 2)
        return {};
    if (length == 8)
        return u"%d.%m.%y";
    if (length == 10)
        return text[4] == u'.' ? u"%Y.%m.%d" : u"%d.%m.%Y";
    if (length >= 19 && colons == 2 && slashes + dashes == 0)
        return u"%d.%m.%Y %H:%M:%S";
    if (length >= 16 && colons == 1 && slashes + dashes == 0)
        return u"%d.%m.%Y %H:%M";
    if (length >= 19 && slashes == 2 && colons + dashes == 0)
        return u"%d/%m/%Y %H.%M.%S";
    return {};
}

constexpr std::array<std::pair<Text, Text>, 5> ForeignMonths { {
    { u"Mrz", u"Mar" },
    { u"Mai", u"May" },
    { u"Mart", u"Mar" },
    { u"Okt", u"Oct" },
    { u"Dez", u"Dec" },
} };

bool hasForeignMonth(Text text)
{
    for (std::size_t index = 0; index + 3 <= text.size(); ++index) {
        const char16_t unit = text[index];
        if (unit != u'M' && unit != u'O' && unit != u'D')
            continue;
        const Text rest = text.substr(index);
        if (std::ranges::any_of(
                ForeignMonths, [&](const auto& month) { return rest.starts_with(month.first); }))
            return true;
    }
    return false;
}

String replaceAll(const String& text, Text from, Text to)
{
    MutableString result(text.length());
    std::size_t start = 0;
    for (std::size_t found = 0; (found = text.view().find(from, start)) != Text::npos;
         start = found + from.size())
        result.append(text.view().substr(start, found - start)).append(to);
    result.append(text.view().substr(start));
    return std::move(result).take();
}

// One after the other, since what one makes the next may find: "Mrzt", "Mart", "Mar".
String withEnglishMonths(Text text)
{
    String result(text);
    for (const auto& [foreign, english] : ForeignMonths)
        result = replaceAll(result, foreign, english);
    return result;
}

std::optional<Date> firstDate(Text text, std::initializer_list<Text> formats)
{
    for (const Text format : formats) {
        if (const auto date = dateWithString(text, format))
            return date;
    }
    return std::nullopt;
}

std::optional<Date> httpDate(Text text) { return firstDate(text, { RFC1123, RFC850, Asctime }); }

// Rule 9.
std::optional<Date> dateWithClock(Text text, const MeasuredText& measured)
{
    if (const auto date = dateWithString(text, RFC1123))
        return date;
    if (measured.dashes == 2) {
        const Text numeric = text.find(u'-') == 4 ? u"%Y-%m-%d %H:%M:%S" : u"%d-%m-%Y %H:%M:%S";
        return dateWithString(text, containsAlphaCharacter(text) ? RFC850 : numeric);
    }
    if (measured.slashes == 2)
        return firstDate(text, { u"%d/%m/%Y %H:%M:%S %Z", u"%d/%m/%Y %H:%M:%S" });
    return dateWithString(text, Asctime);
}

// Rule 10.
std::optional<Date> dateWithSlashes(Text text, Text receiver)
{
    const std::size_t slash = text.find(u'/');
    if (slash != 4 && intValue(text) < 32)
        return firstDate(text, { u"%d/%m/%Y", u"%m/%d/%Y" });
    // Kept on purpose: the number is read from the receiver at the place found in the trimmed text, so
    // leading white space shifts it.
    return dateWithString(text, intValue(receiver.substr(slash + 1)) < 13 ? u"%Y/%m/%d" : u"%Y/%d/%m");
}

// Rules 10 to 13.
std::optional<Date> dateWithoutTwoDashes(const MeasuredText& measured, Text receiver)
{
    const auto& [text, dots, colons, dashes, slashes] = measured;
    if (text.size() >= 8 && text.size() <= 10 && slashes == 2 && dots + colons + dashes == 0)
        return dateWithSlashes(text, receiver);
    if (dots == 2 && colons == 1 && slashes + dashes == 0 && !containsAlphaCharacter(text))
        return dateWithString(text, u"%d.%m.%Y %H:%M");
    if (colons < 2 || dashes < 3)
        return httpDate(text);
    if (text.find(u'T') != Text::npos && text.find(u' ') == Text::npos)
        return dateWithString(text, measured.startsWithYear() ? u"%Y-%m-%dT%H:%M:%S" : u"%d-%m-%YT%H:%M:%S");
    return dateWithString(text, measured.startsWithYear() ? u"%Y-%m-%d %H:%M:%S" : u"%d-%m-%Y %H:%M:%S");
}

// Rules 14 to 17.
std::optional<Date> dateWithTwoDashes(const MeasuredText& measured)
{
    const auto& [text, dots, colons, dashes, slashes] = measured;
    if (text.size() >= 12 && dots <= 1 && colons >= 3)
        return dateWithString(text, measured.startsWithYear() ? u"%Y-%m-%dT%H:%M:%S" : u"%d-%m-%YT%H:%M:%S");
    if (colons == 1 && !containsAlphaCharacter(text))
        return dateWithString(text, u"%d-%m-%Y %H:%M");
    if (text.size() >= 8 && text.size() <= 10 && dots + colons == 0)
        return dateWithString(text, measured.startsWithYear() ? u"%Y-%m-%d" : u"%d-%m-%Y");
    return std::nullopt;
}

std::optional<Date> dateByShape(const MeasuredText& measured, Text receiver)
{
    if (measured.colons == 2) {
        if (hasForeignMonth(measured.text))
            return dateWithClock(withEnglishMonths(measured.text), measured);
        return dateWithClock(measured.text, measured);
    }
    return measured.dashes == 2 ? dateWithTwoDashes(measured) : dateWithoutTwoDashes(measured, receiver);
}

std::optional<Date> dateByLanguage(const MeasuredText& measured)
{
    const char16_t dash = measured.dashes == 2 ? u'/' : u'-';
    // Gives the natural-language reader a day and a month to work with.
    const Text ending = isAsciiDigit(measured.text.back()) ? Text() : Text(u" 1 1");
    return dateWithNaturalLanguageString(ReplacedText(measured.text, u'-', dash, ending).view());
}

} // namespace

std::optional<Date> date(const String& text)
{
    const MeasuredText measured(text);
    if (measured.text.empty())
        return std::nullopt;
    std::optional<Date> result;
    if (const Text format = finalFormat(measured); format.empty()) {
        result = dateByShape(measured, text);
        if (!result)
            result = dateByLanguage(measured);
    } else {
        const bool commas = measured.dots == 2 && measured.colons > 0;
        result = commas ? dateWithString(ReplacedText(measured.text, u',', u' ').view(), format)
                        : dateWithString(measured.text, format);
    }
    if (!result)
        log(u"Unknown date: %@", text);
    return result;
}

std::optional<Date> dateFromHTTPHeaderValue(const String& value) { return httpDate(value); }

std::optional<Date> dateFromOPF(const String& text)
{
    static const DateFormatter formatters[] = {
        DateFormatter(u"yyyy"),
        DateFormatter(u"yyyy-MM"),
        DateFormatter(u"yyyy-MM-dd"),
        DateFormatter(u"yyyy-MM-dd'T'HH:mm'Z'"),
        DateFormatter(u"yyyy-MM-dd'T'HH:mmZ"),
        DateFormatter(u"yyyy-MM-dd'T'HH:mm:ss'Z'"),
        DateFormatter(u"yyyy-MM-dd'T'HH:mm:ssZ"),
    };
    for (const DateFormatter& formatter : formatters) {
        if (const auto date = formatter.dateFromString(text))
            return date;
    }
    return std::nullopt;
}

} // namespace DateExtensions
} // namespace caddis
