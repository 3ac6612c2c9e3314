#pragma once

#include "platform/script/EventDescriptor.h"
#include "platform/script/applescript/Objects.h"

#include <optional>

/// Objects of applications as descriptors ('obj '), the platform's own form: what is wanted, how it is named
/// (by index, name, id, as a property, all, any…), its key, and what it is in. The application itself is the
/// null descriptor.
namespace caddis::applescript {

class Interpreter;

EventDescriptor descriptorFromSpecifier(Interpreter& interpreter, const SpecifierObject& specifier);

/// Nil for a form that the language has no words for. `application` stands for the null descriptor.
std::optional<Datum> specifierFromDescriptor(const EventDescriptor& descriptor, const Datum& application);

} // namespace caddis::applescript
