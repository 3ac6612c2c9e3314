#pragma once

#include "platform/base/Value.h"
#include "platform/script/EventDescriptor.h"

#include <utility>
#include <variant>
#include <vector>

/// Ordinary values as event descriptors, and back.
namespace caddis {
inline namespace OstraAppleEventDescriptorExtensions {

/// A list for an array, a record for a dictionary, text for a string and for a URL, null for the null object,
/// 'ldt ' for a date; for everything else, numbers included, the text that describes it.
EventDescriptor appleEventDescriptor(const Value& value);
EventDescriptor appleEventDescriptor(const Array& array);
inline EventDescriptor appleEventDescriptor(const EventDescriptor& descriptor) { return descriptor; }

/// The keys of a dictionary that becomes a record: a number is a four-character keyword, text a user field.
using RecordKey = std::variant<FourCharCode, String>;

/// A field per keyword, and all user fields, where there is one, in a list of alternating key and value under
/// 'usrf'.
EventDescriptor appleEventDescriptor(const std::vector<std::pair<RecordKey, Value>>& dictionary);

/// A path with slashes: nil for nil, the empty string as it is, "~" expanded; a path with colons converted;
/// else with a slash in front.
std::optional<String> POSIXPath(const std::optional<String>& path);

} // namespace OstraAppleEventDescriptorExtensions

inline namespace NSAppleEventDescriptorOstraExtensions {

/// The items of a list; nil for anything else.
std::optional<std::vector<EventDescriptor>> arrayValue(const EventDescriptor& descriptor);
/// The items' string values; an item without one is empty.
std::optional<std::vector<String>> arrayValueWithStrings(const EventDescriptor& descriptor);

/// For a record with exactly one item, a list of an even number (at least 2) of entries: each key's string
/// value and the value behind it, a later equal key in place of the earlier. Nil for anything else.
std::optional<std::vector<std::pair<String, EventDescriptor>>> dictionaryValue(
    const EventDescriptor& descriptor);
std::optional<std::vector<std::pair<String, String>>> dictionaryValueWithStrings(
    const EventDescriptor& descriptor);

/// For 'ldt ' with 8 bytes.
std::optional<Date> dateValue(const EventDescriptor& descriptor);

/// The list with the value's descriptor at a position from 1 on, in place of the one there; 0 and positions
/// behind the end append.
EventDescriptor insertObject(const EventDescriptor& list, const Value& object, std::size_t position);
/// The record with the value's descriptor under the keyword.
EventDescriptor setObject(const EventDescriptor& record, const Value& object, FourCharCode keyword);

} // namespace NSAppleEventDescriptorOstraExtensions
} // namespace caddis
