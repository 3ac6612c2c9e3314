#pragma once

#include "platform/base/Value.h"

#include <optional>

/// The requests that read pages.
namespace caddis {

/// The text of a web archive: "String", "Source", the main resource's markup, and "URL", its address, each
/// where there is one. Empty for what is no web archive.
Dictionary searchableTextOfWebArchive(const std::optional<String>& path);

} // namespace caddis
