#pragma once

#include "platform/base/Value.h"

#include <string>

/// How results are shown: to programs as JSON, to people as aligned lines.
namespace caddis::tool {

/// One line of JSON in UTF-8. Dates are ISO 8601 texts in UTC, URLs their texts, data {"base64": text};
/// numbers that JSON has no form for (infinities) are null.
std::string json(const Value& value);

/// A value as people read it, on one line.
std::string shown(const Value& value);

/// One line per key, keys aligned and in the dictionary's order: "  kMDItemTitle   Moby-Dick". Arrays are
/// joined with "; ", long texts are cut and followed by their length, data is only counted.
std::string lines(const Dictionary& dictionary);

/// The dictionary with what stands under `key` beside the rest.
Dictionary withEntriesOf(const Dictionary& dictionary, std::u16string_view key);

} // namespace caddis::tool
