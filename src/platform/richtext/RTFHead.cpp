// The head of a written document: fonts, colours, lists, and what the document says of itself.

#include "platform/richtext/RTFEscapes.h"
#include "platform/richtext/RTFWriter.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

namespace caddis::rtf {

namespace {

constexpr std::size_t DeepestList = 9; // As many levels as RTF knows.

std::vector<std::uint32_t> writable(const std::vector<std::uint32_t>& lists)
{
    return { lists.begin(),
        lists.begin() + static_cast<std::ptrdiff_t>(std::min(lists.size(), DeepestList)) };
}

constexpr TextColor White { TextColor::Full, TextColor::Full, TextColor::Full };

std::string_view familyWord(const String& name)
{
    const std::u16string_view font = name;
    for (const auto* swiss : { u"Helvetica", u"Arial", u"Verdana", u"Geneva", u"Lucida", u"Tahoma" }) {
        if (font.starts_with(swiss))
            return "fswiss";
    }
    for (const auto* roman : { u"Times", u"Georgia", u"Palatino", u"Garamond", u"Baskerville" }) {
        if (font.starts_with(roman))
            return "froman";
    }
    return font.starts_with(u"Courier") ? "fmodern" : "fnil";
}

// The number of \levelnfc and the name of \*\levelmarker (RTF 1.9.1, "List Levels").
int levelNumberFormat(std::u16string_view marker)
{
    if (marker.find(u"decimal") != marker.npos)
        return 0;
    if (marker.find(u"-roman") != marker.npos)
        return marker.find(u"upper") != marker.npos ? 1 : 2;
    if (marker.find(u"-alpha") != marker.npos || marker.find(u"-latin") != marker.npos)
        return marker.find(u"upper") != marker.npos ? 3 : 4;
    return 23;
}

// The markers are text of the paragraphs, so the level has none to show: a reader that makes its own would
// show them twice, or put it where its own tab stops are.
void appendListLevel(std::string& out, const TextList& list, std::size_t level)
{
    const int format = levelNumberFormat(list.markerFormat);
    out += "{\\listlevel";
    appendWord(out, "levelnfc", format);
    appendWord(out, "levelnfcn", format);
    out += "\\leveljc0\\leveljcn0\\levelfollow2";
    appendWord(out, "levelstartat", list.startingItemNumber);
    out += "\\levelspace360\\levelindent0{\\*\\levelmarker ";
    appendEscaped(out, list.markerFormat);
    out += "}{\\leveltext";
    appendWord(out, "leveltemplateid", static_cast<long>(level + 1));
    out += "\\'00;}{\\levelnumbers;}}";
}

struct InfoKey {
    std::u16string_view key;
    std::string_view words;
};

constexpr std::array<InfoKey, 10> InfoTexts { { { DocumentAttribute::Title, "\\title" },
    { DocumentAttribute::Subject, "\\subject" }, { DocumentAttribute::Author, "\\author" },
    { DocumentAttribute::Keywords, "\\keywords" }, { DocumentAttribute::Comment, "\\doccomm" },
    { DocumentAttribute::Editor, "\\operator" }, { DocumentAttribute::Company, "\\*\\company" },
    { DocumentAttribute::Copyright, "\\*\\copyright" }, { DocumentAttribute::Manager, "\\manager" },
    { DocumentAttribute::Category, "\\category" } } };

String textOf(const Value& value)
{
    if (const auto* text = value.as<String>())
        return *text;
    MutableString joined;
    if (const auto* items = value.as<Array>()) {
        for (const Value& item : *items) {
            if (const auto* text = item.as<String>())
                joined.append(joined.isEmpty() ? u"" : u", ").append(*text);
        }
    }
    return std::move(joined).take();
}

void appendTime(std::string& out, std::string_view word, const Date& date)
{
    using namespace std::chrono;
    constexpr double LatestYear = 253402300800; // The year 10000 in seconds since 1970.
    const double seconds = std::floor(date.unixSeconds());
    if (!(seconds > -LatestYear && seconds < LatestYear))
        return;
    const sys_seconds instant { std::chrono::seconds(static_cast<std::int64_t>(seconds)) };
    const sys_days midnight = floor<days>(instant);
    const year_month_day day(midnight);
    const hh_mm_ss time(instant - midnight);
    out += "\n{\\";
    out += word;
    appendWord(out, "yr", int { day.year() });
    appendWord(out, "mo", static_cast<long>(unsigned { day.month() }));
    appendWord(out, "dy", static_cast<long>(unsigned { day.day() }));
    appendWord(out, "hr", time.hours().count());
    appendWord(out, "min", time.minutes().count());
    appendWord(out, "sec", time.seconds().count());
    out += '}';
}

std::optional<double> numberFor(const Dictionary& attributes, std::u16string_view key)
{
    const Value* value = attributes.find(key);
    const double* real = value ? value->as<double>() : nullptr;
    const std::int64_t* whole = value ? value->as<std::int64_t>() : nullptr;
    const double number = real ? *real : whole ? static_cast<double>(*whole) : NAN;
    return std::abs(number) < 1e6 ? std::optional(number) : std::nullopt;
}

void appendSize(std::string& out, const Dictionary& attributes, std::u16string_view key,
    std::string_view width, std::string_view height)
{
    const auto text = attributes.stringForKey(key);
    Size size;
    if (!text || std::sscanf(text->utf8().c_str(), "{%lf, %lf}", &size.width, &size.height) != 2)
        return;
    if (size.width > 0 && size.width < 1e6 && size.height > 0 && size.height < 1e6) {
        appendWord(out, width, std::lround(size.width * 20));
        appendWord(out, height, std::lround(size.height * 20));
    }
}

struct NumberKey {
    std::u16string_view key;
    std::string_view word;
    double scale;
};

void appendNumbers(std::string& out, const Dictionary& attributes, std::span<const NumberKey> keys)
{
    for (const NumberKey& row : keys) {
        if (const auto number = numberFor(attributes, row.key))
            appendWord(out, row.word, std::lround(*number * row.scale));
    }
}

} // namespace

WriterTables::WriterTables(const AttributedString& text)
    : m_text(text)
{
    m_colors.push_back(White);
    m_colorNumbers.emplace(keyOf(White), 1);
    for (const CharacterStyle& style : text.styles()) {
        addFont(style.font.name);
        addColor(style.foreground);
        addColor(style.background);
    }
    for (const ParagraphStyle& style : text.paragraphStyles()) {
        for (const TableCell& cell : style.cells) {
            addColor(cell.background);
            addColor(cell.borderColor);
        }
        addLists(style.lists);
    }
}

void WriterTables::addFont(const String& name)
{
    if (m_fontNumbers.emplace(name, m_fonts.size()).second)
        m_fonts.push_back(name);
}

void WriterTables::addColor(const std::optional<TextColor>& color)
{
    if (color && m_colorNumbers.emplace(keyOf(*color), m_colors.size() + 1).second)
        m_colors.push_back(*color);
}

// A chain that goes on where another one ends shares its number: they are levels of one list.
void WriterTables::addLists(const std::vector<std::uint32_t>& all)
{
    const auto lists = writable(all);
    for (std::vector<std::uint32_t> head = lists; !head.empty(); head.pop_back()) {
        const auto known = m_chainNumbers.find(head);
        if (known == m_chainNumbers.end())
            continue;
        auto& chain = m_chains[known->second - 1];
        if (head.size() == lists.size())
            return;
        if (chain.size() > head.size())
            break; // Another list goes on there already.
        chain = lists;
        m_chainNumbers.emplace(lists, known->second);
        for (auto inner = lists; inner.size() > head.size(); inner.pop_back())
            m_chainNumbers.emplace(inner, known->second);
        return;
    }
    if (lists.empty())
        return;
    m_chains.push_back(lists);
    for (auto head = lists; !head.empty(); head.pop_back())
        m_chainNumbers.emplace(head, m_chains.size());
}

std::size_t WriterTables::color(const std::optional<TextColor>& color) const
{
    return color ? m_colorNumbers.at(keyOf(*color)) : 0;
}

std::size_t WriterTables::list(const std::vector<std::uint32_t>& lists) const
{
    return lists.empty() ? 0 : m_chainNumbers.at(writable(lists));
}

void WriterTables::append(std::string& out) const
{
    out += "{\\fonttbl";
    for (std::size_t number = 0; number < m_fonts.size(); ++number) {
        appendWord(out, "f", static_cast<long>(number));
        out += '\\';
        out += familyWord(m_fonts[number]);
        out += "\\fcharset0 ";
        std::u16string name(m_fonts[number].view());
        std::erase(name, u';');
        appendEscaped(out, name);
        out += ';';
    }
    out += "}\n";
    appendColors(out);
    appendLists(out);
}

void WriterTables::appendColors(std::string& out) const
{
    out += "{\\colortbl;";
    for (const TextColor& color : m_colors) {
        appendWord(out, "red", TextColor::byte(color.red));
        appendWord(out, "green", TextColor::byte(color.green));
        appendWord(out, "blue", TextColor::byte(color.blue));
        out += ';';
    }
    out += "}\n{\\*\\expandedcolortbl;;";
    for (std::size_t number = 1; number < m_colors.size(); ++number) {
        const TextColor& color = m_colors[number];
        out += "\\cssrgb";
        for (const std::int32_t part : { color.red, color.green, color.blue })
            appendWord(out, "c", part);
        if (color.alpha != TextColor::Full)
            appendWord(out, "c", color.alpha);
        out += ';';
    }
    out += "}\n";
}

void WriterTables::appendLists(std::string& out) const
{
    if (m_chains.empty())
        return;
    out += "{\\*\\listtable";
    for (std::size_t number = 1; number <= m_chains.size(); ++number) {
        out += "{\\list";
        appendWord(out, "listtemplateid", static_cast<long>(number));
        out += "\\listhybrid";
        const auto& chain = m_chains[number - 1];
        for (std::size_t level = 0; level < chain.size(); ++level)
            appendListLevel(out, m_text.lists()[chain[level]], level);
        out += "{\\listname ;}";
        appendWord(out, "listid", static_cast<long>(number));
        out += '}';
    }
    out += "}\n{\\*\\listoverridetable";
    for (std::size_t number = 1; number <= m_chains.size(); ++number) {
        out += "{\\listoverride";
        appendWord(out, "listid", static_cast<long>(number));
        out += "\\listoverridecount0";
        appendWord(out, "ls", static_cast<long>(number));
        out += '}';
    }
    out += "}\n";
}

void appendDocumentAttributes(std::string& out, const Dictionary& attributes)
{
    std::string info;
    for (const InfoKey& row : InfoTexts) {
        const Value* value = attributes.find(row.key);
        if (const String text = value ? textOf(*value) : String(); !text.isEmpty()) {
            info += "\n{";
            info += row.words;
            info += ' ';
            appendEscaped(info, text);
            info += '}';
        }
    }
    const std::pair<std::u16string_view, std::string_view> times[] {
        { DocumentAttribute::CreationTime, "creatim" }, { DocumentAttribute::ModificationTime, "revtim" }
    };
    for (const auto& [key, word] : times) {
        const Value* value = attributes.find(key);
        if (const Date* date = value ? value->as<Date>() : nullptr)
            appendTime(info, word, *date);
    }
    if (!info.empty())
        out += "{\\info" + info + '}';
    static constexpr NumberKey Margins[] { { DocumentAttribute::LeftMargin, "margl", 20 },
        { DocumentAttribute::RightMargin, "margr", 20 }, { DocumentAttribute::TopMargin, "margt", 20 },
        { DocumentAttribute::BottomMargin, "margb", 20 } };
    static constexpr NumberKey Others[] { { DocumentAttribute::ViewMode, "viewkind", 1 },
        { DocumentAttribute::ViewZoom, "viewscale", 1 }, { DocumentAttribute::ReadOnly, "readonlydoc", 1 },
        { DocumentAttribute::HyphenationFactor, "hyphfactor", 100 },
        { DocumentAttribute::DefaultTabInterval, "deftab", 20 } };
    appendSize(out, attributes, DocumentAttribute::PaperSize, "paperw", "paperh");
    appendNumbers(out, attributes, Margins);
    appendSize(out, attributes, DocumentAttribute::ViewSize, "vieww", "viewh");
    appendNumbers(out, attributes, Others);
    out += '\n';
}

} // namespace caddis::rtf
