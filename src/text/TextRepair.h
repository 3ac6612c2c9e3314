#pragma once

#include "platform/base/MutableString.h"

namespace caddis {
inline namespace NSStringOstraExtensions {

/// Repairs and normalises text that was taken out of a document, in place:
/// control characters other than tab and line ends go, a soft hyphen (U+00AD) at the end of a line goes
/// together with the line end, so that the halves of the word join, and the text is put in Unicode
/// normalization form C.
///
/// Hyphens that are drawn (U+002D, U+2010) stay as they stand: nobody knows whether they belong to the word.
void fixAndNormalizeString(MutableString& text);

} // namespace NSStringOstraExtensions
} // namespace caddis
