#pragma once

#include "platform/base/String.h"

/// Text without diacritics ("umlauts"), by the folding tables of CharacterTables.
///
/// Same: every conversion returns its argument itself when nothing changes.
namespace caddis {
inline namespace NSStringOstraExtensions {

// Unit by unit: the length stays, and so do combining marks.
String nonUmlautedString(const String& text);
String lowercaseNonUmlautedString(const String& text);
String uppercaseNonUmlautedString(const String& text);

// The same behind normalisation form C, so that decomposed accents are composed and folded.
String nonUmlautedNormalizedString(const String& text);
String lowercaseNonUmlautedNormalizedString(const String& text);
String uppercaseNonUmlautedNormalizedString(const String& text);

// Form C, then toAscii, toLowerAscii, toUpperAscii: a space for every unit without an ASCII base letter.
String asciiString(const String& text);
String lowercaseAsciiString(const String& text);
String uppercaseAsciiString(const String& text);

/// Whether some unit is not its own folded form.
bool isUmlautedString(std::u16string_view text);

/// Equal in length, and unit by unit through upperUmlautsCharsTable.
bool isNonUmlautedEqualToStringNoCase(std::u16string_view left, std::u16string_view right);
/// Equal in length, and unit by unit through toUpperAscii: all units without an ASCII form are equal.
bool isAsciiEqualToStringNoCase(std::u16string_view left, std::u16string_view right);

/// The same for a part of `text`; false when the range does not lie inside.
bool isNonUmlautedEqualToNoCase(const String& text, Range range, std::u16string_view other);
bool isAsciiEqualToNoCase(const String& text, Range range, std::u16string_view other);

} // namespace NSStringOstraExtensions
} // namespace caddis
