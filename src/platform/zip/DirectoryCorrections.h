#pragma once

#include "platform/base/Data.h"

#include <array>
#include <cstdint>
#include <map>

namespace caddis {

/// Four-byte fields of an archive's directory that stand for others, by their position in the file.
using CorrectedFields = std::map<std::uint64_t, std::array<std::uint8_t, 4>>;

/// What minizip has to see in an archive's directory, so that it reads what other readers read.
///
/// - Zip64: on 64-bit machines Debian's minizip does not recognise the mark 0xFFFFFFFF in a member's size and
///   offset fields, so it never takes the true numbers from the extra field (APPNOTE 4.5.3). Here each marked
///   field whose true number fits into 32 bits gets it. Longer members could not be read in one piece anyway;
///   a member that begins behind 4 GiB stays out of reach.
/// - Disk numbers: minizip refuses an archive whose end record (APPNOTE 4.3.16) says that it is not the first
///   disk. Whoever has one file has the whole archive or none of it, so the numbers become 0; members of a
///   truly split archive then fail one by one.
///
/// Empty for other archives.
CorrectedFields directoryCorrections(const Data& archive);

} // namespace caddis
