// How letters and paragraphs look in Word's markup (ECMA-376 part 1, 17.3).

#include "platform/office/Values.h"
#include "platform/office/WordReader.h"

#include <algorithm>
#include <cmath>

namespace caddis::office {

namespace {

constexpr double TwipsPerPoint = 20;
constexpr double HalfPoints = 2;
constexpr std::size_t MostStops = 64;

struct NamedColor {
    std::string_view name;
    TextColor color;
};

// ECMA-376 part 1, 17.18.40.
const std::array<NamedColor, 16>& highlights()
{
    static const auto rgb = &TextColor::fromBytes;
    static const std::array<NamedColor, 16> colors { { { "black", rgb(0, 0, 0, 1) },
        { "blue", rgb(0, 0, 255, 1) }, { "cyan", rgb(0, 255, 255, 1) }, { "green", rgb(0, 255, 0, 1) },
        { "magenta", rgb(255, 0, 255, 1) }, { "red", rgb(255, 0, 0, 1) }, { "yellow", rgb(255, 255, 0, 1) },
        { "white", rgb(255, 255, 255, 1) }, { "darkBlue", rgb(0, 0, 128, 1) },
        { "darkCyan", rgb(0, 128, 128, 1) }, { "darkGreen", rgb(0, 128, 0, 1) },
        { "darkMagenta", rgb(128, 0, 128, 1) }, { "darkRed", rgb(128, 0, 0, 1) },
        { "darkYellow", rgb(128, 128, 0, 1) }, { "darkGray", rgb(128, 128, 128, 1) },
        { "lightGray", rgb(192, 192, 192, 1) } } };
    return colors;
}

std::optional<TextColor> highlight(std::string_view name)
{
    const auto* const found = std::ranges::find(highlights(), name, &NamedColor::name);
    return found == highlights().end() ? std::nullopt : std::optional(found->color);
}

LineStyle lineStyle(std::string_view name)
{
    if (name == "none")
        return LineStyle::None;
    if (name == "double")
        return LineStyle::Double;
    return name == "thick" ? LineStyle::Thick : LineStyle::Single;
}

TextAlignment alignment(std::string_view name)
{
    if (name == "center")
        return TextAlignment::Center;
    if (name == "right" || name == "end")
        return TextAlignment::Right;
    return name == "both" || name == "distribute" ? TextAlignment::Justified : TextAlignment::Left;
}

std::optional<double> twips(const XMLAttributes& attributes, std::string_view name)
{
    const auto text = attributes.utf8(name);
    return text ? std::optional(numberAtFront(*text) / TwipsPerPoint) : std::nullopt;
}

} // namespace

// The properties of a paragraph's mark are read and dropped.
void WordReader::startLetters(const XMLAttributes&)
{
    if (m_paragraph || m_level)
        m_letters = &m_markLetters;
    else if (m_style)
        m_letters = &m_style->letters;
    else if (!m_runs.empty())
        m_letters = &m_runs.back();
}

void WordReader::endLetters() { m_letters = nullptr; }

void WordReader::startParagraphProperties(const XMLAttributes&)
{
    if (m_level)
        m_paragraph = &m_level->indents;
    else if (m_style)
        m_paragraph = &m_style->paragraph;
    else if (!m_paragraphs.empty())
        m_paragraph = &m_paragraphs.back().direct;
}

void WordReader::endParagraphProperties() { m_paragraph = nullptr; }

bool WordReader::letterProperty(std::string_view name, const XMLAttributes& attributes)
{
    if (!name.starts_with("w:"))
        return false;
    name.remove_prefix(2);
    const auto given = attributes.utf8("w:val");
    if (name == "rFonts")
        fonts(attributes);
    else if (name == "rStyle" && m_letters != &m_markLetters && !m_style && !m_runStyles.empty())
        m_runStyles.back() = attributes.value("w:val").value_or(String());
    else if (name == "b")
        m_letters->bold = isOn(given.value_or("1"));
    else if (name == "i")
        m_letters->italic = isOn(given.value_or("1"));
    else if (name == "vanish")
        m_letters->hidden = isOn(given.value_or("1"));
    else if (name == "strike" || name == "dstrike")
        m_letters->strikethrough = !isOn(given.value_or("1")) ? LineStyle::None
            : name == "strike"                                ? LineStyle::Single
                                                              : LineStyle::Double;
    else
        return letterLook(name, given.value_or(""));
    return true;
}

bool WordReader::letterLook(std::string_view name, std::string_view value)
{
    if (name == "sz")
        m_letters->size = numberAtFront(value) / HalfPoints;
    else if (name == "u")
        m_letters->underline = lineStyle(value);
    else if (name == "color")
        m_letters->foreground = colorOfHex(value);
    else if (name == "highlight")
        m_letters->background = highlight(value);
    else if (name == "vertAlign")
        m_letters->superscript = value == "superscript" ? 1 : value == "subscript" ? -1 : 0;
    else if (name == "position")
        m_letters->baselineOffset = numberAtFront(value) / HalfPoints;
    else if (name == "spacing")
        m_letters->kern = numberAtFront(value) / TwipsPerPoint;
    else
        return false;
    return true;
}

void WordReader::fonts(const XMLAttributes& attributes)
{
    if (const auto theme = attributes.utf8("w:asciiTheme")) {
        const auto found = m_themeFonts.find(theme->substr(0, 5));
        if (found != m_themeFonts.end())
            m_letters->font = found->second;
        return;
    }
    for (const auto* const name : { "w:ascii", "w:hAnsi", "w:cs", "w:h-ansi" }) {
        if (auto font = attributes.value(name); font && !font->isEmpty()) {
            m_letters->font = std::move(font);
            return;
        }
    }
}

bool WordReader::paragraphProperty(std::string_view name, const XMLAttributes& attributes)
{
    const std::string_view value = attributes.utf8("w:val").value_or("");
    if (name == "w:pStyle" && !m_style && !m_level && !m_paragraphs.empty())
        m_paragraphs.back().style = attributes.value("w:val").value_or(String());
    else if (name == "w:jc")
        m_paragraph->alignment = alignment(value);
    else if (name == "w:bidi")
        m_paragraph->direction = attributes.utf8("w:val") && !isOn(value) ? WritingDirection::LeftToRight
                                                                          : WritingDirection::RightToLeft;
    else if (name == "w:ind")
        indents(attributes);
    else if (name == "w:spacing")
        spacing(attributes);
    else if (name == "w:tabs")
        m_isInTabs = true;
    else if (name == "w:outlineLvl") {
        const std::int32_t level = integerAtFront(value);
        m_paragraph->headerLevel = static_cast<std::uint8_t>(level >= 0 && level < 6 ? level + 1 : 0);
    } else if (name == "w:numId" || name == "w:ilfo") {
        const auto list = attributes.value("w:val");
        m_paragraph->list = list && !(*list == u"0") ? *list : String();
    } else if (name == "w:ilvl") {
        m_paragraph->listLevel = std::clamp(integerAtFront(value), 0, LastListLevel);
    } else {
        return false;
    }
    return true;
}

void WordReader::indents(const XMLAttributes& attributes)
{
    for (const auto* const name : { "w:left", "w:start" }) {
        if (const auto indent = twips(attributes, name))
            m_paragraph->leading = indent;
    }
    for (const auto* const name : { "w:right", "w:end" }) {
        if (const auto indent = twips(attributes, name))
            m_paragraph->trailing = indent;
    }
    if (const auto indent = twips(attributes, "w:firstLine"))
        m_paragraph->firstLine = indent;
    else if (const auto hanging = twips(attributes, "w:hanging"))
        m_paragraph->firstLine = -*hanging;
}

void WordReader::spacing(const XMLAttributes& attributes)
{
    constexpr double SingleLine = 240;
    if (const auto before = twips(attributes, "w:before"))
        m_paragraph->before = before;
    if (const auto after = twips(attributes, "w:after"))
        m_paragraph->after = after;
    const auto line = attributes.utf8("w:line");
    if (!line)
        return;
    const double number = std::abs(numberAtFront(*line));
    const std::string_view rule = attributes.utf8("w:lineRule").value_or("auto");
    ParagraphProperties::LineHeight height;
    if (rule == "auto") {
        height.multiple = number == SingleLine ? 0 : number / SingleLine;
    } else {
        height.minimum = number / TwipsPerPoint;
        height.maximum = rule == "exact" ? height.minimum : 0;
    }
    m_paragraph->lineHeight = height;
}

void WordReader::tabStop(const XMLAttributes& attributes)
{
    if (!m_paragraph)
        return;
    if (!m_paragraph->tabStops)
        m_paragraph->tabStops.emplace();
    const std::string_view kind = attributes.utf8("w:val").value_or("");
    const TabAlignment aligned = kind == "center" ? TabAlignment::Center
        : kind == "right" || kind == "end"        ? TabAlignment::Right
        : kind == "decimal"                       ? TabAlignment::Decimal
                                                  : TabAlignment::Left;
    if (kind != "clear" && kind != "bar" && m_paragraph->tabStops->size() < MostStops)
        m_paragraph->tabStops->push_back({ twips(attributes, "w:pos").value_or(0), aligned });
}

// Behind letters, or of a cell.
void WordReader::shading(const XMLAttributes& attributes)
{
    const auto color = colorOfHex(attributes.utf8("w:fill").value_or(""));
    if (m_letters)
        m_letters->background = color;
    else if (TableCell* cell = m_paragraph ? nullptr : m_text.cell())
        cell->background = color;
}

} // namespace caddis::office
