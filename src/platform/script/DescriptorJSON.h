#pragma once

#include "platform/script/EventDescriptor.h"

/// Descriptors as JSON, for programs that know nothing else.
namespace caddis {

/// Null, booleans, numbers, lists; a record becomes an object with its user fields by name and its other
/// fields by their four characters; a date its ISO 8601 text; everything else its text, or null without one.
std::string jsonFromDescriptor(const EventDescriptor& descriptor);

/// The other way round; an object becomes a record of user fields. Nil for text that is no JSON, or deeper
/// than flattened descriptors may be.
std::optional<EventDescriptor> descriptorFromJson(std::string_view json);

} // namespace caddis
