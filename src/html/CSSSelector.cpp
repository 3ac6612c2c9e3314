#include "html/CSSSelector.h"

#include <algorithm>

namespace caddis::css {

namespace {

using Kind = SimpleSelector::Kind;

// What a failed match says of the elements further up: whether trying another ancestor, or another sibling,
// can help. It keeps matching from going back over the same elements again and again.
enum class Match : std::uint8_t { Yes, NoAtThisSibling, NoAtThisElement, Never };

bool hasWord(std::u16string_view text, std::u16string_view word)
{
    for (std::size_t at = text.find(word); at != text.npos && !word.empty(); at = text.find(word, at + 1)) {
        const bool begins = at == 0 || isSpace(text[at - 1]);
        const std::size_t end = at + word.size();
        if (begins && (end == text.size() || isSpace(text[end])))
            return true;
    }
    return false;
}

bool attributeFits(const SimpleSelector& condition, std::u16string_view value)
{
    const std::u16string_view wanted = condition.value;
    switch (condition.kind) {
    case Kind::Attribute:
        return true;
    case Kind::AttributeEquals:
        return value == wanted;
    case Kind::AttributeWord:
        return hasWord(value, wanted);
    case Kind::AttributeLanguage:
        return value == wanted || (value.starts_with(wanted) && value[wanted.size()] == u'-');
    case Kind::AttributePrefix:
        return !wanted.empty() && value.starts_with(wanted);
    case Kind::AttributeSuffix:
        return !wanted.empty() && value.ends_with(wanted);
    default:
        return !wanted.empty() && value.find(wanted) != value.npos;
    }
}

bool isOneOf(const SimpleSelector& condition, std::uint32_t index)
{
    const std::int64_t distance = static_cast<std::int64_t>(index) - condition.offset;
    if (condition.step == 0)
        return distance == 0 && index > 0;
    return index > 0 && distance % condition.step == 0 && distance / condition.step >= 0;
}

class Matcher {
public:
    Matcher(const Page& page, MatchBudget& budget)
        : m_page(page)
        , m_budget(budget)
    {
    }

    Match matchFrom(const Selector& selector, std::size_t index, NodeIndex element);

private:
    bool spendReading(std::u16string_view text) { return m_budget.spend(text.size() / 16); }
    bool hasFittingAttribute(const SimpleSelector& condition, NodeIndex element);
    std::uint32_t indexOfType(NodeIndex element);
    std::uint32_t indexFromEnd(NodeIndex element) const;
    std::uint32_t indexOfTypeFromEnd(NodeIndex element);
    bool isEmpty(NodeIndex element) const;
    bool fits(const SimpleSelector& condition, NodeIndex element);
    bool fitsAll(const Compound& compound, NodeIndex element);
    Match matchFurther(const Selector& selector, std::size_t index, NodeIndex element);

    const Page& m_page;
    MatchBudget& m_budget;
};

bool Matcher::hasFittingAttribute(const SimpleSelector& condition, NodeIndex element)
{
    const auto value = m_page.attribute(element, condition.name);
    if (!m_budget.spend(m_page[element].attributeCount) || !value || !spendReading(*value))
        return false;
    return condition.ignoreCase ? attributeFits(condition, lowered(*value))
                                : attributeFits(condition, *value);
}

// Counted from 1; 0 when the budget does not allow to count.
std::uint32_t Matcher::indexOfType(NodeIndex element)
{
    std::uint32_t index = 1;
    for (auto other = m_page[element].previousElement; other != NoNode;
         other = m_page[other].previousElement) {
        if (!m_budget.spend())
            return 0;
        index += m_page[other].text == m_page[element].text;
    }
    return index;
}

std::uint32_t Matcher::indexFromEnd(NodeIndex element) const
{
    const html::Node& node = m_page[element];
    return node.parent == NoNode ? 1 : m_page[node.parent].elementCount - node.position + 1;
}

// 0 when the budget does not allow to count.
std::uint32_t Matcher::indexOfTypeFromEnd(NodeIndex element)
{
    std::uint32_t index = 1;
    for (auto other = m_page[element].next; other != NoNode; other = m_page[other].next) {
        if (!m_budget.spend())
            return 0;
        index += m_page[other].text == m_page[element].text && m_page[other].tag != html::Tag::Text;
    }
    return index;
}

bool Matcher::isEmpty(NodeIndex element) const { return m_page[element].firstChild == NoNode; }

bool Matcher::fits(const SimpleSelector& condition, NodeIndex element)
{
    const html::Node& node = m_page[element];
    const auto matchesElement
        = [&](const Selector& selector) { return matchFrom(selector, 0, element) == Match::Yes; };
    switch (condition.kind) {
    case Kind::Type:
        return node.text == condition.name;
    case Kind::Id:
        return node.id == condition.name;
    case Kind::Class:
        return spendReading(node.classes) && hasWord(node.classes, condition.name);
    case Kind::NthChild:
        return isOneOf(condition, node.position);
    case Kind::NthLastChild:
        return isOneOf(condition, indexFromEnd(element));
    case Kind::NthOfType:
        return isOneOf(condition, indexOfType(element));
    case Kind::NthLastOfType:
        return isOneOf(condition, indexOfTypeFromEnd(element));
    case Kind::Root:
        return node.parent == NoNode;
    case Kind::Empty:
        return isEmpty(element);
    case Kind::Link:
        return node.tag == html::Tag::A && m_page.attribute(element, u"href");
    case Kind::Checked:
        return m_page.attribute(element, u"checked") || m_page.attribute(element, u"selected");
    case Kind::Is:
        return std::ranges::any_of(*condition.list, matchesElement);
    case Kind::Not:
        return std::ranges::none_of(*condition.list, matchesElement) && !m_budget.isSpent();
    default:
        return hasFittingAttribute(condition, element);
    }
}

bool Matcher::fitsAll(const Compound& compound, NodeIndex element)
{
    return m_budget.spend(1 + compound.conditions.size())
        && std::ranges::all_of(
            compound.conditions, [&](const SimpleSelector& condition) { return fits(condition, element); });
}

// Tries compound `index` on one element after the other, up or to the left.
Match Matcher::matchFurther(const Selector& selector, std::size_t index, NodeIndex element)
{
    const Combinator combinator = selector.compounds[index - 1].before;
    const bool siblings = combinator == Combinator::NextSibling || combinator == Combinator::LaterSibling;
    const bool once = combinator == Combinator::NextSibling || combinator == Combinator::Child;
    const auto further
        = [&](NodeIndex from) { return siblings ? m_page[from].previousElement : m_page[from].parent; };
    for (NodeIndex next = further(element); next != NoNode; next = further(next)) {
        const Match match = matchFrom(selector, index, next);
        if (match == Match::Yes || match == Match::Never)
            return match;
        if (once)
            return siblings ? Match::NoAtThisSibling : Match::NoAtThisElement;
        if (siblings && match == Match::NoAtThisElement)
            return match;
    }
    return siblings ? Match::NoAtThisElement : Match::Never;
}

Match Matcher::matchFrom(const Selector& selector, std::size_t index, NodeIndex element)
{
    if (!fitsAll(selector.compounds[index], element))
        return m_budget.isSpent() ? Match::Never : Match::NoAtThisSibling;
    return index + 1 == selector.compounds.size() ? Match::Yes : matchFurther(selector, index + 1, element);
}

} // namespace

bool matches(const Selector& selector, const Page& page, NodeIndex element, MatchBudget& budget)
{
    return Matcher(page, budget).matchFrom(selector, 0, element) == Match::Yes;
}

} // namespace caddis::css
