#pragma once

#include <chrono>

namespace caddis::movie {

/// How long one file may keep us busy without giving anything: time counts while work is going on, and starts
/// anew with each success.
class Patience {
public:
    void begin() { m_start = Clock::now(); }
    bool isOver() const { return m_spent + (Clock::now() - m_start) > Most; }
    void end(bool success) { m_spent = success ? Clock::duration() : m_spent + (Clock::now() - m_start); }

private:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds Most { 9 };

    Clock::duration m_spent {};
    Clock::time_point m_start = Clock::now();
};

} // namespace caddis::movie
