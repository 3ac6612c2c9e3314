#pragma once

#include <functional>
#include <optional>
#include <string>

namespace caddis::tool {

/// Lines of standard input. A signal ends the wait for one: whichever thread it meets, it is not the one that
/// waits, and so `stop` is asked now and then.
class LineReader {
public:
    explicit LineReader(std::function<bool()> stop)
        : m_stop(std::move(stop))
    {
    }

    /// The next line without its end; nil behind the last one, and when `stop` says so.
    std::optional<std::string> next();

private:
    bool readMore();

    std::function<bool()> m_stop;
    std::string m_bytes; // read and not yet given
};

} // namespace caddis::tool
