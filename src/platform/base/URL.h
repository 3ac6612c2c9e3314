#pragma once

#include "platform/base/String.h"

#include <optional>

namespace caddis {

/// An absolute URL as it was written (RFC 3986): `scheme://host:port/path?query#fragment`.
///
/// Only its parts are read; nothing is normalised, so two URLs are equal when their texts are.
class URL {
public:
    /// Nil unless the text begins with a scheme and a colon and holds neither white space nor a control
    /// character.
    static std::optional<URL> fromString(const String& text);
    /// A "file://" URL of an absolute path; characters that a path may not show are percent-escaped as UTF-8.
    static URL fileURLWithPath(const String& path);

    const String& absoluteString() const noexcept { return m_text; }
    /// Without its colon, as written.
    String scheme() const { return m_text.substringTo(m_schemeLength); }
    /// Without user and port; empty when there is none.
    String host() const;
    /// Percent escapes removed (as UTF-8) and without a final "/", "/" itself excepted; nil where the escapes
    /// give no text that a path can be.
    std::optional<String> path() const;
    bool isFileURL() const;

    friend bool operator==(const URL&, const URL&) = default;

private:
    URL(String text, std::size_t schemeLength)
        : m_text(std::move(text))
        , m_schemeLength(schemeLength)
    {
    }
    Range authority() const;

    String m_text;
    std::size_t m_schemeLength;
};

/// `text` with each "%xx" replaced by its byte and the whole read as UTF-8; nil when an escape is cut or no
/// hexadecimal number, or when the bytes are not UTF-8. Same: returns `text` itself without escapes.
std::optional<String> stringByRemovingPercentEscapes(const String& text);

} // namespace caddis
