#pragma once

#include "platform/base/MutableString.h"

#include <map>
#include <optional>

/// The little JSON that a line of facts needs: flat objects of strings, in UTF-16, so that lone surrogates
/// pass.
namespace caddis::facts {

/// The members of a flat object whose values are strings; nil for anything else.
std::optional<std::map<String, String>> readObject(std::u16string_view line);

/// A JSON string literal in ASCII; every unit outside it is escaped.
std::string quoted(std::u16string_view text);

} // namespace caddis::facts
