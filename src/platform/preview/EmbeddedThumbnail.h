#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <vector>

/// The pictures that programs put into their documents to show them by.
namespace caddis {

/// In zip archives (office documents, drawings, comics) and in packages; the best first, at most a few. They
/// are files of any kind of picture, PDF among them, or none at all.
std::vector<Data> embeddedThumbnails(const String& path);

} // namespace caddis
