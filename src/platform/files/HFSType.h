#pragma once

#include "platform/base/String.h"

namespace caddis {

/// The four-character type of a file that came from a disk that has them, in quotes: "'MooV'". It stands in
/// the first bytes of the Finder information, an extended attribute. Empty when the file has none.
String HFSTypeOfFile(const String& path);

} // namespace caddis
