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

/// A progressive file without the scans that only say how the 8×8 blocks look inside: what is left, from the
/// first scan on, gives each block's mean, which is all that a picture an eighth as large shows.
std::vector<std::string_view> scansOfMeans(const Bytes& bytes, std::size_t firstScan);

} // namespace caddis::image
