#include "platform/base/Log.h"

#include <cerrno>
#include <mutex>
#include <unistd.h>

namespace caddis {

namespace {

struct Log {
    std::mutex lock;
    LogSink sink;
};

// Never destroyed: threads may still log while the process ends.
Log& processLog()
{
    static auto& instance = *new Log;
    return instance;
}

void writeToStandardError(const String& text)
{
    std::string line = program_invocation_short_name;
    line += '[' + std::to_string(getpid()) + "] " + text.utf8() + '\n';
    // A log that cannot be written has nobody to tell.
    [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
}

} // namespace

void logText(const String& text)
{
    Log& state = processLog();
    const std::scoped_lock guard(state.lock);
    if (state.sink)
        state.sink(text);
    else
        writeToStandardError(text);
}

LogSink setLogSink(LogSink sink)
{
    Log& state = processLog();
    const std::scoped_lock guard(state.lock);
    return std::exchange(state.sink, std::move(sink));
}

} // namespace caddis
