#pragma once

#include "platform/base/String.h"

#include <vector>

/// Where importers are found, by logical paths (InstallRoots.h).
namespace caddis {

/// The type of plug-in that importers are.
inline constexpr std::u16string_view ImporterType = u"8B08C4BF-415B-11D8-B3F9-0003936726FC";

/// The importers in a folder by name, without those that register themselves dynamically.
std::vector<String> importersInFolder(const String& folder);

/// The importers of the applications in a folder, which may begin with "~" and is shown as it is given.
std::vector<String> importersOfApplications(const String& folder);

/// All importers by the folders they are looked for in: applications, user, local and system ones.
std::vector<String> importersInAllFolders();

/// The search order: what the tool "/usr/bin/mdimport -L" lists, the user's importers first, then those of
/// /Library, then those of /System/Library, each group in the reverse of the tool's order, then all others.
/// When the tool lists nothing, importersInAllFolders(). Empty when the tool can't be run or prints no UTF-8.
std::vector<String> discoveredImporters();

} // namespace caddis
