#include "bundles/support/TextSink.h"

#include "platform/base/Utf.h"

#include <algorithm>

namespace caddis::bundles {

bool TextSink::append(std::string_view utf8)
{
    if (utf8.empty() || m_isFull)
        return !m_isFull;
    m_last = utf8.back();
    m_isEmpty = false;
    m_buffer.append(utf8);
    if (m_buffer.size() >= PieceSize)
        flush();
    return !m_isFull;
}

bool TextSink::append(std::u16string_view text)
{
    // In pieces, so that a long text does not stand in memory a second time.
    while (!text.empty() && !m_isFull) {
        std::size_t length = std::min<std::size_t>(text.size(), PieceSize);
        if (length < text.size() && isHighSurrogate(text[length - 1]))
            --length;
        append(utf16ToUtf8(text.substr(0, length)));
        text.remove_prefix(length);
    }
    return !m_isFull;
}

bool TextSink::endLine() { return m_last == '\n' ? !m_isFull : append("\n"); }

bool TextSink::separate() { return m_last == '\n' || m_last == '\t' ? !m_isFull : append("\t"); }

void TextSink::flush()
{
    m_isFull = m_isFull || !m_attributes.appendText(m_buffer) || m_attributes.shouldStop();
    m_buffer.clear();
}

} // namespace caddis::bundles
