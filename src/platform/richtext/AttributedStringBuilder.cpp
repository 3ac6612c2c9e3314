#include "platform/richtext/AttributedStringBuilder.h"

#include <algorithm>
#include <bit>
#include <unordered_set>

namespace caddis {

namespace {

class Hasher {
public:
    Hasher& add(std::uint64_t value)
    {
        m_state = (std::rotl(m_state, 5) ^ value) * 0x9E3779B97F4A7C15;
        return *this;
    }
    Hasher& add(double value) { return add(std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value)); }
    Hasher& add(const String& text) { return add(std::uint64_t { std::hash<String> {}(text) }); }
    Hasher& add(const std::optional<TextColor>& color)
    {
        if (!color)
            return add(std::uint64_t { 0 });
        return add(pair(color->red, color->green)).add(pair(color->blue, color->alpha));
    }
    std::size_t value() const { return m_state ^ (m_state >> 32); }

    static std::uint64_t pair(std::int32_t high, std::int32_t low)
    {
        return std::uint64_t { static_cast<std::uint32_t>(high) } << 32 | static_cast<std::uint32_t>(low);
    }

private:
    std::uint64_t m_state = 1;
};

struct StyleHash {
    std::size_t operator()(const CharacterStyle& style) const
    {
        const unsigned marks = static_cast<unsigned>(style.underline) << 8
            | static_cast<unsigned>(style.strikethrough) << 16 | unsigned { style.font.bold } << 1
            | unsigned { style.font.italic };
        return Hasher()
            .add(style.font.name)
            .add(style.font.size)
            .add(Hasher::pair(static_cast<std::int32_t>(marks), style.superscript))
            .add(style.foreground)
            .add(style.background)
            .add(style.baselineOffset)
            .add(style.kern)
            .add(style.link)
            .add(std::uint64_t { style.attachment })
            .value();
    }

    std::size_t operator()(const ParagraphStyle& style) const
    {
        Hasher hasher;
        hasher
            .add(static_cast<std::uint64_t>(style.alignment) << 16
                | static_cast<std::uint64_t>(style.direction) << 8 | style.headerLevel)
            .add(style.firstLineIndent)
            .add(style.headIndent)
            .add(style.spacingAfter);
        for (const TabStop& stop : style.tabStops)
            hasher.add(stop.location);
        for (const std::uint32_t list : style.lists)
            hasher.add(std::uint64_t { list });
        for (const TableCell& cell : style.cells)
            hasher.add(std::uint64_t { cell.table } << 32 ^ std::uint64_t { cell.row } << 16 ^ cell.column);
        return hasher.value();
    }
};

// Styles and their numbers, each kept once.
template <typename Style> class Interned {
public:
    Interned()
        : m_numbers(0, Hash { &m_styles }, Equal { &m_styles })
    {
    }
    Interned(const Interned&) = delete; // The set looks into the vector.
    Interned& operator=(const Interned&) = delete;

    const Style& operator[](std::uint32_t number) const { return m_styles[number]; }

    std::uint32_t numberOf(const Style& style)
    {
        if (m_last < m_styles.size() && m_styles[m_last] == style)
            return m_last;
        if (const auto found = m_numbers.find(style); found != m_numbers.end())
            return m_last = *found;
        m_last = static_cast<std::uint32_t>(m_styles.size());
        m_styles.push_back(style);
        m_numbers.insert(m_last);
        return m_last;
    }

    // For a number that nobody else has.
    std::uint32_t replace(std::uint32_t number, Style&& style)
    {
        if (const auto found = m_numbers.find(style); found != m_numbers.end())
            return *found;
        m_numbers.erase(number);
        m_styles[number] = std::move(style);
        m_numbers.insert(number);
        return number;
    }

    std::vector<Style> take() { return std::move(m_styles); }

private:
    struct Hash {
        using is_transparent = void;
        const std::vector<Style>* styles;
        std::size_t operator()(const Style& style) const { return StyleHash()(style); }
        std::size_t operator()(std::uint32_t number) const { return StyleHash()((*styles)[number]); }
    };
    struct Equal {
        using is_transparent = void;
        const std::vector<Style>* styles;
        bool operator()(std::uint32_t left, std::uint32_t right) const { return left == right; }
        bool operator()(const Style& style, std::uint32_t number) const { return (*styles)[number] == style; }
        bool operator()(std::uint32_t number, const Style& style) const { return (*styles)[number] == style; }
    };

    std::vector<Style> m_styles;
    std::unordered_set<std::uint32_t, Hash, Equal> m_numbers;
    std::uint32_t m_last = 0;
};

void addRun(std::vector<AttributedString::Run>& runs, std::size_t location, std::uint32_t style)
{
    if (runs.empty() || runs.back().style != style)
        runs.push_back({ location, style });
}

// Runs without text go, and neighbours with one style are one run.
void normalize(std::vector<AttributedString::Run>& runs, std::size_t length)
{
    std::vector<AttributedString::Run> result;
    for (std::size_t run = 0; run < runs.size(); ++run) {
        const std::size_t end = run + 1 < runs.size() ? runs[run + 1].location : length;
        if (runs[run].location < end)
            addRun(result, runs[run].location, runs[run].style);
    }
    runs = std::move(result);
}

void truncateRuns(std::vector<AttributedString::Run>& runs, std::size_t length)
{
    while (!runs.empty() && runs.back().location >= length)
        runs.pop_back();
}

// Numbers the styles in the order in which the runs use them, and drops the others.
template <typename Style> void renumber(std::vector<AttributedString::Run>& runs, std::vector<Style>& styles)
{
    constexpr std::uint32_t Unused = 0xFFFFFFFF;
    std::vector<std::uint32_t> numbers(styles.size(), Unused);
    std::vector<Style> used;
    for (auto& run : runs) {
        std::uint32_t& number = numbers[run.style];
        if (number == Unused) {
            number = static_cast<std::uint32_t>(used.size());
            used.push_back(std::move(styles[run.style]));
        }
        run.style = number;
    }
    styles = std::move(used);
}

} // namespace

