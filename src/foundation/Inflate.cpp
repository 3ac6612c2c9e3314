#include "foundation/Inflate.h"

#include <array>
#include <limits>
#include <string>
#include <zlib.h>

namespace caddis {
inline namespace NSDataOstraExtensions {

std::optional<Data> dataByInflatingData(const Data& data)
{
    constexpr int EitherHeader = MAX_WBITS + 32;
    z_stream stream {};
    if (data.size() > std::numeric_limits<uInt>::max() || inflateInit2(&stream, EitherHeader) != Z_OK)
        return std::nullopt;
    stream.next_in = const_cast<Bytef*>(data.bytes());
    stream.avail_in = static_cast<uInt>(data.size());
    std::string result;
    std::array<Bytef, 65536> piece {};
    int status = Z_OK;
    while (status == Z_OK && result.size() <= MostInflated) {
        stream.next_out = piece.data();
        stream.avail_out = piece.size();
        status = inflate(&stream, Z_NO_FLUSH);
        result.append(reinterpret_cast<const char*>(piece.data()), piece.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    if (status != Z_STREAM_END || result.size() > MostInflated)
        return std::nullopt;
    return Data::adopt(std::move(result));
}

} // namespace NSDataOstraExtensions
} // namespace caddis
