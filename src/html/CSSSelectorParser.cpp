// From text to selectors. What depends on a pointer, a window or a visit is understood and fits no element;
// what is not known at all drops the rule, as the standard has it.

#include "html/CSSSelector.h"

#include <algorithm>

namespace caddis::css {

namespace {

using Kind = SimpleSelector::Kind;

constexpr int DeepestList = 8;
constexpr std::uint32_t IdWeight = 1U << 20;
constexpr std::uint32_t ClassWeight = 1U << 10;
constexpr std::uint32_t FieldLimit = 1023; // Of what ten bits hold.

class SelectorParser {
public:
    SelectorParser(std::u16string_view text, int depth)
        : m_tokens(text)
        , m_depth(depth)
    {
    }

    std::optional<std::vector<Selector>> parseList();

private:
    struct Counts {
        std::uint32_t ids = 0;
        std::uint32_t classes = 0;
        std::uint32_t types = 0;
    };

    std::optional<Selector> parseSelector();
    bool parseCompound(Compound& compound, Counts& counts);
    bool parseCondition(Compound& compound, Counts& counts);
    bool parseAttribute(Compound& compound);
    bool parseAttributeValue(SimpleSelector& condition, const Token& comparison);
    bool parsePseudoClass(Compound& compound, Counts& counts);
    bool parseFunction(Compound& compound, Counts& counts, const std::u16string& name);
    std::optional<Combinator> parseCombinator();

