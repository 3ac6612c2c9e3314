#pragma once

#include "bundles/support/Attributes.h"

#include <string>

namespace caddis::bundles {

/// Collects a file's text and gives it to the host in large pieces.
///
/// Every append answers whether more is wanted, so that a reader stops soon after the host has had enough.
class TextSink {
public:
    explicit TextSink(Attributes& attributes)
        : m_attributes(attributes)
    {
    }
    ~TextSink()
    {
        if (!m_buffer.empty())
            flush();
    }
    TextSink(const TextSink&) = delete;
    TextSink& operator=(const TextSink&) = delete;

    bool append(std::string_view utf8);
    bool append(std::u16string_view text);
    /// Begins a new line unless one has just begun.
    bool endLine();
    /// A line of its own.
    bool appendLine(std::string_view utf8) { return endLine() && append(utf8) && endLine(); }
    /// U+0009, unless nothing stands on this line yet.
    bool separate();

    bool isFull() const { return m_isFull; }
    bool isEmpty() const { return m_isEmpty; }

private:
    static constexpr std::size_t PieceSize = 64 * 1024;

    void flush();

    Attributes& m_attributes;
    std::string m_buffer;
    char m_last = '\n';
    bool m_isFull = false;
    bool m_isEmpty = true;
};

} // namespace caddis::bundles
