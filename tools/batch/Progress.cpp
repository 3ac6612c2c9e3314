#include "Progress.h"

#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace caddis::tool {

namespace {

constexpr auto Interval = std::chrono::milliseconds(200);
constexpr int BarWidth = 24;

// 1234567 as "1,234,567".
std::string grouped(std::uint64_t number)
{
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3;)
        text.insert(place -= 3, ",");
    return text;
}

std::string duration(double seconds)
{
    const auto whole = std::lround(seconds);
    char text[32] = {};
    if (whole >= 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    return text;
}

std::string bar(double part)
{
    const auto full = static_cast<int>(part * BarWidth);
    std::string text = "[";
    for (int place = 0; place < BarWidth; ++place)
        text += place < full ? '=' : place == full ? '>' : ' ';
    return text + "] ";
}

} // namespace

Progress::Progress(bool wanted)
{
    if (wanted && isatty(STDERR_FILENO))
        m_thread = std::thread([this] { show(); });
}

Progress::~Progress() { end(); }

void Progress::end()
{
    if (m_seconds == 0)
        m_seconds = seconds();
    if (!isShown())
        return;
    {
        const std::scoped_lock guard(m_lock);
        m_isEnding = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

std::uint64_t Progress::count() const
{
    std::uint64_t sum = 0;
    for (const auto& count : m_counts)
        sum += count;
    return sum;
}

double Progress::seconds() const
{
    if (m_seconds > 0)
        return m_seconds;
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
}

void Progress::show()
{
    std::unique_lock guard(m_lock);
    while (!m_wake.wait_for(guard, Interval, [this] { return m_isEnding; }))
        std::fprintf(stderr, "\r\033[K%s", line().c_str());
    std::fputs("\r\033[K", stderr);
}

std::string Progress::line() const
{
    const std::uint64_t done = count();
    const std::uint64_t total = m_total;
    const double rate = static_cast<double>(done) / seconds();
    std::uint64_t failed = 0;
    for (const auto outcome : { HelperOutcome::Crashed, HelperOutcome::TimedOut, HelperOutcome::TooBig })
        failed += count(outcome);
    std::string text;
    if (total)
        text += bar(static_cast<double>(done) / static_cast<double>(total));
    text += grouped(done);
    if (total)
        text += " of " + grouped(total);
    text += ", " + grouped(static_cast<std::uint64_t>(rate)) + "/s, " + grouped(failed) + " failed";
    if (total > done && rate > 0)
        text += ", " + duration(static_cast<double>(total - done) / rate) + " left";
    return text;
}

std::string Progress::summary() const
{
    char time[64] = {};
    std::snprintf(time, sizeof time, " in %.1f s (", seconds());
    std::string text = grouped(count()) + (count() == 1 ? " file" : " files") + time
        + grouped(static_cast<std::uint64_t>(static_cast<double>(count()) / seconds())) + "/s)";
    const char* separator = ": ";
    for (std::size_t index = 0; index < m_counts.size(); ++index) {
        if (m_counts[index] == 0)
            continue;
        text += separator + grouped(m_counts[index]) + ' '
            + String(nameOf(static_cast<HelperOutcome>(index))).utf8();
        separator = ", ";
    }
    return text;
}

} // namespace caddis::tool