    Tokenizer m_tokens;
    int m_depth;
    Token m_token; // The one under consideration.
};

std::uint32_t weight(std::uint32_t ids, std::uint32_t classes, std::uint32_t types)
{
    return std::min(ids, FieldLimit) * IdWeight + std::min(classes, FieldLimit) * ClassWeight
        + std::min(types, FieldLimit);
}

bool readNumber(std::u16string_view digits, int& number)
{
    constexpr std::size_t LongestInteger = 9;
    const bool isNegative = digits.starts_with(u'-');
    if (isNegative || digits.starts_with(u'+'))
        digits.remove_prefix(1);
    if (digits.empty() || digits.size() > LongestInteger)
        return false;
    number = 0;
    for (const char16_t digit : digits) {
        if (digit < u'0' || digit > u'9')
            return false;
        number = number * 10 + (digit - u'0');
    }
    number = isNegative ? -number : number;
    return true;
}

// The "an+b" of :nth-child(); "of S" behind it is not understood.
bool parseNth(std::u16string_view text, SimpleSelector& condition)
{
    std::u16string packed = lowered(text);
    std::erase_if(packed, isSpace);
    if (packed == u"odd")
        packed = u"2n+1";
    else if (packed == u"even")
        packed = u"2n";
    const std::size_t n = packed.find(u'n');
    if (n == packed.npos)
        return readNumber(packed, condition.offset);
    const std::u16string step = packed.substr(0, n);
    const std::u16string offset = packed.substr(n + 1);
    condition.step = step == u"-" ? -1 : 1;
    const bool hasStep = !step.empty() && step != u"-" && step != u"+";
    return (!hasStep || readNumber(step, condition.step))
        && (offset.empty() || readNumber(offset, condition.offset));
}

std::optional<std::vector<Selector>> SelectorParser::parseList()
{
    std::vector<Selector> list;
    do {
        m_token = m_tokens.nextSolid();
        auto selector = parseSelector();
        if (!selector)
            return std::nullopt;
        list.push_back(std::move(*selector));
    } while (m_token.is(TokenType::Comma));
    return m_token.is(TokenType::End) ? std::optional(std::move(list)) : std::nullopt;
}

// Leaves m_token at the comma or the end behind it.
std::optional<Selector> SelectorParser::parseSelector()
{
    Selector selector;
    Counts counts;
    for (std::optional<Combinator> combinator = Combinator::Descendant; combinator;
         combinator = parseCombinator()) {
        Compound compound;
        compound.before = *combinator;
        if (!parseCompound(compound, counts))
            return std::nullopt;
        selector.compounds.push_back(std::move(compound));
    }
    std::ranges::reverse(selector.compounds);
    selector.specificity = weight(counts.ids, counts.classes, counts.types);
    return selector;
}

// Nil at the selector's end.
std::optional<Combinator> SelectorParser::parseCombinator()
{
    const bool space = m_token.is(TokenType::WhiteSpace);
    if (space)
        m_token = m_tokens.next();
    constexpr std::u16string_view Symbols = u">+~";
    constexpr Combinator combinators[]
        = { Combinator::Child, Combinator::NextSibling, Combinator::LaterSibling };
    if (m_token.is(TokenType::Delimiter)) {
        const std::size_t symbol = Symbols.find(m_token.text[0]);
        if (symbol != Symbols.npos) {
            m_token = m_tokens.nextSolid();
            return combinators[symbol];
        }
    }
    if (!space || m_token.is(TokenType::End) || m_token.is(TokenType::Comma))
        return std::nullopt;
    return Combinator::Descendant;
}

bool SelectorParser::parseCompound(Compound& compound, Counts& counts)
{
    const std::size_t begin = m_token.begin;
    if (m_token.is(TokenType::Ident)) {
        compound.conditions.push_back({ .kind = Kind::Type, .name = lowered(unescaped(m_token.text)) });
        ++counts.types;
        m_token = m_tokens.next();
    } else if (m_token.isDelimiter(u'*')) {
        m_token = m_tokens.next();
    }
    while (m_token.is(TokenType::Hash) || m_token.isDelimiter(u'.') || m_token.is(TokenType::OpenSquare)
        || m_token.is(TokenType::Colon)) {
        if (!parseCondition(compound, counts))
            return false;
        m_token = m_tokens.next();
    }
    return m_token.begin > begin;
}

// Stops at its last token.
bool SelectorParser::parseCondition(Compound& compound, Counts& counts)
{
    if (m_token.is(TokenType::Hash)) {
        compound.conditions.push_back({ .kind = Kind::Id, .name = unescaped(m_token.text) });
        ++counts.ids;
        return true;
    }
    if (m_token.is(TokenType::Colon))
        return parsePseudoClass(compound, counts);
    ++counts.classes;
    if (m_token.is(TokenType::OpenSquare))
        return parseAttribute(compound);
    m_token = m_tokens.next();
    compound.conditions.push_back({ .kind = Kind::Class, .name = unescaped(m_token.text) });
    return m_token.is(TokenType::Ident);
}

bool SelectorParser::parseAttribute(Compound& compound)
{
    SimpleSelector condition {
        .kind = Kind::Attribute,
    };
    m_token = m_tokens.nextSolid();
    if (!m_token.is(TokenType::Ident))
        return false;
    condition.name = lowered(unescaped(m_token.text));
    m_token = m_tokens.nextSolid();
    if (!m_token.is(TokenType::CloseSquare)) {
        if (!parseAttributeValue(condition, m_token))
            return false;
    }
    compound.conditions.push_back(std::move(condition));
    return m_token.is(TokenType::CloseSquare);
}

bool SelectorParser::parseAttributeValue(SimpleSelector& condition, const Token& comparison)
{
    constexpr std::u16string_view Symbols = u"=~|^$*";
    const std::size_t symbol
        = comparison.is(TokenType::Delimiter) ? Symbols.find(comparison.text[0]) : Symbols.npos;
    if (symbol == Symbols.npos)
        return false;
    condition.kind = static_cast<Kind>(static_cast<std::size_t>(Kind::AttributeEquals) + symbol);
    if (symbol != 0 && !m_tokens.next().isDelimiter(u'='))
        return false;
    m_token = m_tokens.nextSolid();
    if (!m_token.is(TokenType::Ident) && !m_token.is(TokenType::String))
        return false;
    condition.value = unescaped(m_token.text);
    m_token = m_tokens.nextSolid();
    if (m_token.isIdent(u"i") || m_token.isIdent(u"s")) {
        condition.ignoreCase = m_token.isIdent(u"i");
        if (condition.ignoreCase)
            condition.value = lowered(condition.value);
        m_token = m_tokens.nextSolid();
    }
    return true;
}

bool SelectorParser::parsePseudoClass(Compound& compound, Counts& counts)
{
    m_token = m_tokens.next();
    const std::u16string name = lowered(m_token.text);
    if (m_token.is(TokenType::Function))
        return parseFunction(compound, counts, name);
    if (!m_token.is(TokenType::Ident))
        return false; // A pseudo-element: nothing of the page's own.
    ++counts.classes;
    const auto add = [&](Kind kind, int offset = 0) {
        compound.conditions.push_back({
            .kind = kind,
            .offset = offset,
        });
        return true;
    };
    if (name == u"root")
        return add(Kind::Root);
    if (name == u"empty")
        return add(Kind::Empty);
    if (name == u"link" || name == u"any-link")
        return add(Kind::Link);
    if (name == u"checked")
        return add(Kind::Checked);
    if (name == u"first-child" || name == u"only-child")
        add(Kind::NthChild, 1);
    if (name == u"last-child" || name == u"only-child")
        add(Kind::NthLastChild, 1);
    if (name == u"first-of-type" || name == u"only-of-type")
        add(Kind::NthOfType, 1);
    if (name == u"last-of-type" || name == u"only-of-type")
        add(Kind::NthLastOfType, 1);
    constexpr std::u16string_view never[]
        = { u"hover", u"active", u"focus", u"focus-within", u"focus-visible", u"visited", u"target",
              u"disabled", u"invalid", u"autofill", u"fullscreen", u"popover-open", u"open" };
    if (std::ranges::find(never, name) != std::end(never))
        return add(Kind::NthChild, 0);
    return name.ends_with(u"-child") || name.ends_with(u"-of-type");
}

bool SelectorParser::parseFunction(Compound& compound, Counts& counts, const std::u16string& name)
{
    const std::u16string_view inside = m_tokens.skipBlock(TokenType::Function);
    SimpleSelector condition {};
    constexpr std::pair<std::u16string_view, Kind> counting[]
        = { { u"nth-child", Kind::NthChild }, { u"nth-last-child", Kind::NthLastChild },
              { u"nth-of-type", Kind::NthOfType }, { u"nth-last-of-type", Kind::NthLastOfType } };
    const auto* const nth = std::ranges::find(counting, name, &std::pair<std::u16string_view, Kind>::first);
    if (nth != std::end(counting)) {
        condition.kind = nth->second;
        ++counts.classes;
        compound.conditions.push_back(condition);
        return parseNth(inside, compound.conditions.back());
    }
    const bool selects = name == u"is" || name == u"where" || name == u"matches" || name == u"-webkit-any";
    if ((!selects && name != u"not") || m_depth == DeepestList)
        return false;
    auto list = SelectorParser(inside, m_depth + 1).parseList();
    if (!list)
        return false;
    const auto heaviest = std::ranges::max_element(*list, {}, &Selector::specificity);
    if (name != u"where") {
        counts.ids += heaviest->specificity / IdWeight;
        counts.classes += heaviest->specificity / ClassWeight % (FieldLimit + 1);
        counts.types += heaviest->specificity % ClassWeight;
    }
    condition.kind = selects ? Kind::Is : Kind::Not;
    condition.list = std::make_shared<const std::vector<Selector>>(std::move(*list));
    compound.conditions.push_back(std::move(condition));
    return true;
}

} // namespace

std::optional<std::vector<Selector>> parseSelectors(std::u16string_view text)
{
    return SelectorParser(trimmed(text), 0).parseList();
}

} // namespace caddis::css