struct AttributedStringBuilder::Tables {
    Interned<CharacterStyle> styles;
    Interned<ParagraphStyle> paragraphStyles;
};

AttributedStringBuilder::AttributedStringBuilder()
    : m_tables(std::make_unique<Tables>())
{
}

AttributedStringBuilder::~AttributedStringBuilder() = default;
AttributedStringBuilder::AttributedStringBuilder(AttributedStringBuilder&&) noexcept = default;
AttributedStringBuilder& AttributedStringBuilder::operator=(AttributedStringBuilder&&) noexcept = default;

void AttributedStringBuilder::append(std::u16string_view units, const CharacterStyle& style)
{
    append(units, numberOf(style));
}

void AttributedStringBuilder::append(std::u16string_view units, StyleNumber style)
{
    if (units.empty())
        return;
    addRun(m_result.m_runs, m_text.length(), style.m_index);
    m_text.append(units);
}

void AttributedStringBuilder::appendAscii(std::string_view ascii, StyleNumber style)
{
    if (ascii.empty())
        return;
    addRun(m_result.m_runs, m_text.length(), style.m_index);
    m_text.appendUtf8(ascii);
}

AttributedStringBuilder::StyleNumber AttributedStringBuilder::numberOf(const CharacterStyle& style)
{
    return StyleNumber(m_tables->styles.numberOf(style));
}

AttributedStringBuilder::ParagraphNumber AttributedStringBuilder::numberOf(const ParagraphStyle& style)
{
    return ParagraphNumber(m_tables->paragraphStyles.numberOf(style));
}

void AttributedStringBuilder::appendAttachment(Attachment attachment, const CharacterStyle& style)
{
    CharacterStyle attached = style;
    attached.attachment = static_cast<std::uint32_t>(m_result.m_attachments.size());
    m_result.m_attachments.push_back(std::move(attachment));
    append({ &AttachmentCharacter, 1 }, attached);
}

void AttributedStringBuilder::append(const AttributedString& text)
{
    endParagraphs({});
    const auto attachments = static_cast<std::uint32_t>(m_result.m_attachments.size());
    const auto lists = static_cast<std::uint32_t>(m_result.m_lists.size());
    const auto tables = static_cast<std::uint32_t>(m_result.m_tables.size());
    const std::size_t begin = m_text.length();
    for (const auto& run : text.runs()) {
        CharacterStyle style = text.styles()[run.style];
        if (style.attachment != CharacterStyle::NoAttachment)
            style.attachment += attachments;
        addRun(m_result.m_runs, begin + run.location, numberOf(style).m_index);
    }
    for (const auto& run : text.paragraphRuns()) {
        ParagraphStyle style = text.paragraphStyles()[run.style];
        for (std::uint32_t& list : style.lists)
            list += lists;
        for (TableCell& cell : style.cells)
            cell.table += tables;
        addRun(m_result.m_paragraphRuns, begin + run.location, numberOf(style).m_index);
    }
    const auto join = [](auto& all, const auto& more) { all.insert(all.end(), more.begin(), more.end()); };
    join(m_result.m_attachments, text.attachments());
    join(m_result.m_lists, text.lists());
    join(m_result.m_tables, text.tables());
    m_text.append(text.string());
    m_paragraphsEnd = m_text.length();
}

