#pragma once

#include "platform/base/Data.h"

#include <optional>

namespace caddis {

enum class Base64Reading {
    Strict, ///< nothing but digits and white space may stand in the text
    Lenient, ///< what is no digit does not count; "-" and "_" are digits too (RFC 4648, section 5). Never nil
};

/// The bytes that base64 text stands for (RFC 4648, section 4). White space is passed over, "=" ends the
/// text, and digits that make no whole byte at the end are dropped. Nil when anything else stands in it.
std::optional<Data> dataFromBase64(std::u16string_view text, Base64Reading reading = Base64Reading::Strict);

} // namespace caddis
