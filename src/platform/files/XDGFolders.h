#pragma once

#include "platform/base/String.h"

#include <vector>

/// The folders of the XDG Base Directory Specification, as the environment sets them or as they are by
/// default. Values that are no absolute path count as unset.
namespace caddis::XDGFolders {

/// XDG_DATA_HOME, then XDG_DATA_DIRS: what comes first counts.
std::vector<String> data();
/// XDG_CACHE_HOME
String cache();
/// XDG_CONFIG_HOME
String config();

} // namespace caddis::XDGFolders
