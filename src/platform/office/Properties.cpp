#include "platform/office/Properties.h"

#include <algorithm>

namespace caddis::office {

namespace {

constexpr std::size_t MostStyles = 65536;
constexpr std::size_t LongestChain = 32;

template <typename T> void take(std::optional<T>& value, const std::optional<T>& over)
{
    if (over)
        value = over;
}

} // namespace

void LetterProperties::lay(const LetterProperties& over)
{
    take(font, over.font);
    take(size, over.size);
    if (over.sizeFactor && size)
        *size *= *over.sizeFactor;
    else if (over.sizeFactor)
        sizeFactor = sizeFactor.value_or(1) * *over.sizeFactor;
    take(bold, over.bold);
    take(italic, over.italic);
    take(hidden, over.hidden);
    take(underline, over.underline);
    take(strikethrough, over.strikethrough);
    take(foreground, over.foreground);
    take(background, over.background);
    take(superscript, over.superscript);
    take(baselineOffset, over.baselineOffset);
    take(kern, over.kern);
}

CharacterStyle LetterProperties::style() const
{
    constexpr double Smallest = 1;
    constexpr double Largest = 2000;
    CharacterStyle style;
    if (font)
        style.font.name = *font;
    style.font.size = std::clamp(size.value_or(style.font.size), Smallest, Largest);
    style.font.bold = bold.value_or(false);
    style.font.italic = italic.value_or(false);
    style.underline = underline.value_or(LineStyle::None);
    style.strikethrough = strikethrough.value_or(LineStyle::None);
    style.foreground = foreground.value_or(std::nullopt);
    style.background = background.value_or(std::nullopt);
    style.superscript = superscript.value_or(0);
    style.baselineOffset = baselineOffset.value_or(0);
    style.kern = kern.value_or(0);
    return style;
}

void ParagraphProperties::lay(const ParagraphProperties& over)
{
    take(alignment, over.alignment);
    take(direction, over.direction);
    take(headerLevel, over.headerLevel);
    take(leading, over.leading);
    take(trailing, over.trailing);
    take(firstLine, over.firstLine);
    take(before, over.before);
    take(after, over.after);
    take(lineHeight, over.lineHeight);
    take(tabStops, over.tabStops);
    take(list, over.list);
    take(listLevel, over.listLevel);
}

ParagraphStyle ParagraphProperties::style() const
{
    ParagraphStyle style;
    style.alignment = alignment.value_or(TextAlignment::Natural);
    style.direction = direction.value_or(WritingDirection::Natural);
    style.headerLevel = headerLevel.value_or(0);
    style.headIndent = leading.value_or(0);
    style.firstLineIndent = style.headIndent + firstLine.value_or(0);
    style.tailIndent = -trailing.value_or(0) + 0.0;
    style.spacingBefore = before.value_or(0);
    style.spacingAfter = after.value_or(0);
    const LineHeight height = lineHeight.value_or(LineHeight());
    style.lineHeightMultiple = height.multiple;
    style.minimumLineHeight = height.minimum;
    style.maximumLineHeight = height.maximum;
    if (tabStops)
        style.tabStops = *tabStops;
    std::ranges::stable_sort(style.tabStops, {}, &TabStop::location);
    return style;
}

Style& StyleSheet::define(const String& name)
{
    m_resolved.clear();
    if (m_styles.size() >= MostStyles && !has(name))
        return m_surplus = {};
    return m_styles[name];
}

const Style& StyleSheet::resolved(const String& name) const
{
    if (const auto known = m_resolved.find(name); known != m_resolved.end())
        return known->second;
    std::vector<const Style*> chain;
    for (auto found = m_styles.find(name); found != m_styles.end() && chain.size() < LongestChain;
         found = m_styles.find(found->second.parent))
        chain.push_back(&found->second);
    if (chain.empty()) {
        static const Style plain;
        return plain;
    }
    Style result;
    for (std::size_t left = chain.size(); left > 0; --left) {
        const Style& style = *chain[left - 1];
        result.letters.lay(style.letters);
        result.paragraph.lay(style.paragraph);
        take(result.cellBorder, style.cellBorder);
    }
    return m_resolved.emplace(name, std::move(result)).first->second;
}

} // namespace caddis::office
