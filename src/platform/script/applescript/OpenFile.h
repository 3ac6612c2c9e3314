#pragma once

#include <cstdio>
#include <memory>

namespace caddis::applescript {

/// A file between `open for access` and `close access`; closed at the latest when the call ends.
struct OpenFile {
    struct Close {
        void operator()(std::FILE* stream) const { std::fclose(stream); }
    };
    std::unique_ptr<std::FILE, Close> file;
    int number = 0; ///< what `open for access` answered
    bool writable = false;
};

} // namespace caddis::applescript