void AttributedStringBuilder::endParagraphs(const ParagraphStyle& style) { endParagraphs(numberOf(style)); }

void AttributedStringBuilder::endParagraphs(ParagraphNumber style)
{
    if (m_text.length() == m_paragraphsEnd)
        return;
    addRun(m_result.m_paragraphRuns, m_paragraphsEnd, style.m_index);
    m_paragraphsEnd = m_text.length();
}

void AttributedStringBuilder::restyleParagraphs(Range range, FunctionRef<void(ParagraphStyle&, Range)> change)
{
    auto& runs = m_result.m_paragraphRuns;
    auto run = std::ranges::lower_bound(runs, range.location, {}, &AttributedString::Run::location);
    while (run != runs.end() && run->location < range.end()) {
        const auto next = run + 1;
        const std::size_t end = next == runs.end() ? m_paragraphsEnd : next->location;
        ParagraphStyle style = m_tables->paragraphStyles[run->style];
        change(style, { run->location, end - run->location });
        run->style = m_tables->paragraphStyles.replace(run->style, std::move(style));
        run = next;
    }
}

std::uint32_t AttributedStringBuilder::addList(TextList list)
{
    m_result.m_lists.push_back(std::move(list));
    return static_cast<std::uint32_t>(m_result.m_lists.size() - 1);
}

std::uint32_t AttributedStringBuilder::addTable(TextTable table)
{
    m_result.m_tables.push_back(table);
    return static_cast<std::uint32_t>(m_result.m_tables.size() - 1);
}

void AttributedStringBuilder::setColumns(std::uint32_t table, std::uint32_t columns)
{
    m_result.m_tables[table].columns = columns;
}

std::size_t AttributedStringBuilder::length() const { return m_text.length(); }

std::u16string_view AttributedStringBuilder::view() const { return m_text.view(); }

void AttributedStringBuilder::truncate(std::size_t length)
{
    m_text.truncate(length);
    m_paragraphsEnd = std::min(m_paragraphsEnd, length);
    truncateRuns(m_result.m_runs, length);
    truncateRuns(m_result.m_paragraphRuns, length);
}

// One pass over text and runs: a run that begins at or before an insertion's place takes it up.
void AttributedStringBuilder::insert(const std::vector<Insertion>& insertions)
{
    MutableString text(m_text.length() + insertions.size() * 4);
    std::size_t taken = 0;
    std::size_t added = 0;
    const auto shift
        = [](std::vector<AttributedString::Run>& runs, std::size_t& next, std::size_t until, std::size_t by) {
              for (; next < runs.size() && runs[next].location <= until; ++next)
                  runs[next].location += by;
          };
    std::size_t run = 0;
    std::size_t paragraph = 0;
    for (const Insertion& insertion : insertions) {
        const std::size_t place = std::min(insertion.location, m_text.length());
        shift(m_result.m_runs, run, place, added);
        shift(m_result.m_paragraphRuns, paragraph, place, added);
        text.append(m_text.view().substr(taken, place - taken)).append(insertion.text);
        taken = std::min(place + (insertion.replaces ? 1 : 0), m_text.length());
        added += insertion.text.length() - (taken - place);
    }
    text.append(m_text.view().substr(taken));
    shift(m_result.m_runs, run, m_text.length(), added);
    shift(m_result.m_paragraphRuns, paragraph, m_text.length(), added);
    m_text = std::move(text);
    normalize(m_result.m_runs, m_text.length());
    normalize(m_result.m_paragraphRuns, m_text.length());
}

AttributedString AttributedStringBuilder::finish(const std::vector<Insertion>& insertions) &&
{
    endParagraphs({});
    if (!insertions.empty() && !m_text.isEmpty())
        insert(insertions);
    m_result.m_styles = m_tables->styles.take();
    m_result.m_paragraphStyles = m_tables->paragraphStyles.take();
    renumber(m_result.m_runs, m_result.m_styles);
    renumber(m_result.m_paragraphRuns, m_result.m_paragraphStyles);
    m_result.m_string = std::move(m_text).take();
    return std::move(m_result);
}

} // namespace caddis
