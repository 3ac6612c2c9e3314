#pragma once

#include <string>
#include <zlib.h>

namespace caddis {

/// Deflated with the wrapper that zlib's window bits stand for: 15 its own, 31 that of gzip, negative none.
inline std::string deflated(std::string bytes, int windowBits = -MAX_WBITS)
{
    z_stream stream {};
    deflateInit2(&stream, 9, Z_DEFLATED, windowBits, 9, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&stream, bytes.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

} // namespace caddis
