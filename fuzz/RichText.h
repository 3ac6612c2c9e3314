#pragma once

#include "Fuzz.h"
#include "platform/richtext/AttributedString.h"

namespace caddis {

/// What holds of any rich text: runs begin at 0, grow, and lie in the text; they name styles, attachments,
/// lists and tables that are there.
inline void checkText(const AttributedString& text)
{
    const auto checkRuns = [&](auto runs, auto styles) {
        INVARIANT(runs.empty() == text.string().isEmpty());
        std::size_t next = 0;
        for (const auto& run : runs) {
            INVARIANT(next == 0 ? run.location == 0 : run.location >= next);
            INVARIANT(run.location < text.string().length() && run.style < styles.size());
            next = run.location + 1;
        }
    };
    checkRuns(text.runs(), text.styles());
    checkRuns(text.paragraphRuns(), text.paragraphStyles());
    for (const CharacterStyle& style : text.styles())
        INVARIANT(
            style.attachment == CharacterStyle::NoAttachment || style.attachment < text.attachments().size());
    for (const ParagraphStyle& style : text.paragraphStyles()) {
        for (const std::uint32_t list : style.lists)
            INVARIANT(list < text.lists().size());
        for (const TableCell& cell : style.cells)
            INVARIANT(cell.table < text.tables().size());
    }
}

} // namespace caddis
