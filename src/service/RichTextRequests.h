#pragma once

#include "platform/base/Value.h"

#include <optional>

/// The requests that turn files into rich text and back.
namespace caddis {

/// The text of a file of any kind that attributedStringWithPath knows: "Rtfd", flat RTFD data, and
/// "DocumentAttributes", unless there are none. Nil for a file that can't be read.
std::optional<Dictionary> attributedStringWithContentsOfFile(const String& path);

/// Writes RTFD data as a package to `path`, whole or not at all. False when the data is no rich text, or when
/// the package can't be written.
bool writeRTFDDataToFile(const Data& rtfd, const String& path);

} // namespace caddis
