#pragma once

#include "platform/richtext/AttributedString.h"

#include <cstdio>
#include <string>

namespace caddis {

/// A rich text as lines, one a paragraph: what is special about it, then its runs, what is special about each
/// in braces. A line break in a paragraph is shown as "|".
///
///     [h1] {b 16}Title
///     [list {decimal}.] {}TAB1.TABitem
///     [cell 0,1 x2] {link http://a/}text{}*photo.png*
inline std::string traceOf(const CharacterStyle& style)
{
    std::string words;
    const auto add = [&](const std::string& word) { words += (words.empty() ? "" : " ") + word; };
    char number[32];
    std::snprintf(number, sizeof number, "%g", style.font.size);
    if (!(style.font.name == u"Helvetica"))
        add(style.font.name.utf8());
    if (style.font.size != 12)
        add(number);
    if (style.font.bold)
        add("b");
    if (style.font.italic)
        add("i");
    if (style.underline != LineStyle::None)
        add(style.underline == LineStyle::Double ? "uu" : "u");
    if (style.strikethrough != LineStyle::None)
        add("s");
    const auto color = [&](const char* mark, const std::optional<TextColor>& part) {
        if (!part)
            return;
        std::snprintf(number, sizeof number, "%s%02x%02x%02x", mark, TextColor::byte(part->red),
            TextColor::byte(part->green), TextColor::byte(part->blue));
        add(number);
    };
    color("#", style.foreground);
    color("on #", style.background);
    if (style.superscript != 0)
        add(style.superscript > 0 ? "super" : "sub");
    if (!style.link.isEmpty())
        add("link " + style.link.utf8());
    return '{' + words + '}';
}

inline std::string traceOf(const AttributedString& text, const ParagraphStyle& style)
{
    std::string words;
    const auto add = [&](const std::string& word) { words += (words.empty() ? "" : " ") + word; };
    if (style.headerLevel > 0)
        add("h" + std::to_string(style.headerLevel));
    static constexpr const char* Alignments[] = { "", "left", "center", "right", "justified" };
    if (style.alignment != TextAlignment::Natural)
        add(Alignments[static_cast<int>(style.alignment)]);
    for (const std::uint32_t list : style.lists)
        add("list " + text.lists().at(list).markerFormat.utf8());
    for (const TableCell& cell : style.cells) {
        add("cell " + std::to_string(cell.row) + ',' + std::to_string(cell.column));
        if (cell.columnSpan > 1)
            words += " x" + std::to_string(cell.columnSpan);
    }
    return words.empty() ? words : '[' + words + "] ";
}

inline std::string traceOf(const AttributedString& text)
{
    std::string trace;
    std::size_t run = 0;
    std::size_t paragraph = 0;
    bool atStart = true;
    const auto styleAt = [](std::size_t& at, auto runs, std::size_t index) {
        while (at + 1 < runs.size() && runs[at + 1].location <= index)
            ++at;
        return runs[at];
    };
    for (std::size_t index = 0; index < text.string().length(); ++index) {
        const auto letters = styleAt(run, text.runs(), index);
        const auto lines = styleAt(paragraph, text.paragraphRuns(), index);
        if (atStart)
            trace += traceOf(text, text.paragraphStyles()[lines.style]);
        const char16_t unit = text.string()[index];
        if (unit != u'\n' && (atStart || letters.location == index))
            trace += traceOf(text.styles()[letters.style]);
        atStart = unit == u'\n';
        if (unit == AttachmentCharacter)
            trace += '*' + text.attachments()[text.styles()[letters.style].attachment].file.name.utf8() + '*';
        else if (unit == u'\t')
            trace += "TAB";
        else
            trace += unit == LineSeparator ? "|" : String(std::u16string_view(&unit, 1)).utf8();
    }
    return trace;
}

} // namespace caddis
