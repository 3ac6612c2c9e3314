#include "platform/office/Values.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

namespace caddis::office {

namespace {

struct Front {
    double number;
    std::string_view rest;
};

std::optional<Front> front(std::string_view text)
{
    constexpr double Limit = 1e8;
    while (text.starts_with(' ') || text.starts_with('+'))
        text.remove_prefix(1);
    double number = 0;
    const auto [end, error]
        = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    if (error != std::errc() || !(std::abs(number) <= Limit))
        return std::nullopt;
    return Front { number, text.substr(static_cast<std::size_t>(end - text.data())) };
}

} // namespace

double numberAtFront(std::string_view text)
{
    const auto found = front(text);
    return found ? found->number : 0;
}

std::int32_t integerAtFront(std::string_view text) { return static_cast<std::int32_t>(numberAtFront(text)); }

std::optional<double> lengthOf(std::string_view text)
{
    constexpr double PointsPerInch = 72;
    constexpr double TwipsPerPoint = 20;
    static constexpr std::array<std::pair<std::string_view, double>, 7> Units { { { "pt", 1 },
        { "cm", PointsPerInch / 2.54 }, { "mm", PointsPerInch / 25.4 }, { "in", PointsPerInch },
        { "inch", PointsPerInch }, { "pc", 12 }, { "px", 0.75 } } };
    const auto found = front(text);
    for (const auto& [unit, points] : Units) {
        if (found && found->rest == unit)
            return std::round(found->number * points * TwipsPerPoint) / TwipsPerPoint;
    }
    return std::nullopt;
}

std::optional<double> percentage(std::string_view text)
{
    const auto found = front(text);
    return found && found->rest == "%" ? std::optional(found->number / 100) : std::nullopt;
}

std::optional<TextColor> colorOfHex(std::string_view text)
{
    if (text.starts_with('#'))
        text.remove_prefix(1);
    unsigned rgb = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), rgb, 16);
    if (error != std::errc() || text.size() != 6 || end != text.data() + text.size())
        return std::nullopt;
    const auto part = [&](int shift) { return static_cast<std::uint8_t>(rgb >> shift); };
    return TextColor::fromBytes(part(16), part(8), part(0));
}

bool isOn(std::string_view text) { return text != "0" && text != "false" && text != "off" && text != "none"; }

std::optional<double> unixSecondsOfTime(std::string_view text)
{
    using namespace std::chrono;
    const std::string terminated(text.substr(0, 19));
    int parts[6] {};
    const int count = std::sscanf(terminated.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d", &parts[0], &parts[1],
        &parts[2], &parts[3], &parts[4], &parts[5]);
    const year_month_day date { year(parts[0]), month(static_cast<unsigned>(parts[1])),
        day(static_cast<unsigned>(parts[2])) };
    if (count < 3 || !date.ok() || parts[0] <= 0)
        return std::nullopt;
    return static_cast<double>(sys_days(date).time_since_epoch().count()) * 86400.0 + parts[3] * 3600.0
        + parts[4] * 60.0 + parts[5];
}

} // namespace caddis::office
