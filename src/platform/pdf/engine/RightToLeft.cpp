#include "platform/pdf/engine/RightToLeft.h"

#include <algorithm>
#include <utility>

namespace caddis::pdf {

namespace {

enum class Kind : std::uint8_t { Left, Right, Digit, Mark, Neutral };

bool isMark(char16_t unit)
{
    return (unit >= 0x0300 && unit <= 0x036F)
        || (unit >= 0x0591 && unit <= 0x05C7 && unit != 0x05BE && unit != 0x05C0 && unit != 0x05C3
            && unit != 0x05C6)
        || (unit >= 0x0610 && unit <= 0x061A) || (unit >= 0x064B && unit <= 0x065F) || unit == 0x0670
        || (unit >= 0x06D6 && unit <= 0x06ED && unit != 0x06DD && unit != 0x06DE && unit != 0x06E5
            && unit != 0x06E6 && unit != 0x06E9)
        || (unit >= 0x08D3 && unit <= 0x08FF);
}

Kind kindOf(std::u16string_view text)
{
    const char16_t unit = text.empty() ? u' ' : text[0];
    if ((unit >= u'0' && unit <= u'9') || (unit >= 0x0660 && unit <= 0x0669)
        || (unit >= 0x06F0 && unit <= 0x06F9))
        return Kind::Digit;
    if (isMark(unit))
        return Kind::Mark;
    if (isRightToLeft(unit))
        return Kind::Right;
    const bool isLetter = (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') || unit >= 0x00C0;
    const bool isSymbol = (unit >= 0x2000 && unit <= 0x2BFF) || (unit >= 0x3000 && unit <= 0x3004);
    return isLetter && !isSymbol ? Kind::Left : Kind::Neutral;
}

// A letter with its marks, or anything else alone.
struct Cluster {
    std::size_t glyph; ///< the letter; its marks follow in `marks`
    Kind kind;
    std::vector<std::size_t> marks {};
    int level = 0;
};

class Line {
public:
    Line(std::vector<PlacedGlyph>& glyphs, std::u16string_view units)
        : m_glyphs(glyphs)
        , m_units(units)
    {
    }

    void order()
    {
        std::stable_sort(m_glyphs.begin(), m_glyphs.end(),
            [](const PlacedGlyph& left, const PlacedGlyph& right) { return left.begin < right.begin; });
        addBlanks();
        makeClusters();
        setLevels();
        turn(2);
        turn(1);
        write();
    }

private:
    void addBlanks()
    {
        std::vector<PlacedGlyph> spaced;
        double end = m_glyphs.front().begin;
        for (const PlacedGlyph& glyph : m_glyphs) {
            if (glyph.isApartFrom(end))
                spaced.push_back({ .begin = end, .end = glyph.begin, .em = glyph.em, .isBlank = true });
            end = std::max(end, glyph.end);
            spaced.push_back(glyph);
        }
        m_glyphs = std::move(spaced);
    }

    // A mark stands at the letter whose width its middle falls into: the one before, else the one behind.
    void makeClusters()
    {
        std::vector<std::size_t> waiting;
        for (std::size_t index = 0; index < m_glyphs.size(); ++index) {
            const PlacedGlyph& glyph = m_glyphs[index];
            const Kind kind = kindOf(glyph.text(m_units));
            const double middle = (glyph.begin + glyph.end) / 2;
            if (kind != Kind::Mark) {
                m_clusters.push_back({ index, kind, std::exchange(waiting, {}) });
            } else if (!m_clusters.empty() && middle <= m_glyphs[m_clusters.back().glyph].end) {
                m_clusters.back().marks.push_back(index);
            } else {
                waiting.push_back(index);
            }
        }
        if (!waiting.empty())
            m_clusters.push_back({ waiting.front(), Kind::Right, { waiting.begin() + 1, waiting.end() } });
    }

    std::ptrdiff_t count(Kind kind) const
    {
        return std::count_if(m_clusters.begin(), m_clusters.end(),
            [&](const Cluster& cluster) { return cluster.kind == kind; });
    }

    void setLevels()
    {
        const int base = count(Kind::Right) >= count(Kind::Left) ? 1 : 0;
        int before = base; // The level of the last letter or digit.
        for (std::size_t index = 0; index < m_clusters.size();) {
            std::size_t next = index;
            while (next < m_clusters.size() && m_clusters[next].kind == Kind::Neutral)
                ++next;
            const int behind = next < m_clusters.size() ? levelOf(next, base) : base;
            for (; index < next; ++index)
                m_clusters[index].level = before == behind ? before : base;
            if (index < m_clusters.size())
                m_clusters[index++].level = behind;
            before = behind;
        }
    }

    int levelOf(std::size_t index, int base) const
    {
        switch (m_clusters[index].kind) {
        case Kind::Right:
            return 1;
        case Kind::Digit:
            return base == 1 || isAmongRight(index) ? 2 : 0;
        default:
            return base == 1 ? 2 : 0;
        }
    }

    // In a left-to-right line: a number directly at a right-to-left word belongs to its run.
    bool isAmongRight(std::size_t index) const { return index > 0 && m_clusters[index - 1].level > 0; }

    void turn(int level)
    {
        for (auto at = m_clusters.begin(); at != m_clusters.end();) {
            const auto isInside = [&](const Cluster& cluster) { return cluster.level >= level; };
            const auto first = std::find_if(at, m_clusters.end(), isInside);
            at = std::find_if_not(first, m_clusters.end(), isInside);
            std::reverse(first, at);
        }
    }

    void write()
    {
        std::vector<PlacedGlyph> ordered;
        const auto put = [&](std::size_t index) {
            ordered.push_back(m_glyphs[index]);
            ordered.back().begin = ordered.back().end = 0;
        };
        for (const Cluster& cluster : m_clusters) {
            put(cluster.glyph);
            for (const std::size_t mark : cluster.marks)
                put(mark);
        }
        m_glyphs = std::move(ordered);
    }

    std::vector<PlacedGlyph>& m_glyphs;
    std::u16string_view m_units;
    std::vector<Cluster> m_clusters;
};

} // namespace

// The blocks of these scripts; supplementary ones by their high surrogates.
bool isRightToLeft(char16_t unit)
{
    return unit >= 0x0590
        && (unit <= 0x08FF || unit == 0x200F || (unit >= 0xFB1D && unit <= 0xFDFF)
            || (unit >= 0xFE70 && unit <= 0xFEFE) || unit == 0xD802 || unit == 0xD803 || unit == 0xD83A
            || unit == 0xD83B);
}

void putInLogicalOrder(std::vector<PlacedGlyph>& glyphs, std::u16string_view units)
{
    Line(glyphs, units).order();
}

} // namespace caddis::pdf
