#pragma once

#include "markup/MaskedText.h"
#include "markup/UpperAscii.h"

namespace caddis {

/// Where script and style elements end, whose content is no markup.
///
/// The searches run to the end of the text when there is nothing to find, and again for the next element. So
/// the last answer of each is remembered: it holds until the scan has passed it, as all positions rise.
class RawText {
public:
    explicit RawText(MaskedText& text)
        : m_text(text)
    {
    }

    static bool isRaw(std::u16string_view name);

    /// The last unit of the element `name`, the start tag of which begins at `tag`: the '>' of its closing
    /// tag, or of the one behind the first comment's end when that comment was opened inside the element, or
    /// the last unit of the text when that '>' is missing. NotFound when there is no closing tag.
    std::size_t endOfElement(std::size_t tag, std::u16string_view name);

private:
    struct Remembered {
        std::size_t found = 0; ///< valid for every search from here or before; NotFound: no more of them
    };
    struct Element {
        UpperAscii name;
        Remembered closing {}; ///< behind a start tag
        Remembered closingBehindComment {};
    };

    std::size_t closingTag(Remembered& last, std::size_t from, UpperAscii name);
    std::size_t commentStart(std::size_t from, std::size_t end);
    std::size_t commentEnd(std::size_t from);

    MaskedText& m_text;
    Element m_script { "SCRIPT" };
    Element m_style { "STYLE" };
    Remembered m_commentEnd;
};

} // namespace caddis
