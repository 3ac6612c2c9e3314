#pragma once

#include "platform/base/String.h"
#include "platform/unicode/StringEncoding.h"

#include <optional>
#include <string>
#include <string_view>

/// Bytes in any known encoding to text, and back.
///
/// Reading takes time linear in the bytes, whatever they are, and gives at most a few units a byte. All
/// functions may be called from any thread.
namespace caddis {

/// Whether text in this encoding can be read and written here.
bool isEncodingAvailable(CFStringEncoding encoding);

enum class IllFormed {
    Replace, ///< each ill-formed part becomes U+FFFD
    Fail, ///< nil at the first one
};

/// Nil when the encoding is unknown.
///
/// ISO Latin 1 and ASCII give each byte its own number. A byte-order mark stays, except with Unicode (UTF-16)
/// and UTF32, where it decides the order of the bytes; without it UTF-16 is little-endian, as on this
/// machine.
std::optional<String> decodeText(
    std::string_view bytes, NSStringEncoding encoding, IllFormed illFormed = IllFormed::Replace);
std::optional<String> decodeText(
    std::string_view bytes, CFStringEncoding encoding, IllFormed illFormed = IllFormed::Replace);

/// Nil when the encoding is unknown or cannot carry all of the text. Unicode (UTF-16) begins with a
/// byte-order mark.
std::optional<std::string> encodeText(const String& text, NSStringEncoding encoding);

/// Text in the two Czech code pages of this system's own.
String initWithKamenickyData(std::string_view bytes);
String initWithKoi8cs2Data(std::string_view bytes);

} // namespace caddis
