#pragma once

#include "markup/TagAttributes.h"
#include "markup/TagScanner.h"
#include "platform/base/MutableString.h"
#include "text/FastComparison.h"

#include <optional>
#include <string_view>

/// Inside this folder: what the readers of a page's head share.
namespace caddis {

inline bool equalsNoCase(std::u16string_view left, std::u16string_view right)
{
    return left.size() == right.size() && fastCaseInsensitiveCompareUnichars(left, right) == 0;
}

/// An attribute of the event's tag, as a view into the scanned text; empty when it is absent.
inline std::u16string_view attributeOf(const TagEvent& event, UpperAscii name)
{
    const auto range = rangeOfAttributeOfTagCharacters(event.string, event.tag, name);
    return range ? event.units(*range) : std::u16string_view();
}

/// The leniently read "CONTENT"; empty when it is absent.
inline std::u16string_view contentOf(const TagEvent& event)
{
    const auto range = rangeOfAttributeOfTagCharacters(event.string, event.tag, "CONTENT", Reading::Lenient);
    return range ? event.units(*range) : std::u16string_view();
}

/// Texts joined by spaces; nil until the first one.
class JoinedText {
public:
    void add(std::u16string_view text)
    {
        if (text.empty())
            return;
        if (!m_text.isEmpty())
            m_text.append(u' ');
        m_text.append(text);
    }
    std::optional<String> take()
    {
        return m_text.isEmpty() ? std::nullopt : std::optional(std::move(m_text).take());
    }

private:
    MutableString m_text;
};

} // namespace caddis
