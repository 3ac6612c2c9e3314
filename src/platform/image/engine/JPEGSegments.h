#pragma once

#include "platform/image/engine/Bytes.h"

#include <vector>

namespace caddis::image {

/// One marker segment of a JPEG file: ITU-T T.81, B.1.1.
struct JPEGSegment {
    std::uint8_t marker = 0;
    std::size_t place = 0; ///< of the marker
    std::size_t end = 0; ///< behind the segment's parameters

    /// The parameters, without their length.
    std::string_view body(const Bytes& bytes) const { return bytes.run(place + 4, end - place - 4); }
};

/// The segments before the first scan.
std::vector<JPEGSegment> segmentsOfHeader(const Bytes& bytes);

/// The next segment at or behind `place`; its place is the file's end when there is none.
JPEGSegment segmentAt(const Bytes& bytes, std::size_t place);
/// Where the entropy-coded data from `place` on ends: at a marker that is no restart.
std::size_t endOfScan(const Bytes& bytes, std::size_t place);

} // namespace caddis::image
