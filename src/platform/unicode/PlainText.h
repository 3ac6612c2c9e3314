#pragma once

#include "platform/base/String.h"
#include "platform/unicode/StringEncoding.h"

#include <string_view>

/// Plain text, which does not say what encoding it is in.
namespace caddis {

struct PlainText {
    String text;
    NSStringEncoding usedEncoding;
};

/// Text there always is, read with the first of these that fits:
///
/// 1. what a byte-order mark says, of UTF-8, UTF-16 and UTF-32; the mark is not part of the text
/// 2. `encoding`, unless a part of the bytes is ill-formed in it; InvalidId when the caller knows none
/// 3. UTF-8, if all of it is well-formed
/// 4. what the bytes look like (detectedEncoding)
/// 5. windows-1252, which gives every byte a character
///
/// In 1 and 4 ill-formed parts become U+FFFD. Time is linear in the bytes.
PlainText plainTextOfData(std::string_view bytes, NSStringEncoding encoding = NSStringEncoding::InvalidId);

/// The encoding that the letters of the bytes make likely; InvalidId when none does. Looks at 64 KB from
/// about the first byte that is not ASCII on. ISO 8859-1 counts as windows-1252, as on the web.
NSStringEncoding detectedEncoding(std::string_view bytes);

} // namespace caddis
