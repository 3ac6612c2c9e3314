#pragma once

#include "platform/base/Value.h"

#include <optional>
#include <string>

/// Property lists: dictionaries, arrays, strings, numbers, dates and data in a file.
///
///     binary      "bplist00", objects that refer to one another by number
///     XML         <plist><dict><key>Name</key><string>…</string></dict></plist>
///     old style   { Name = "…"; List = ( a, b ); Bytes = <0fbd77>; }    strings and data only
///
/// Sources: the open property-list code of the platform's base library, for the binary and the old form; the
/// PropertyList-1.0 DTD.
///
/// A list that breaks its form anywhere is no list: nil. Bounded for any input: time and memory by a small
/// multiple of its size. In the binary form many places may name one object; strings are then shared, and
/// lists that would grow beyond what their bytes could hold are refused. Containers nest at most MostNested
/// deep.
namespace caddis::PropertyList {

inline constexpr int MostNested = 200;

/// Of any of the three forms, which its first bytes tell; old-style text is UTF-8.
std::optional<Value> read(const Data& data);
/// The file's list when it is a dictionary; nil when the file can't be read.
std::optional<Dictionary> dictionaryWithContentsOfFile(const String& path);

/// Numbers keep their kind, data shares the file's bytes, sets are arrays, and a UID of an archive is the
/// dictionary { "CF$UID" = number }, as in XML.
std::optional<Value> readBinary(const Data& data);
std::optional<Value> readXML(const Data& data);
/// The first value must be followed by nothing but white space and comments.
std::optional<Value> readOldStyle(const String& text);

/// The old style in ASCII, for people and for readOldStyle: one element a line, four spaces a level, no
/// final line feed. Strings are quoted unless they are plain words, and other characters escaped (\U00e9).
///
/// Numbers, dates, URLs and null objects become the text that describes them: the old style knows none.
std::string writeOldStyle(const Value& value);

} // namespace caddis::PropertyList
