#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <map>
#include <optional>
#include <string>

/// Inside this folder: the members of a zipped document by name.
namespace caddis::office {

/// Unpacked, names as they stand in the archive. Markup ends where all of it together would be longer than
/// 24 MiB: a document whose text is longer is read so far. Other members count up to 64 MiB, or four times
/// the archive's size if that is more; what doesn't fit is left out.
using Parts = std::map<std::string, Data, std::less<>>;

/// Nil when the file can't be read or is no zip archive. Damaged members are left out.
std::optional<Parts> partsOfFile(const String& path);

/// Null pointer without such a member.
const Data* partNamed(const Parts& parts, std::string_view name);

} // namespace caddis::office
