#pragma once

#include "platform/base/Data.h"

#include <array>
#include <cstdint>
#include <map>

namespace caddis {

/// Four-byte fields of an archive's directory that stand for others, by their position in the file.
using CorrectedFields = std::map<std::uint64_t, std::array<std::uint8_t, 4>>;

/// What minizip has to see in the directory of a Zip64 archive.
///
/// Debian's minizip finds a Zip64 directory, but on 64-bit machines it does not recognise the mark 0xFFFFFFFF
/// in a member's size and offset fields, so it never takes the true numbers from the extra field (APPNOTE
/// 4.5.3). Here each marked field whose true number fits into 32 bits gets it. Longer members could not be
/// read in one piece anyway; a member that begins behind 4 GiB stays out of reach.
///
/// Empty for other archives.
CorrectedFields zip64Corrections(const Data& archive);

} // namespace caddis
