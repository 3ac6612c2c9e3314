#pragma once

#include "platform/unicode/PlainText.h"

#include <optional>

namespace caddis {
inline namespace NSStringOstraExtensions {

/// The text of a file, in `encoding` or else in the one that it turns out to be in (plainTextOfData says
/// how). Nil when the file can't be read.
std::optional<PlainText> stringWithContentsOfFile(const String& path, NSStringEncoding encoding);

} // namespace NSStringOstraExtensions
} // namespace caddis
