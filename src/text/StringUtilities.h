#pragma once

#include "platform/base/String.h"

#include <span>
#include <vector>

/// Trimming, testing and cutting of text. "White" is whiteCharacterSetRep everywhere, and letters are
/// compared without case through upperCharsTable, unit by unit.
namespace caddis {
inline namespace NSStringOstraExtensions {

/// The units between the white ones at both ends.
std::u16string_view trimmingWhiteSpaces(std::u16string_view units);
/// Same: returns `text` itself when neither end is white.
String stringByTrimmingWhiteSpaces(const String& text);

/// Each run of white units, whichever they are, becomes one U+0020; also at the ends, which are not trimmed.
/// Same: returns `text` itself when every run is one U+0020 already.
String stringByRemovingMultipleWhiteSpaces(const String& text);

/// Whether nothing but white space is in it; true for no units.
bool isWhiteString(std::u16string_view units);
/// Whether a letter or mark (alphaCharacterSetRep) is in it.
bool containsAlphaCharacter(std::u16string_view units);

bool isEqualNoCase(std::u16string_view left, std::u16string_view right);
bool hasPrefixNoCase(std::u16string_view units, std::u16string_view prefix);
bool hasSuffixNoCase(std::u16string_view units, std::u16string_view suffix);
/// False for an empty needle.
bool containsNoCase(std::u16string_view units, std::u16string_view needle);

/// The text before the first line end (U+000A to U+000D, U+0085, U+2028, U+2029).
/// Same: returns `text` itself when there is none.
String firstLine(const String& text);

enum class InnerPunctuation {
    Separates, ///< "12.3.2004" is three words
    Joins, ///< it is one word: what stands between two letters or digits and is not white belongs to the word
};

/// The words of the text, in order: runs of letters, marks and numbers (alphaNumCharacterSetRep). Punctuation
/// around a word never belongs to it.
std::vector<String> wordsUsingSeparators(const String& text, InnerPunctuation punctuation);

/// The parts with `separator` between them.
String componentsJoinedByString(std::span<const String> parts, std::u16string_view separator);

} // namespace NSStringOstraExtensions
} // namespace caddis
