#pragma once

#include "platform/base/Data.h"

#include <optional>
#include <string>

namespace caddis::tool {

/// Writes text to standard output.
void print(const std::string& text);

/// Writes data to the file, or to standard output when there is none ("-" is standard output too). False,
/// with a word on standard error, when it cannot be written, or when it would land on a terminal.
bool writeData(const Data& data, const std::optional<std::string>& file);

} // namespace caddis::tool
