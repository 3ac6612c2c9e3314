#pragma once

#include "platform/base/Log.h"

#include <vector>

namespace caddis {

/// Collects what is logged while it lives; standard error stays quiet.
class LogCapture {
public:
    LogCapture()
        : m_previous(setLogSink([this](const String& line) { m_lines.push_back(line); }))
    {
    }
    ~LogCapture() { setLogSink(std::move(m_previous)); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const std::vector<String>& lines() const { return m_lines; }

private:
    std::vector<String> m_lines;
    LogSink m_previous;
};

} // namespace caddis
