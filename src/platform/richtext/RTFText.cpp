// The text between RTF's words: bytes in the font's code page, numbered units, and where they go.

#include "platform/richtext/RTFReader.h"
#include "platform/unicode/TextEncoding.h"

#include <algorithm>

namespace caddis::rtf {

namespace {

constexpr char16_t SymbolGlyphs = 0xF000; // Private characters that stand for the bytes of symbol fonts.

bool isAscii(std::string_view bytes)
{
    return std::ranges::all_of(bytes, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

} // namespace

void Reader::takeByte(char byte)
{
    if (m_toSkip > 0)
        --m_toSkip;
    else if (m_state.destination != Destination::Skip)
        m_bytes += byte;
}

void Reader::symbol(char character)
{
    if (character == '*') {
        m_isStarred = true;
        return;
    }
    m_isGroupStart = false;
    if (m_toSkip > 0) {
        --m_toSkip;
        return;
    }
    flushBytes();
    switch (character) {
    case '\n':
    case '\r':
        return endParagraph();
    case '\t':
        return takeUnits(u"\t");
    case '~':
        return takeUnits(u"\u00A0");
    case '-':
        return takeUnits(u"\u00AD");
    case '_':
        return takeUnits(u"\u2011");
    case '\\':
    case '{':
    case '}':
        m_bytes += character;
        return;
    default:
        return;
    }
}

void Reader::unicode(std::int32_t number)
{
    const auto unit = static_cast<char16_t>(number);
    takeUnits({ &unit, 1 });
    m_toSkip = m_state.skippedAfterUnicode;
}

const FontEntry* Reader::font() const
{
    return m_fonts.find(m_state.letters.font < 0 ? m_defaultFont : m_state.letters.font);
}

CFStringEncoding Reader::encoding() const
{
    const FontEntry* entry = font();
    return entry && entry->encoding != CFStringEncoding::InvalidId ? entry->encoding : m_encoding;
}

// Bytes without a character in their code page are taken for themselves.
String Reader::decodedBytes() const
{
    if (isAscii(m_bytes))
        return String::fromLatin1(m_bytes);
    const FontEntry* entry = font();
    const bool isSymbol = entry && entry->isSymbol && m_state.destination == Destination::Body;
    if (!isSymbol)
        return decodeText(m_bytes, encoding()).value_or(String::fromLatin1(m_bytes));
    const bool isKnown = entry->name.view().starts_with(u"Symbol");
    if (auto text = isKnown ? decodeText(m_bytes, CFStringEncoding::MacSymbol) : std::nullopt)
        return *text;
    std::u16string glyphs;
    for (const char byte : m_bytes)
        glyphs += static_cast<char16_t>(SymbolGlyphs | static_cast<unsigned char>(byte));
    return String(glyphs);
}

void Reader::flushBytes()
{
    if (m_bytes.empty())
        return;
    takeUnits(decodedBytes());
    m_bytes.clear();
}

// Most of a document, and so the short way: no decoding, no copies on the way.
void Reader::takeAscii(std::string_view bytes)
{
    if (!m_state.letters.hidden)
        m_builder.appendAscii(bytes, styleNumber());
}

void Reader::takeUnits(std::u16string_view units)
{
    switch (m_state.destination) {
    case Destination::Body:
        if (!m_state.letters.hidden)
            m_builder.append(units, styleNumber());
        return;
    case Destination::Fonts:
        return m_fonts.takeText(units);
    case Destination::Colors:
        return m_colors.takeText(units);
    case Destination::ExpandedColors:
        return m_colors.takeExpandedText(units);
    case Destination::Graphic:
        if (m_isNameComplete)
            return;
        [[fallthrough]];
    case Destination::InfoText:
    case Destination::Instruction:
    case Destination::Marker:
    case Destination::LevelText:
        m_text.append(units);
        return;
    default:
        return;
    }
}

} // namespace caddis::rtf
