#pragma once

#include "platform/base/String.h"

#include <ostream>
#include <string>

/// How tests write and print text.
namespace caddis {

/// UTF-8 for a failure message; lone surrogates show as U+FFFD.
inline std::string readable(std::u16string_view units) { return String(units).utf8(); }

inline void PrintTo(const String& text, std::ostream* out) { *out << '"' << text.utf8() << '"'; }

} // namespace caddis
