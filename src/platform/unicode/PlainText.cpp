#include "platform/unicode/PlainText.h"

#include "platform/unicode/TextEncoding.h"

#include <algorithm>
#include <optional>

namespace caddis {

namespace {

using namespace std::string_view_literals;

struct Mark {
    std::string_view bytes;
    CFStringEncoding encoding;
};

// UTF-32 first: its little-endian mark begins with that of UTF-16.
constexpr Mark Marks[] = {
    { "\xFF\xFE\0\0"sv, CFStringEncoding::UTF32LE },
    { "\0\0\xFE\xFF"sv, CFStringEncoding::UTF32BE },
    { "\xFF\xFE"sv, CFStringEncoding::UTF16LE },
    { "\xFE\xFF"sv, CFStringEncoding::UTF16BE },
    { "\xEF\xBB\xBF"sv, CFStringEncoding::UTF8 },
};

std::optional<PlainText> markedText(std::string_view bytes)
{
    for (const Mark& mark : Marks) {
        if (bytes.starts_with(mark.bytes))
            return PlainText { *decodeText(bytes.substr(mark.bytes.size()), mark.encoding),
                convertEncodingToNSStringEncoding(mark.encoding) };
    }
    return std::nullopt;
}

bool isAscii(std::string_view bytes)
{
    return std::ranges::all_of(bytes, [](char byte) { return (byte & 0x80) == 0; });
}

std::optional<PlainText> textIn(NSStringEncoding encoding, std::string_view bytes, IllFormed illFormed)
{
    // decodeText lets bytes above 127 pass as ASCII; a caller's word for it must not hide their real
    // encoding.
    const bool isRefused = encoding == NSStringEncoding::ASCII && !isAscii(bytes);
    auto text = isRefused ? std::nullopt : decodeText(bytes, encoding, illFormed);
    if (!text)
        return std::nullopt;
    return PlainText { std::move(*text), encoding };
}

} // namespace

PlainText plainTextOfData(std::string_view bytes, NSStringEncoding encoding)
{
    auto text = markedText(bytes);
    if (!text)
        text = textIn(encoding, bytes, IllFormed::Fail);
    if (!text)
        text = textIn(NSStringEncoding::UTF8, bytes, IllFormed::Fail);
    if (!text)
        text = textIn(detectedEncoding(bytes), bytes, IllFormed::Replace);
    if (!text)
        text = textIn(NSStringEncoding::WindowsCP1252, bytes, IllFormed::Replace);
    return std::move(*text);
}

} // namespace caddis
