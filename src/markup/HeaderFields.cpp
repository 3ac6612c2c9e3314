#include "markup/HeaderFields.h"

namespace caddis {
inline namespace XmlExtensions {

namespace {

bool isWhite(char16_t unit) { return whiteCharacterSetRep().contains(unit); }

std::size_t behindWhite(std::u16string_view text, std::size_t at)
{
    while (at < text.size() && isWhite(text[at]))
        ++at;
    return at;
}

Range valueAt(std::u16string_view header, std::size_t start, char16_t quotation, char16_t separator)
{
    if (start < header.size() && header[start] == quotation) {
        const std::size_t closing = header.find(quotation, start + 1);
        if (closing != std::u16string_view::npos)
            return { start + 1, closing - start - 1 };
    }
    std::size_t end = std::min(header.find(separator, start), header.size());
    while (end > start && isWhite(header[end - 1]))
        --end;
    return { start, end - start };
}

} // namespace

std::optional<Range> rangeOfHeaderFieldNamed(
    std::u16string_view header, UpperAscii name, char16_t quotation, char16_t separator)
{
    bool mayBegin = true; // A name may begin here.
    bool mayQuote = true; // False behind the last quotation character: it quotes nothing.
    for (std::size_t at = 0; at < header.size(); ++at) {
        if (header[at] == quotation && mayQuote) {
            const std::size_t closing = header.find(quotation, at + 1);
            mayQuote = closing != std::u16string_view::npos;
            at = mayQuote ? closing : at;
        } else if (mayBegin && name.isPrefixNoCaseOf(header.substr(at))) {
            const std::size_t assignment = behindWhite(header, at + name.length());
            if (assignment < header.size() && header[assignment] == u'=') {
                const std::size_t start = behindWhite(header, assignment + 1);
                const Range value = valueAt(header, start, quotation, separator);
                return value.length ? std::optional(value) : std::nullopt;
            }
        }
        mayBegin = isWhite(header[at]) || header[at] == separator;
    }
    return std::nullopt;
}

std::optional<String> headerFieldNamed(
    std::u16string_view header, UpperAscii name, char16_t quotation, char16_t separator)
{
    const auto range = rangeOfHeaderFieldNamed(header, name, quotation, separator);
    if (!range)
        return std::nullopt;
    return String(header.substr(range->location, range->length));
}

} // namespace XmlExtensions
} // namespace caddis
