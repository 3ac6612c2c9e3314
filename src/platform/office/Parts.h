#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <map>
#include <optional>
#include <string>

/// Inside this folder: the members of a zipped document by name.
namespace caddis::office {

/// Unpacked, names as they stand in the archive. Markup longer than 64 MiB is left out, and so are others
/// once all are longer than 512 MiB.
using Parts = std::map<std::string, Data, std::less<>>;

/// Nil when the file can't be read or is no zip archive. Damaged members are left out.
std::optional<Parts> partsOfFile(const String& path);

/// Null pointer without such a member.
const Data* partNamed(const Parts& parts, std::string_view name);

} // namespace caddis::office
