#include "bundles/support/SheetNumbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace caddis::bundles {

namespace {

constexpr double EndOfCalendar = 2'958'466; // 10000-01-01
constexpr double DaysFrom1900To1904 = 1462;
constexpr int SecondsPerDay = 86'400;

// Behind a part of a format that is shown as it stands; `text` begins with the mark of one.
std::string_view behindLiteral(std::string_view text)
{
    const char mark = text.front();
    text.remove_prefix(1);
    if (mark == '"' || mark == '[') {
        const auto end = text.find(mark == '"' ? '"' : ']');
        return end == text.npos ? std::string_view() : text.substr(end + 1);
    }
    return text.substr(text.empty() ? 0 : 1);
}

} // namespace

bool isDateFormat(unsigned identifier)
{
    constexpr std::array<std::array<unsigned, 2>, 4> Ranges { { { 14, 22 }, { 27, 36 }, { 45, 47 },
        { 50, 58 } } };
    return std::ranges::any_of(
        Ranges, [=](const auto& range) { return identifier >= range[0] && identifier <= range[1]; });
}

bool isDateFormat(std::string_view code)
{
    constexpr std::string_view LiteralMarks = "\"[\\_*";
    constexpr std::string_view DateLetters = "ymdhsYMDHS";
    if (code == "General" || code.starts_with("[h") || code.starts_with("[m") || code.starts_with("[s"))
        return false;
    while (!code.empty() && code.front() != ';') {
        if (LiteralMarks.find(code.front()) != LiteralMarks.npos) {
            code = behindLiteral(code);
            continue;
        }
        if (DateLetters.find(code.front()) != DateLetters.npos)
            return true;
        code.remove_prefix(1);
    }
    return false;
}

std::string numberText(double number)
{
    constexpr int Digits = 15;
    std::array<char, 32> text {};
    const auto result
        = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, Digits);
    return { text.data(), result.ptr };
}

std::string dateText(double days, SheetEpoch epoch)
{
    const double shifted = days + (epoch == SheetEpoch::From1904 ? DaysFrom1900To1904 : 0);
    if (!(days >= 0) || shifted >= EndOfCalendar)
        return numberText(days);
    auto day = static_cast<int>(shifted);
    auto seconds = static_cast<int>(std::lround((shifted - day) * SecondsPerDay));
    if (seconds == SecondsPerDay) {
        ++day;
        seconds = 0;
    }
    // Day 60 is a 29 February 1900 that never was: days before it count from one day later.
    using namespace std::chrono;
    const sys_days zero { year(1899) / 12 / (day < 60 ? 31 : 30) };
    const year_month_day date { zero + std::chrono::days(day) };
    std::array<char, 64> text {};
    const auto write = [&](const char* format, auto... parts) {
        return std::string(
            text.data(), static_cast<std::size_t>(std::snprintf(text.data(), text.size(), format, parts...)));
    };
    std::string time = write("%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
    if (days < 1)
        return time;
    const std::string written = write("%04d-%02u-%02u", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return seconds == 0 ? written : written + " " + time;
}

} // namespace caddis::bundles
