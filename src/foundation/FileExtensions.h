#pragma once

#include "platform/base/String.h"

#include <optional>

namespace caddis {
inline namespace NSStringOstraExtensions {

/// Whether `path` lies below `directory`, by their texts: "." and ".." are resolved, links are not. A folder
/// is not in itself.
bool pathIsInDirectory(const String& path, const String& directory);

/// What leads from `directory` to `path`, without a slash at either end; nil when `path` is not in it.
std::optional<String> relativePathToDirectory(const String& path, const String& directory);

} // namespace NSStringOstraExtensions
} // namespace caddis
