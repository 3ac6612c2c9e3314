#include "markup/MarkupData.h"

#include "markup/CharsetFinder.h"
#include "markup/Charsets.h"
#include "markup/Entities.h"
#include "platform/base/UnitSearch.h"
#include "platform/files/FileSystem.h"
#include "platform/unicode/TextEncoding.h"

#include <algorithm>
#include <span>

namespace caddis {
inline namespace XmlExtensions {

namespace {

constexpr std::size_t ShortestMarkedData = 3;

struct TextReading {
    String text;
    NSStringEncoding encoding = NSStringEncoding::InvalidId;
    std::size_t replacements = 0; // U+FFFD in the text

    bool isUtf8BeyondAscii() const
    {
        return encoding == NSStringEncoding::UTF8 && indexOfNonAscii(text, 0) != text.length();
    }
};

std::size_t replacementsIn(std::u16string_view text)
{
    std::size_t count = 0;
    for (std::size_t at = indexOfUnit<0xFFFD>(text, 0); at < text.size(); ++count)
        at = indexOfUnit<0xFFFD>(text, at + 1);
    return count;
}

std::optional<TextReading> readExactly(std::string_view bytes, NSStringEncoding encoding)
{
    auto text = decodeText(bytes, encoding);
    if (!text)
        return std::nullopt;
    const std::size_t replacements = replacementsIn(*text);
    return TextReading { std::move(*text), encoding, replacements };
}

// What people write when they name an encoding is often more than it has. Shift-JIS needs no other: its table
// here is that of the DOS code page.
std::span<const CFStringEncoding> supersetsOf(NSStringEncoding encoding)
{
    static constexpr CFStringEncoding big5[] = { CFStringEncoding::Big5HKSCS };
    static constexpr CFStringEncoding chinese[] = { CFStringEncoding::GBK, CFStringEncoding::GB18030 };
    static constexpr CFStringEncoding korean[] = { CFStringEncoding::DOSKorean };
    switch (convertNSStringEncodingToEncoding(encoding)) {
    case CFStringEncoding::Big5:
        return big5;
    case CFStringEncoding::EUCCN:
        return chinese;
    case CFStringEncoding::EUCKR:
        return korean;
    default:
        return {};
    }
}

// The tables of these encodings give the bytes of their supersets not only U+FFFD, but control characters and
// private-use ones as well.
std::size_t unreadableIn(std::u16string_view text)
{
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char16_t unit) {
        return unit == 0xFFFD || (unit >= 0x80 && unit <= 0x9F) || (unit >= 0xE000 && unit <= 0xF8FF);
    }));
}

std::optional<TextReading> read(std::string_view bytes, NSStringEncoding encoding)
{
    std::optional<TextReading> best = readExactly(bytes, encoding);
    const auto supersets = supersetsOf(encoding);
    if (!best || supersets.empty())
        return best;
    std::size_t unreadable = unreadableIn(best->text);
    for (const CFStringEncoding superset : supersets) {
        if (unreadable == 0)
            break;
        auto other = readExactly(bytes, convertEncodingToNSStringEncoding(superset));
        const std::size_t stillUnreadable = other ? unreadableIn(other->text) : unreadable;
        if (stillUnreadable < unreadable) {
            best = std::move(other);
            unreadable = stillUnreadable;
        }
    }
    return best;
}

struct Mark {
    std::string_view bytes;
    NSStringEncoding encoding;
};

std::optional<Mark> byteOrderMark(std::string_view bytes)
{
    static constexpr Mark marks[] = {
        { "\xFF\xFE", NSStringEncoding::UTF16LittleEndian },
        { "\xFE\xFF", NSStringEncoding::UTF16BigEndian },
        { "\xEF\xBB\xBF", NSStringEncoding::UTF8 },
    };
    for (const Mark& mark : marks) {
        if (bytes.size() >= ShortestMarkedData && bytes.starts_with(mark.bytes))
            return mark;
    }
    return std::nullopt;
}

