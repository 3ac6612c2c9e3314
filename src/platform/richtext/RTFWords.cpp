// What each control word does. The order in word() is that of how often they come; words nobody knows are
// passed over, and with a star before them so is their group.

#include "platform/richtext/RTFReader.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <unordered_map>

namespace caddis::rtf {

namespace {

using WordSet = std::unordered_map<std::string_view, Destination>;

// Groups that begin with one of these are not text, whatever stands in them.
const WordSet& destinations()
{
    using enum Destination;
    static const WordSet words { { "fonttbl", Fonts }, { "colortbl", Colors },
        { "expandedcolortbl", ExpandedColors }, { "listtable", Lists }, { "listoverridetable", Overrides },
        { "info", Info }, { "fldinst", Instruction }, { "levelmarker", Marker }, { "NeXTGraphic", Graphic },
        { "stylesheet", Skip }, { "pict", Skip }, { "nonshppict", Skip }, { "footnote", Skip },
        { "header", Skip }, { "headerl", Skip }, { "headerr", Skip }, { "headerf", Skip }, { "footer", Skip },
        { "footerl", Skip }, { "footerr", Skip }, { "footerf", Skip }, { "revtbl", Skip },
        { "filetbl", Skip }, { "upr", Skip }, { "xe", Skip }, { "tc", Skip }, { "annotation", Skip },
        { "leveltext", LevelText }, { "levelnumbers", Skip }, { "listname", Skip }, { "object", Body },
        { "fldrslt", Body }, { "nesttableprops", Body }, { "nonesttables", Skip }, { "shppict", Skip },
        { "falt", Skip }, { "panose", Skip }, { "fontemb", Skip } };
    return words;
}

struct InfoKey {
    std::string_view word;
    std::u16string_view key;
};

constexpr std::array<InfoKey, 12> InfoTexts { { { "title", DocumentAttribute::Title },
    { "subject", DocumentAttribute::Subject }, { "author", DocumentAttribute::Author },
    { "keywords", DocumentAttribute::Keywords }, { "doccomm", DocumentAttribute::Comment },
    { "comment", DocumentAttribute::Comment }, { "operator", DocumentAttribute::Editor },
    { "company", DocumentAttribute::Company }, { "copyright", DocumentAttribute::Copyright },
    { "manager", DocumentAttribute::Manager }, { "category", DocumentAttribute::Category },
    { "generator", {} } } };

constexpr std::array<InfoKey, 2> InfoTimes { { { "creatim", DocumentAttribute::CreationTime },
    { "revtim", DocumentAttribute::ModificationTime } } };

template <std::size_t Count>
std::u16string_view keyOf(const std::array<InfoKey, Count>& keys, std::string_view word)
{
    const auto row = std::ranges::find(keys, word, &InfoKey::word);
    return row == keys.end() ? std::u16string_view() : row->key;
}

// Words that stand for text.
const std::unordered_map<std::string_view, std::u16string_view>& textWords()
{
    static const std::unordered_map<std::string_view, std::u16string_view> words { { "tab", u"\t" },
        { "line", u"\u2028" }, { "emdash", u"\u2014" }, { "endash", u"\u2013" }, { "lquote", u"\u2018" },
        { "rquote", u"\u2019" }, { "ldblquote", u"\u201C" }, { "rdblquote", u"\u201D" },
        { "bullet", u"\u2022" }, { "emspace", u"\u2003" }, { "enspace", u"\u2002" }, { "qmspace", u"\u2005" },
        { "zwj", u"\u200D" }, { "zwnj", u"\u200C" }, { "zwbo", u"\u200B" }, { "ltrmark", u"\u200E" },
        { "rtlmark", u"\u200F" }, { "page", u"\u000C" } };
    return words;
}

double points(std::int32_t twips) { return twips / 20.0; }

} // namespace

void Reader::word(std::string_view name, Number number)
{
    flushBytes();
    const bool isStarred = std::exchange(m_isStarred, false);
    const bool isGroupStart = std::exchange(m_isGroupStart, false);
    if (name == "u")
        return unicode(number.value_or(0));
    if (name == "bin")
        return m_tokens.skip(static_cast<std::size_t>(std::max(number.value_or(0), 0)));
    if (name == "uc") {
        m_state.skippedAfterUnicode = std::clamp(number.value_or(1), 0, 1000);
        return;
    }
    if (m_state.destination == Destination::Skip || (isGroupStart && destinationWord(name)))
        return;
    if (m_state.destination != Destination::Body) {
        if (!tableWord(name, number) && isStarred)
            begin(Destination::Skip);
        return;
    }
    const bool isKnown
        = lookWord(name, number) || textWord(name) || headWord(name, number) || rowWord(name, number);
    if (!isKnown && isStarred)
        begin(Destination::Skip);
}

bool Reader::destinationWord(std::string_view name)
{
    if (m_state.destination == Destination::Info || m_state.destination == Destination::Body) {
        const bool isTime = !keyOf(InfoTimes, name).empty();
        if (isTime || !keyOf(InfoTexts, name).empty()) {
            m_infoName = name;
            m_time.assign(6, 0);
            begin(isTime ? Destination::InfoTime : Destination::InfoText);
            return true;
        }
    }
    const auto found = destinations().find(name);
    if (found == destinations().end())
        return false;
    if (found->second == Destination::Body) {
        if (name == "fldrslt") {
            m_state.letters.link = m_state.fieldLink;
            m_styleNumber.reset();
        }
        return true;
    }
    if (found->second == Destination::Graphic) {
        m_isNameComplete = false;
        m_graphicSize = {};
    }
    begin(found->second);
    return true;
}

bool Reader::textWord(std::string_view name)
{
    if (name == "par" || name == "sect") {
        endParagraph();
        return true;
    }
    const auto found = textWords().find(name);
    if (found == textWords().end())
        return false;
    takeUnits(found->second);
    return true;
}

// The words of destinations that are no text.
bool Reader::tableWord(std::string_view name, Number number)
{
    const std::int32_t value = number.value_or(0);
    switch (m_state.destination) {
    case Destination::Fonts:
        if (name == "f")
            m_fonts.begin(value);
        else if (name == "fcharset") {
            m_fonts.current().encoding = encodingOfCharset(value);
            m_fonts.current().isSymbol = value == 2;
        } else if (name == "cpg")
            m_fonts.current().encoding = encodingOfCodePage(value);
        m_state.letters.font = name == "f" ? value : m_state.letters.font;
        return name.starts_with('f') || name == "cpg";
    case Destination::Colors:
        if (name == "red" || name == "green" || name == "blue")
            m_colors.setPart(name[0], value);
        return true;
    case Destination::ExpandedColors:
        if (name.starts_with("cs"))
            m_colors.expandedModel(name == "csgray");
        else if (name == "c")
            m_colors.expandedPart(value);
        return true;
    case Destination::Lists:
    case Destination::Overrides:
        return headWord(name, number);
    case Destination::InfoTime:
        return timeWord(name, value);
    case Destination::Graphic:
        return graphicWord(name, value);
    default:
        return name != "datafield";
    }
}

bool Reader::timeWord(std::string_view name, std::int32_t value)
{
    constexpr std::array<std::string_view, 6> Parts { "yr", "mo", "dy", "hr", "min", "sec" };
    const auto part = std::ranges::find(Parts, name);
    if (part != Parts.end())
        m_time[static_cast<std::size_t>(part - Parts.begin())] = value;
    return true;
}

bool Reader::graphicWord(std::string_view name, std::int32_t value)
{
    m_isNameComplete = true;
    if (name == "width")
        m_graphicSize.width = points(value);
    else if (name == "height")
        m_graphicSize.height = points(value);
    return true;
}

void Reader::finishInfo()
{
    if (const auto key = keyOf(InfoTexts, m_infoName); !key.empty()) {
        if (key == DocumentAttribute::Keywords)
            m_attributes.set(String(key), Value(keywordsOf(String(m_text))));
        else if (!m_text.empty())
            m_attributes.set(String(key), Value(String(m_text)));
        return;
    }
    using namespace std::chrono;
    const year_month_day day { year(m_time[0]), month(static_cast<unsigned>(m_time[1])),
        std::chrono::day(static_cast<unsigned>(m_time[2])) };
    if (!day.ok() || m_time[0] <= 0 || m_time[0] > 9999)
        return;
    const double seconds = static_cast<double>(sys_days(day).time_since_epoch().count()) * 86400.0
        + m_time[3] * 3600.0 + m_time[4] * 60.0 + m_time[5];
    m_attributes.set(String(keyOf(InfoTimes, m_infoName)), Value(Date::fromUnixSeconds(seconds)));
}

// The head of the document, and what its list tables say.
bool Reader::headWord(std::string_view name, Number number)
{
    const std::int32_t value = number.value_or(0);
    if (m_state.destination == Destination::Lists) {
        if (name == "list")
            m_listTable.beginList();
        else if (name == "listlevel")
            m_listTable.beginLevel();
        else if (name == "levelnfc")
            m_listTable.setFormat(value);
        else if (name == "levelstartat")
            m_listTable.setStart(value);
        else if (name == "listid")
            m_listTable.setIdentifier(value);
        return true;
    }
    if (m_state.destination == Destination::Overrides) {
        if (name == "listid")
            m_listTable.overrideIdentifier(value);
        else if (name == "ls")
            m_listTable.overrideNumber(value);
        return true;
    }
    return documentWord(name, value);
}

bool Reader::documentWord(std::string_view name, std::int32_t value)
{
    const auto set = [&](std::u16string_view key, Value attribute) {
        m_attributes.set(String(key), std::move(attribute));
        return true;
    };
    if (name == "deff") {
        m_defaultFont = value;
        m_styleNumber.reset();
        m_styleNumbers.clear();
    } else if (name == "ansicpg") {
        m_encoding = encodingOfCodePage(value);
    } else if (name == "mac") {
        m_encoding = CFStringEncoding::MacRoman;
    } else if (name == "pc" || name == "pca") {
        m_encoding = encodingOfCodePage(name == "pc" ? 437 : 850);
    } else if (name == "cocoartf") {
        m_version = value;
    } else if (name == "cocoasubrtf") {
        m_version = m_version.value_or(0) + value / std::pow(10.0, std::to_string(value).size());
    } else if (name == "paperw" || name == "paperh") {
        (name == "paperw" ? m_paper.width : m_paper.height) = points(value);
    } else if (name == "vieww" || name == "viewh") {
        (name == "vieww" ? m_view.width : m_view.height) = points(value);
    } else if (name == "margl") {
        return set(DocumentAttribute::LeftMargin, points(value));
    } else if (name == "margr") {
        return set(DocumentAttribute::RightMargin, points(value));
    } else if (name == "margt") {
        return set(DocumentAttribute::TopMargin, points(value));
    } else if (name == "margb") {
        return set(DocumentAttribute::BottomMargin, points(value));
    } else if (name == "deftab") {
        return set(DocumentAttribute::DefaultTabInterval, points(value));
    } else if (name == "viewscale") {
        return set(DocumentAttribute::ViewZoom, value);
    } else if (name == "viewkind") {
        return set(DocumentAttribute::ViewMode, value == 1 ? 1 : 0);
    } else if (name == "readonlydoc") {
        return set(DocumentAttribute::ReadOnly, value);
    } else if (name == "hyphfactor") {
        return set(DocumentAttribute::HyphenationFactor, value / 100.0);
    } else {
        return false;
    }
    return true;
}

} // namespace caddis::rtf
