#include "platform/unicode/TextEncoding.h"

#include "platform/base/MutableString.h"
#include "platform/base/UnitSearch.h"
#include "platform/base/Utf.h"
#include "platform/unicode/EncodingList.h"
#include "platform/unicode/SingleByteEncoding.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace caddis {

using encodings::Decoded;
using encodings::Engine;
using encodings::Row;
using encodings::SingleByteEncoding;

namespace {

static_assert(std::endian::native == std::endian::little);

constexpr std::string_view LittleEndianMark = "\xFF\xFE";
constexpr std::string_view BigEndianMark = "\xFE\xFF";

constexpr char16_t swapped(char16_t unit) { return static_cast<char16_t>(unit << 8 | unit >> 8); }

// Lone surrogates stay: a String holds any units. A byte left over at the end is ill-formed.
Decoded decodeUtf16(std::string_view bytes, bool bigEndian)
{
    MutableString text;
    const std::size_t count = bytes.size() / 2;
    if (count)
        std::memcpy(text.appendUninitialized(count), bytes.data(), count * 2);
    if (bigEndian)
        std::transform(text.data(), text.data() + count, text.data(), swapped);
    const bool whole = bytes.size() % 2 == 0;
    if (!whole)
        text.append(u'\uFFFD');
    return { std::move(text).take(), whole };
}

Decoded decodeMarkedUtf16(std::string_view bytes)
{
    if (bytes.starts_with(BigEndianMark))
        return decodeUtf16(bytes.substr(2), true);
    return decodeUtf16(bytes.starts_with(LittleEndianMark) ? bytes.substr(2) : bytes, false);
}

std::string encodeUtf16(std::u16string_view text, bool bigEndian)
{
    std::u16string units(text);
    if (bigEndian)
        std::ranges::transform(units, units.begin(), swapped);
    return { reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t) };
}

constexpr std::u16string_view AsciiControls = u"\u001A\u001C\u007F";
constexpr std::u16string_view RotatedControls = u"\u001C\u007F\u001A";

// Each unit of `from` becomes the one at its place in `to`; both hold the same three.
String replaced(const String& text, std::u16string_view from, std::u16string_view to)
{
    if (indexOfUnit<u'\x1A', u'\x1C', u'\x7F'>(text, 0) == text.length())
        return text;
    std::u16string units(text.view());
    for (char16_t& unit : units) {
        const std::size_t index = from.find(unit);
        unit = index == from.npos ? unit : to[index];
    }
    return String(units);
}

Decoded decodeMultiByte(const Row& row, std::string_view bytes)
{
    Decoded decoded = encodings::decodeWithICU(row.name, bytes);
    if (row.rotatesControls)
        decoded.text = replaced(decoded.text, RotatedControls, AsciiControls);
    return decoded;
}

std::optional<std::string> encodeMultiByte(const Row& row, const String& text)
{
    return encodings::encodeWithICU(
        row.name, row.rotatesControls ? replaced(text, AsciiControls, RotatedControls) : text);
}

Decoded decodeUtf8(std::string_view bytes)
{
    if (auto strict = String::fromStrictUtf8(bytes))
        return { std::move(*strict), true };
    return { String::fromUtf8(bytes), false };
}

std::optional<Decoded> decode(const Row& row, std::string_view bytes)
{
    switch (row.engine) {
    case Engine::Utf8:
        return decodeUtf8(bytes);
    case Engine::Utf16:
        return decodeMarkedUtf16(bytes);
    case Engine::Utf16LE:
    case Engine::Utf16BE:
        return decodeUtf16(bytes, row.engine == Engine::Utf16BE);
    case Engine::Latin1:
    case Engine::Ascii:
        return Decoded { String::fromLatin1(bytes), true };
    case Engine::ICU:
        return decodeMultiByte(row, bytes);
    case Engine::Iconv:
        return encodings::decodeWithIconv(row.name, bytes);
    case Engine::Own:
    case Engine::ICU8:
    case Engine::Iconv8:
        break;
    }
    const SingleByteEncoding* const table = SingleByteEncoding::of(row);
    return table ? std::optional(table->decode(bytes)) : std::nullopt;
}

// ISO Latin 1 and ASCII: the units below `limit` are their own bytes.
std::optional<std::string> encodeBelow(std::u16string_view text, char16_t limit)
{
    if (std::ranges::any_of(text, [&](char16_t unit) { return unit >= limit; }))
        return std::nullopt;
    std::string bytes(text.size(), '\0');
    std::ranges::transform(text, bytes.begin(), [](char16_t unit) { return static_cast<char>(unit); });
    return bytes;
}

std::optional<std::string> encodeUtf8(std::u16string_view text)
{
    return firstLoneSurrogate(text) == NotFound ? std::optional(utf16ToUtf8(text)) : std::nullopt;
}

} // namespace

bool isEncodingAvailable(CFStringEncoding encoding) { return encodings::rowOf(encoding) != nullptr; }

std::optional<String> decodeText(std::string_view bytes, CFStringEncoding encoding, IllFormed illFormed)
{
    const Row* const row = encodings::rowOf(encoding);
    if (!row)
        return std::nullopt;
    std::optional<Decoded> decoded = decode(*row, bytes);
    if (!decoded || (illFormed == IllFormed::Fail && !decoded->wellFormed))
        return std::nullopt;
    return std::move(decoded->text);
}

std::optional<String> decodeText(std::string_view bytes, NSStringEncoding encoding, IllFormed illFormed)
{
    return decodeText(bytes, convertNSStringEncodingToEncoding(encoding), illFormed);
}

std::optional<std::string> encodeText(const String& text, NSStringEncoding encoding)
{
    const Row* const row = encodings::rowOf(convertNSStringEncodingToEncoding(encoding));
    if (!row)
        return std::nullopt;
    switch (row->engine) {
    case Engine::Utf8:
        return encodeUtf8(text);
    case Engine::Utf16:
        return std::string(LittleEndianMark) + encodeUtf16(text, false);
    case Engine::Utf16LE:
    case Engine::Utf16BE:
        return encodeUtf16(text, row->engine == Engine::Utf16BE);
    case Engine::Latin1:
        return encodeBelow(text, 0x100);
    case Engine::Ascii:
        return encodeBelow(text, 0x80);
    case Engine::ICU:
        return encodeMultiByte(*row, text);
    case Engine::Iconv:
        return encodings::encodeWithIconv(row->name, text);
    case Engine::Own:
    case Engine::ICU8:
    case Engine::Iconv8:
        break;
    }
    const SingleByteEncoding* const table = SingleByteEncoding::of(*row);
    return table ? table->encode(text) : std::nullopt;
}

String initWithKamenickyData(std::string_view bytes)
{
    return *decodeText(bytes, CFStringEncoding::Kamenicky);
}

String initWithKoi8cs2Data(std::string_view bytes) { return *decodeText(bytes, CFStringEncoding::KOI8CS2); }

} // namespace caddis
