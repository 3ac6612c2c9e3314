#pragma once

#include "platform/pdf/engine/Budget.h"

#include <string>
#include <zlib.h>

class Stream;

namespace caddis::pdf {

/// Decodes the streams of a document. Flate streams without a predictor, nearly all of them, go through zlib,
/// everything else through the stream's own filters.
class StreamBytes {
public:
    StreamBytes() = default;
    StreamBytes(const StreamBytes&) = delete;
    StreamBytes& operator=(const StreamBytes&) = delete;
    ~StreamBytes();

    /// Appends the decoded bytes to `out`, as far as the stream can be decoded and the budget goes.
    void append(Stream& stream, std::string& out, Budget& budget);

private:
    bool inflateAll(Stream& deflated, std::string& out, Budget& budget);

    z_stream m_inflater {};
    bool m_initialized = false;
};

} // namespace caddis::pdf
