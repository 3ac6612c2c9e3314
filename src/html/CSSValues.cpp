#include "html/CSSValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

namespace caddis::css {

namespace {

constexpr std::size_t KeywordCount = static_cast<std::size_t>(Keyword::Count);

// In the order of Keyword.
constexpr std::array<std::u16string_view, KeywordCount> Words { u"none", u"auto", u"normal", u"bold",
    u"bolder", u"lighter", u"italic", u"oblique", u"inline", u"block", u"inline-block", u"list-item",
    u"table", u"inline-table", u"table-row", u"table-row-group", u"table-header-group", u"table-footer-group",
    u"table-cell", u"table-column", u"table-column-group", u"table-caption", u"flex", u"inline-flex", u"grid",
    u"inline-grid", u"flow-root", u"contents", u"run-in", u"ruby", u"ruby-text", u"left", u"right", u"center",
    u"justify", u"start", u"end", u"-webkit-center", u"-webkit-left", u"-webkit-right", u"match-parent",
    u"baseline", u"super", u"sub", u"top", u"middle", u"bottom", u"text-top", u"text-bottom", u"underline",
    u"overline", u"line-through", u"nowrap", u"pre", u"pre-wrap", u"pre-line", u"break-spaces", u"capitalize",
    u"uppercase", u"lowercase", u"ltr", u"rtl", u"xx-small", u"x-small", u"small", u"medium", u"large",
    u"x-large", u"xx-large", u"xxx-large", u"smaller", u"larger", u"thin", u"thick", u"hidden", u"dotted",
    u"dashed", u"solid", u"double", u"groove", u"ridge", u"inset", u"outset", u"manual", u"disc", u"circle",
    u"square", u"decimal", u"decimal-leading-zero", u"lower-alpha", u"upper-alpha", u"lower-latin",
    u"upper-latin", u"lower-roman", u"upper-roman", u"lower-greek", u"inherit", u"initial", u"unset",
    u"revert", u"revert-layer", u"transparent", u"currentcolor" };

static_assert(Words[static_cast<std::size_t>(Keyword::CurrentColor)] == u"currentcolor");
static_assert(Words[static_cast<std::size_t>(Keyword::Thin)] == u"thin");

template <typename Result, typename Table>
std::optional<Result> lookUp(const Table& table, std::u16string_view word)
{
    constexpr std::size_t LongestWord = 32;
    std::array<char16_t, LongestWord> units {};
    if (word.size() > units.size())
        return std::nullopt;
    std::ranges::transform(word, units.begin(), [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
    });
    const auto found = table.find(std::u16string_view(units.data(), word.size()));
    return found == table.end() ? std::nullopt : std::optional<Result>(found->second);
}

using KeywordTable = std::unordered_map<std::u16string_view, Keyword>;

KeywordTable keywordTable()
{
    KeywordTable table;
    for (std::size_t index = 0; index < KeywordCount; ++index)
        table.emplace(Words[index], static_cast<Keyword>(index));
    return table;
}

struct Unit {
    std::u16string_view name;
    PropertyValue::Kind kind;
    double factor;
};

// A pt is 4/3 px, a px a point.
constexpr std::array Units { Unit { u"px", PropertyValue::Kind::Points, 1 },
    Unit { u"em", PropertyValue::Kind::Em, 1 }, Unit { u"rem", PropertyValue::Kind::RootEm, 1 },
    Unit { u"pt", PropertyValue::Kind::Points, 4.0 / 3 }, Unit { u"ex", PropertyValue::Kind::Em, 0.5 },
    Unit { u"ch", PropertyValue::Kind::Em, 0.5 }, Unit { u"pc", PropertyValue::Kind::Points, 16 },
    Unit { u"in", PropertyValue::Kind::Points, 96 }, Unit { u"cm", PropertyValue::Kind::Points, 96 / 2.54 },
    Unit { u"mm", PropertyValue::Kind::Points, 9.6 / 2.54 },
    Unit { u"q", PropertyValue::Kind::Points, 2.4 / 2.54 },
    Unit { u"vw", PropertyValue::Kind::Points, 10.24 }, Unit { u"vh", PropertyValue::Kind::Points, 7.68 } };

} // namespace

std::optional<Keyword> keywordNamed(std::u16string_view word)
{
    static const KeywordTable table = keywordTable();
    return lookUp<Keyword>(table, word);
}

std::u16string_view nameOf(Keyword keyword) { return Words[static_cast<std::size_t>(keyword)]; }

std::optional<PropertyValue> numberOf(const Token& token)
{
    using Kind = PropertyValue::Kind;
    constexpr double Most = 1e6;
    const double number = std::clamp(token.number, -Most, Most);
    if (token.is(TokenType::Number))
        return PropertyValue { .kind = Kind::Number, .number = number };
    if (token.is(TokenType::Percentage))
        return PropertyValue { .kind = Kind::Percent, .number = number };
    if (!token.is(TokenType::Dimension))
        return std::nullopt;
    const auto* const unit = std::ranges::find_if(
        Units, [&](const Unit& known) { return equalsIgnoringCase(token.text, known.name); });
    if (unit == Units.end())
        return std::nullopt;
    return PropertyValue { .kind = unit->kind, .number = number * unit->factor };
}

} // namespace caddis::css
