#pragma once

#include "platform/base/Range.h"

#include <string_view>

namespace caddis {

/// What a tag, start or end, writes into plain text.
enum class TagBreak : unsigned char {
    None,
    Paragraph, ///< two line feeds
    Line, ///< a line feed
    Cell, ///< a space, also behind a break
    Space, ///< a space, unless a break stands there
};

/// The tags that plain text has to know one by one; the others matter only by their break.
enum class HtmlTag : unsigned char {
    Other,
    Anchor,
    Body,
    Code,
    Div,
    Font,
    Head,
    Heading,
    Iframe,
    Image,
    Marquee,
    Noframes,
    Noscript,
    Option,
    Plaintext,
    Pre,
    Select,
    Span,
    Table,
    TableRow,
    Textarea,
};

struct HtmlTagRow {
    std::u16string_view name;
    TagBreak written = TagBreak::None;
    HtmlTag tag = HtmlTag::Other;
};

/// The row of the name that stands at `name` in `text`, in any case; a row of nothing for all other names.
const HtmlTagRow& htmlTag(std::u16string_view text, Range name);

} // namespace caddis
