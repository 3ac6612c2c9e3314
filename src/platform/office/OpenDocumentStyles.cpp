// Styles, lists and pages of an OpenDocument text (OpenDocument 1.2 part 1, 16 to 20).

#include "platform/office/OpenDocumentReader.h"
#include "platform/office/Values.h"

#include <algorithm>
#include <string>

namespace caddis::office {

namespace {

constexpr std::size_t MostNames = 65536; // Of fonts and cells.
constexpr std::size_t MostStops = 64;

std::string_view text(const XMLAttributes& attributes, std::string_view name)
{
    return attributes.utf8(name).value_or("");
}

// 'Liberation Serif' and "Courier New", Courier.
String firstFamily(const String& families)
{
    std::u16string_view family = families.view().substr(0, families.view().find(u','));
    const auto isQuote = [](char16_t unit) { return unit == u'\'' || unit == u'"' || unit == u' '; };
    while (!family.empty() && isQuote(family.front()))
        family.remove_prefix(1);
    while (!family.empty() && isQuote(family.back()))
        family.remove_suffix(1);
    return String(family);
}

LineStyle lineStyle(std::string_view style, std::string_view type, std::string_view width)
{
    if (style == "none")
        return LineStyle::None;
    if (type == "double")
        return LineStyle::Double;
    return width == "bold" || width == "thick" ? LineStyle::Thick : LineStyle::Single;
}

std::u16string_view numberFormat(std::string_view format)
{
    if (format == "i")
        return u"lower-roman";
    if (format == "I")
        return u"upper-roman";
    if (format == "a")
        return u"lower-alpha";
    if (format == "A")
        return u"upper-alpha";
    return format.empty() ? u"none" : u"decimal";
}

void take(std::optional<double>& value, const std::optional<double>& found)
{
    if (found)
        value = found;
}

} // namespace

void OpenDocumentReader::startFontFace(const XMLAttributes& attributes)
{
    const auto name = attributes.value("style:name");
    const auto family = attributes.value("svg:font-family");
    if (name && family && m_fontFaces.size() < MostNames)
        m_fontFaces[*name] = firstFamily(*family);
}

void OpenDocumentReader::startStyle(const XMLAttributes& attributes)
{
    const String family = attributes.value("style:family").value_or(String());
    const auto name = attributes.value("style:name");
    if (!name)
        return;
    if (family == u"table-cell" && m_cellStyles.size() < MostNames)
        m_cellStyle = &m_cellStyles[*name];
    if (!(family == u"paragraph") && !(family == u"text"))
        return;
    m_style = &m_styles.define(styleName(family, *name));
    if (const auto parent = attributes.value("style:parent-style-name"))
        m_style->parent = styleName(family, *parent);
}

void OpenDocumentReader::startDefaultStyle(const XMLAttributes& attributes)
{
    if (text(attributes, "style:family") == "paragraph")
        m_style = &m_styles.defaults;
}

void OpenDocumentReader::endStyle()
{
    m_style = nullptr;
    m_cellStyle = nullptr;
}

void OpenDocumentReader::letterProperties(const XMLAttributes& attributes)
{
    if (!m_style || m_level)
        return;
    LetterProperties& letters = m_style->letters;
    const auto face = m_fontFaces.find(attributes.value("style:font-name").value_or(String()));
    if (face != m_fontFaces.end())
        letters.font = face->second;
    else if (const auto family = attributes.value("fo:font-family"))
        letters.font = firstFamily(*family);
    const std::string_view size = text(attributes, "fo:font-size");
    take(letters.size, lengthOf(size));
    take(letters.sizeFactor, percentage(size));
    if (const auto weight = attributes.utf8("fo:font-weight"))
        letters.bold = *weight == "bold" || numberAtFront(*weight) >= 600;
    if (const auto slant = attributes.utf8("fo:font-style"))
        letters.italic = *slant != "normal";
    if (const auto color = attributes.utf8("fo:color"))
        letters.foreground = colorOfHex(*color);
    if (const auto color = attributes.utf8("fo:background-color"))
        letters.background = colorOfHex(*color);
    if (attributes.utf8("style:use-window-font-color") == "true")
        letters.foreground = LetterProperties::Paint();
    if (const auto shown = attributes.utf8("text:display"))
        letters.hidden = *shown == "none";
    take(letters.kern, lengthOf(text(attributes, "fo:letter-spacing")));
    lineProperties(letters, attributes);
}

void OpenDocumentReader::lineProperties(LetterProperties& letters, const XMLAttributes& attributes)
{
    if (const auto style = attributes.utf8("style:text-underline-style"))
        letters.underline = lineStyle(*style, text(attributes, "style:text-underline-type"),
            text(attributes, "style:text-underline-width"));
    if (const auto style = attributes.utf8("style:text-line-through-style"))
        letters.strikethrough = lineStyle(*style, text(attributes, "style:text-line-through-type"), {});
    if (const auto position = attributes.utf8("style:text-position")) {
        const double raised = numberAtFront(*position);
        const bool isUp = position->starts_with("super") || raised > 0;
        letters.superscript = isUp ? 1 : position->starts_with("sub") || raised < 0 ? -1 : 0;
    }
}

void OpenDocumentReader::paragraphProperties(const XMLAttributes& attributes)
{
    if (!m_style)
        return;
    ParagraphProperties& paragraph = m_style->paragraph;
    const auto length = [&](std::string_view name) { return lengthOf(text(attributes, name)); };
    const std::string_view aligned = text(attributes, "fo:text-align");
    if (!aligned.empty())
        paragraph.alignment = aligned == "center"    ? TextAlignment::Center
            : aligned == "end" || aligned == "right" ? TextAlignment::Right
            : aligned == "justify"                   ? TextAlignment::Justified
                                                     : TextAlignment::Left;
    const std::string_view mode = text(attributes, "style:writing-mode");
    if (mode == "rl-tb" || mode == "rl")
        paragraph.direction = WritingDirection::RightToLeft;
    take(paragraph.leading, length("fo:margin-left"));
    take(paragraph.trailing, length("fo:margin-right"));
    take(paragraph.firstLine, length("fo:text-indent"));
    take(paragraph.before, length("fo:margin-top"));
    take(paragraph.after, length("fo:margin-bottom"));
    const std::string_view height = text(attributes, "fo:line-height");
    if (const auto multiple = percentage(height))
        paragraph.lineHeight = ParagraphProperties::LineHeight { *multiple == 1 ? 0 : *multiple, 0, 0 };
    else if (const auto exact = lengthOf(height))
        paragraph.lineHeight = ParagraphProperties::LineHeight { 0, *exact, *exact };
    else if (const auto least = length("style:line-height-at-least"))
        paragraph.lineHeight = ParagraphProperties::LineHeight { 0, *least, 0 };
}

void OpenDocumentReader::tabStop(const XMLAttributes& attributes)
{
    const auto location = m_style ? lengthOf(text(attributes, "style:position")) : std::nullopt;
    if (!location)
        return;
    auto& stops = m_style->paragraph.tabStops;
    if (!stops)
        stops.emplace();
    const std::string_view type = text(attributes, "style:type");
    const TabAlignment aligned = type == "center" ? TabAlignment::Center
        : type == "right"                         ? TabAlignment::Right
        : type == "char"                          ? TabAlignment::Decimal
                                                  : TabAlignment::Left;
    if (stops->size() < MostStops)
        stops->push_back({ *location, aligned });
}

// "0.5pt solid #000000"; one border stands for all four.
void OpenDocumentReader::cellProperties(const XMLAttributes& attributes)
{
    if (!m_cellStyle)
        return;
    m_cellStyle->background = colorOfHex(text(attributes, "fo:background-color"));
    m_cellStyle->padding = CellPadding::ofAllSides(lengthOf(text(attributes, "fo:padding")).value_or(0));
    std::string_view border = text(attributes, "fo:border");
    for (const auto* const side : { "fo:border-left", "fo:border-bottom", "fo:border-top" }) {
        if (border.empty() || border == "none")
            border = text(attributes, side);
    }
    const std::size_t blank = std::min(border.find(' '), border.size());
    m_cellStyle->borderWidth = std::clamp(lengthOf(border.substr(0, blank)).value_or(0), 0.0, 12.0);
    const std::size_t hash = border.find('#');
    if (hash != border.npos)
        m_cellStyle->borderColor = colorOfHex(border.substr(hash, 7));
}

void OpenDocumentReader::startListStyle(const XMLAttributes& attributes)
{
    m_level = nullptr; // A style that is defined again loses its levels.
    if (const auto name = attributes.value("style:name"))
        m_listLevels = &m_numbering.define(*name);
}

void OpenDocumentReader::endListStyle()
{
    m_listLevels = nullptr;
    m_level = nullptr;
}

void OpenDocumentReader::startLevel(const XMLAttributes& attributes)
{
    const int level = integerAtFront(text(attributes, "text:level")) - 1;
    const bool isKnown = m_listLevels && level >= 0 && level <= LastListLevel;
    m_level = isKnown ? &(*m_listLevels)[static_cast<std::size_t>(level)] : nullptr;
}

void OpenDocumentReader::endLevel() { m_level = nullptr; }

// A level shows the numbers of as many levels as it says, its own the last of them.
void OpenDocumentReader::numberLevel(const XMLAttributes& attributes)
{
    startLevel(attributes);
    if (!m_level)
        return;
    const auto own = static_cast<int>(m_level - m_listLevels->data());
    const int shown
        = std::clamp(integerAtFront(attributes.utf8("text:display-levels").value_or("1")), 1, own + 1);
    m_level->format = String(numberFormat(text(attributes, "style:num-format")));
    m_level->start
        = attributes.utf8("text:start-value") ? integerAtFront(text(attributes, "text:start-value")) : 1;
    MutableString pattern;
    pattern.append(attributes.value("style:num-prefix").value_or(String()));
    for (int level = own + 1 - shown; level <= own && !(m_level->format == u"none"); ++level) {
        pattern.append(u'%').append(static_cast<char16_t>(u'1' + level));
        if (level < own)
            pattern.append(u'.');
    }
    pattern.append(attributes.value("style:num-suffix").value_or(String()));
    m_level->pattern = std::move(pattern).take();
}

void OpenDocumentReader::bulletLevel(const XMLAttributes& attributes)
{
    startLevel(attributes);
    if (!m_level)
        return;
    m_level->format = String(ListLevel::Bullet);
    m_level->pattern = bulletOfSymbol(attributes.value("text:bullet-char").value_or(String(u"\u2022")));
}

// Older documents say it in the one element, newer ones in the one inside it.
void OpenDocumentReader::levelProperties(const XMLAttributes& attributes)
{
    if (!m_level)
        return;
    const auto length = [&](std::string_view name) { return lengthOf(text(attributes, name)); };
    if (const auto before = length("text:space-before"))
        m_level->indents.leading = *before + length("text:min-label-width").value_or(0);
    take(m_level->indents.leading, length("fo:margin-left"));
    take(m_level->indents.firstLine, length("fo:text-indent"));
}

void OpenDocumentReader::pageLayout(const XMLAttributes& attributes)
{
    const auto length = [&](std::string_view name) { return lengthOf(text(attributes, name)); };
    const auto width = length("fo:page-width");
    const auto height = length("fo:page-height");
    if (m_page.find(DocumentAttribute::PaperSize) || !width || !height)
        return; // The first layout is that of the first page.
    m_page.set(String(DocumentAttribute::PaperSize), Value(stringFromSize({ *width, *height })));
    static constexpr std::pair<std::string_view, std::u16string_view> Sides[] {
        { "fo:margin-left", DocumentAttribute::LeftMargin },
        { "fo:margin-right", DocumentAttribute::RightMargin },
        { "fo:margin-top", DocumentAttribute::TopMargin },
        { "fo:margin-bottom", DocumentAttribute::BottomMargin }
    };
    for (const auto& [name, key] : Sides) {
        if (const auto margin = length(name))
            m_page.set(String(key), Value(*margin));
    }
}

} // namespace caddis::office
