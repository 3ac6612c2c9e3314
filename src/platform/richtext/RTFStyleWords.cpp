// The control words that say how letters, paragraphs and cells look (RTF 1.9.1, "Font (Character) Formatting
// Properties" and "Paragraph Formatting Properties").

#include "platform/richtext/RTFReader.h"

#include <algorithm>

namespace caddis::rtf {

namespace {

using Number = std::optional<std::int32_t>;

double points(std::int32_t twips) { return twips / 20.0; }
double pointsOf(Number twips) { return points(twips.value_or(0)); }

bool isOn(Number number) { return number.value_or(1) != 0; }
LineStyle ifOn(Number number, LineStyle style) { return isOn(number) ? style : LineStyle::None; }

// Groups copy their stops, so there can't be any number of them.
void addTabStop(Paragraph& paragraph, double location)
{
    constexpr std::size_t MostStops = 64;
    auto& stops = paragraph.style.tabStops;
    const TabAlignment alignment = std::exchange(paragraph.nextTab, TabAlignment::Left);
    if (stops.size() < MostStops)
        stops.push_back({ location, alignment });
}

// What a word does to the letters that follow, or to the paragraph.
struct Look {
    void (*letters)(Letters&, Number) = nullptr;
    void (*paragraph)(Paragraph&, Number) = nullptr;
};

Look letters(void (*edit)(Letters&, Number)) { return { edit, nullptr }; }
Look paragraph(void (*edit)(Paragraph&, Number)) { return { nullptr, edit }; }

using Looks = std::unordered_map<std::string_view, Look>;

void addFontWords(Looks& looks)
{
    looks["f"] = letters([](Letters& l, Number n) { l.font = n.value_or(0); });
    looks["fs"] = letters([](Letters& l, Number n) { l.size = std::clamp(n.value_or(24), 1, 4000) * 500; });
    looks["fsmilli"] = letters([](Letters& l, Number n) { l.size = std::clamp(n.value_or(0), 1, 2000000); });
    looks["b"] = letters([](Letters& l, Number n) { l.bold = isOn(n); });
    looks["i"] = letters([](Letters& l, Number n) { l.italic = isOn(n); });
    looks["cf"] = letters([](Letters& l, Number n) { l.foreground = n.value_or(0); });
    looks["cb"] = looks["highlight"] = looks["chcbpat"]
        = letters([](Letters& l, Number n) { l.background = n.value_or(0); });
    looks["v"] = letters([](Letters& l, Number n) { l.hidden = isOn(n); });
    looks["plain"] = letters([](Letters& l, Number) { l = Letters { .link = l.link }; });
}

void addLineWords(Looks& looks)
{
    looks["ul"] = looks["uld"] = looks["ulw"] = looks["uldash"]
        = letters([](Letters& l, Number n) { l.underline = ifOn(n, LineStyle::Single); });
    looks["uldb"] = letters([](Letters& l, Number n) { l.underline = ifOn(n, LineStyle::Double); });
    looks["ulth"] = letters([](Letters& l, Number n) { l.underline = ifOn(n, LineStyle::Thick); });
    looks["ulnone"] = letters([](Letters& l, Number) { l.underline = LineStyle::None; });
    looks["strike"] = letters([](Letters& l, Number n) { l.strikethrough = ifOn(n, LineStyle::Single); });
    looks["striked"] = letters([](Letters& l, Number n) { l.strikethrough = ifOn(n, LineStyle::Double); });
    looks["super"] = letters([](Letters& l, Number n) { l.superscript = n.value_or(1); });
    looks["sub"] = letters([](Letters& l, Number n) { l.superscript = -n.value_or(1); });
    looks["nosupersub"] = letters([](Letters& l, Number) { l.superscript = 0; });
    looks["up"] = letters([](Letters& l, Number n) { l.baseline = n.value_or(6); });
    looks["dn"] = letters([](Letters& l, Number n) { l.baseline = -n.value_or(6); });
    looks["expndtw"] = letters([](Letters& l, Number n) { l.kern = n.value_or(0); });
}

void addParagraphWords(Looks& looks)
{
    looks["pard"] = paragraph([](Paragraph& p, Number) { p = {}; });
    looks["ql"] = paragraph([](Paragraph& p, Number) { p.style.alignment = TextAlignment::Left; });
    looks["qc"] = paragraph([](Paragraph& p, Number) { p.style.alignment = TextAlignment::Center; });
    looks["qr"] = paragraph([](Paragraph& p, Number) { p.style.alignment = TextAlignment::Right; });
    looks["qj"] = paragraph([](Paragraph& p, Number) { p.style.alignment = TextAlignment::Justified; });
    looks["ltrpar"]
        = paragraph([](Paragraph& p, Number) { p.style.direction = WritingDirection::LeftToRight; });
    looks["rtlpar"]
        = paragraph([](Paragraph& p, Number) { p.style.direction = WritingDirection::RightToLeft; });
    looks["tx"] = paragraph([](Paragraph& p, Number n) { addTabStop(p, pointsOf(n)); });
    looks["tqc"] = paragraph([](Paragraph& p, Number) { p.nextTab = TabAlignment::Center; });
    looks["tqr"] = paragraph([](Paragraph& p, Number) { p.nextTab = TabAlignment::Right; });
    looks["tqdec"] = paragraph([](Paragraph& p, Number) { p.nextTab = TabAlignment::Decimal; });
    looks["ls"] = paragraph([](Paragraph& p, Number n) { p.list = n.value_or(0); });
    looks["ilvl"] = paragraph([](Paragraph& p, Number n) { p.listLevel = n.value_or(0); });
    looks["intbl"] = paragraph([](Paragraph& p, Number) { p.tableLevel = std::max(p.tableLevel, 1); });
    looks["itap"] = paragraph([](Paragraph& p, Number n) { p.tableLevel = std::max(n.value_or(0), 0); });
    looks["outlinelevel"] = paragraph([](Paragraph& p, Number n) {
        const std::int32_t level = n.value_or(0);
        p.style.headerLevel = static_cast<std::uint8_t>(level >= 0 && level < 6 ? level + 1 : 0);
    });
}

void addSpacingWords(Looks& looks)
{
    looks["li"] = paragraph([](Paragraph& p, Number n) { p.style.headIndent = pointsOf(n); });
    looks["fi"] = paragraph([](Paragraph& p, Number n) { p.firstLine = n.value_or(0); });
    looks["ri"] = paragraph([](Paragraph& p, Number n) { p.style.tailIndent = -pointsOf(n); });
    looks["sb"] = paragraph([](Paragraph& p, Number n) { p.style.spacingBefore = pointsOf(n); });
    looks["sa"] = paragraph([](Paragraph& p, Number n) { p.style.spacingAfter = pointsOf(n); });
    looks["sl"] = paragraph([](Paragraph& p, Number n) { p.lineHeight = n.value_or(0); });
    looks["slmult"] = paragraph([](Paragraph& p, Number n) { p.isLineMultiple = n == 1; });
    looks["slleading"] = paragraph([](Paragraph& p, Number n) { p.style.lineSpacing = pointsOf(n); });
    looks["slminimum"] = paragraph([](Paragraph& p, Number n) { p.style.minimumLineHeight = pointsOf(n); });
    looks["slmaximum"] = paragraph([](Paragraph& p, Number n) { p.style.maximumLineHeight = pointsOf(n); });
    looks["pardeftab"] = paragraph([](Paragraph& p, Number n) { p.style.defaultTabInterval = pointsOf(n); });
    looks["parhyphenfactor"]
        = paragraph([](Paragraph& p, Number n) { p.style.hyphenationFactor = n.value_or(0) / 100.0; });
}

const Looks& looks()
{
    static const Looks words = [] {
        Looks all;
        addFontWords(all);
        addLineWords(all);
        addParagraphWords(all);
        addSpacingWords(all);
        return all;
    }();
    return words;
}

} // namespace

bool Reader::lookWord(std::string_view name, Number number)
{
    const auto found = looks().find(name);
    if (found == looks().end())
        return false;
    if (found->second.letters) {
        found->second.letters(m_state.letters, number);
        m_styleNumber.reset();
    } else {
        found->second.paragraph(editParagraph(), number);
    }
    return true;
}

} // namespace caddis::rtf
