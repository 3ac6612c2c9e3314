#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"
#include "platform/unicode/StringEncoding.h"

#include <optional>
#include <string_view>

/// Markup bytes to text, by what the bytes, the header and the document itself say of their encoding.
///
/// 1. A byte-order mark decides; it is not part of the text.
/// 2. Else the header's charset, failing that the default encoding gives a first reading.
/// 3. When that reading declares another encoding (CharsetFinder), the bytes are read with that one too. Of
///    both the one with fewer U+FFFD is kept; of two equal ones the one in UTF-8, if it holds more than
///    ASCII; then the header's, if there is one; then the declared one.
/// 4. When U+FFFD remain, the encoding of the URL's country has a try.
///
/// Big 5, EUC-CN and EUC-KR are read with their supersets where they alone would leave U+FFFD. No data gives
/// no text.
namespace caddis {
inline namespace XmlExtensions {

struct MarkupText {
    String text;
    NSStringEncoding usedEncoding;
};

/// Everything that may be known of the bytes besides themselves.
struct MarkupSource {
    std::u16string_view encodingName = {}; ///< the header's charset
    NSStringEncoding defaultEncoding = NSStringEncoding::UTF8;
    String URL = {};
};

MarkupText markupTextOfData(std::string_view bytes, const MarkupSource& source);

String stringWithMarkupData(const Data& data, NSStringEncoding defaultEncoding);
/// `contentType` is a header value such as `text/html; charset=utf-8`.
String stringWithMarkupData(
    const Data& data, std::u16string_view contentType, NSStringEncoding defaultEncoding);
String stringWithMarkupData(
    const Data& data, std::u16string_view encodingName, NSStringEncoding defaultEncoding, const String& url);

/// Nil when the file can't be read.
std::optional<MarkupText> stringWithMarkupContentsOfFile(
    const String& path, NSStringEncoding defaultEncoding);

/// The text in the encoding that it declares, else in `defaultEncoding`. What the encoding cannot carry is
/// written as numeric references; an encoding that cannot even carry those gives way to UTF-8.
Data markupData(const String& markup, NSStringEncoding defaultEncoding = NSStringEncoding::UTF8);

} // namespace XmlExtensions
} // namespace caddis
