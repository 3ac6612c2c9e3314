#pragma once

#include "platform/script/EventDescriptor.h"

/// The byte form of descriptors outside a process. All numbers are big-endian:
///
///     scalar          'dle2' 0 TYPE LENGTH data, padded to an even length
///     list, record    'dle2' 0 TYPE REST 0 0 24 TYPE COUNT 0 items       REST = bytes behind that field
///     record with a class of its own
///                     'dle2' 0 TYPE REST COUNT 0 items
///     item            [KEYWORD in a record] TYPE LENGTH data, padded
///     item that is a container (a list, a record, an object specifier or a part of one)
///                     [KEYWORD] TYPE LENGTH COUNT 0 items                LENGTH = 8 + the items' bytes
///
/// Codes, numbers, dates and the units of 'utxt' are turned to big-endian; other data passes untouched.
namespace caddis {

/// Containers inside containers, and items in one form, that are read at most.
inline constexpr std::size_t MaximumDescriptorDepth = 64;
inline constexpr std::size_t MaximumDescriptorItems = 4'000'000;

Data flattenDescriptor(const EventDescriptor& descriptor);

/// Nil for anything malformed: a length or count beyond the data, too deep a nesting, bytes left over.
std::optional<EventDescriptor> unflattenDescriptor(const Data& data);

} // namespace caddis