// A default that cannot be read with gives way to what most pages are in.
TextReading defaultReading(std::string_view bytes, NSStringEncoding encoding)
{
    if (auto reading = read(bytes, encoding))
        return std::move(*reading);
    const auto utf8 = decodeText(bytes, NSStringEncoding::UTF8, IllFormed::Fail);
    return *readExactly(bytes, utf8 ? NSStringEncoding::UTF8 : NSStringEncoding::WindowsCP1252);
}

// A declaration that was read byte by byte stands in no encoding of two-byte units.
NSStringEncoding declaredEncoding(const TextReading& reading)
{
    const NSStringEncoding declared = markupEncoding(reading.text);
    return declared == NSStringEncoding::Unicode || declared == reading.encoding ? NSStringEncoding::InvalidId
                                                                                 : declared;
}

bool declaredIsBetter(const TextReading& declared, const TextReading& first, bool firstIsFromHeader)
{
    if (declared.replacements != first.replacements)
        return declared.replacements < first.replacements;
    if (first.isUtf8BeyondAscii() || declared.isUtf8BeyondAscii())
        return declared.isUtf8BeyondAscii();
    return !firstIsFromHeader;
}

TextReading weighedReading(std::string_view bytes, const MarkupSource& source)
{
    const NSStringEncoding named
        = source.encodingName.empty() ? NSStringEncoding::InvalidId : NSEncodingFromName(source.encodingName);
    std::optional<TextReading> fromHeader = read(bytes, named);
    const bool isFromHeader = fromHeader.has_value();
    TextReading best = isFromHeader ? std::move(*fromHeader) : defaultReading(bytes, source.defaultEncoding);

    auto declared = read(bytes, declaredEncoding(best));
    if (declared && declaredIsBetter(*declared, best, isFromHeader))
        best = std::move(*declared);
    if (best.replacements == 0)
        return best;
    auto local = read(bytes, defaultURLEncoding(source.URL));
    return local && local->replacements < best.replacements ? std::move(*local) : best;
}

} // namespace

MarkupText markupTextOfData(std::string_view bytes, const MarkupSource& source)
{
    if (bytes.empty())
        return { String(), source.defaultEncoding };
    if (const auto mark = byteOrderMark(bytes))
        return { *decodeText(bytes.substr(mark->bytes.size()), mark->encoding), mark->encoding };
    TextReading reading = weighedReading(bytes, source);
    return { std::move(reading.text), reading.encoding };
}

String stringWithMarkupData(const Data& data, NSStringEncoding defaultEncoding)
{
    return markupTextOfData(data.chars(), { .defaultEncoding = defaultEncoding }).text;
}

String stringWithMarkupData(
    const Data& data, std::u16string_view contentType, NSStringEncoding defaultEncoding)
{
    const String charset = headerCharset(contentType).value_or(String());
    return stringWithMarkupData(data, charset, defaultEncoding, String());
}

String stringWithMarkupData(
    const Data& data, std::u16string_view encodingName, NSStringEncoding defaultEncoding, const String& url)
{
    return markupTextOfData(data.chars(), { encodingName, defaultEncoding, url }).text;
}

std::optional<MarkupText> stringWithMarkupContentsOfFile(const String& path, NSStringEncoding defaultEncoding)
{
    const auto data = FileSystem::contentsOfFile(path);
    if (!data)
        return std::nullopt;
    return markupTextOfData(data->chars(), { .defaultEncoding = defaultEncoding });
}

Data markupData(const String& markup, NSStringEncoding defaultEncoding)
{
    const NSStringEncoding declared = markupEncoding(markup);
    const NSStringEncoding encoding = declared == NSStringEncoding::InvalidId ? defaultEncoding : declared;
    if (auto bytes = encodeText(markup, encoding))
        return Data::adopt(std::move(*bytes));
    if (auto bytes = encodeText(stringByConvertingHighCharactersToEntities(markup), encoding))
        return Data::adopt(std::move(*bytes));
    return Data::adopt(markup.utf8());
}

} // namespace XmlExtensions
} // namespace caddis
