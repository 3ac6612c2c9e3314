#pragma once

#include "html/CSSTokenizer.h"
#include "html/Page.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Selectors (Selectors Level 4, as far as a page at rest can tell them).
namespace caddis::css {

using html::NodeIndex;
using html::NoNode;
using html::Page;

struct Selector;

/// One condition on one element.
struct SimpleSelector {
    enum class Kind : std::uint8_t {
        Type,
        Id,
        Class,
        Attribute, ///< it has one
        AttributeEquals,
        AttributeWord, ///< ~=
        AttributeLanguage, ///< |=
        AttributePrefix,
        AttributeSuffix,
        AttributeContains,
        NthChild,
        NthLastChild,
        NthOfType,
        NthLastOfType,
        Root,
        Empty,
        Link,
        Checked,
        Is, ///< one of the selectors fits
        Not, ///< none of them does
    };

    Kind kind = Kind::Type;
    bool ignoreCase = false; ///< [name=value i]
    int step = 0; ///< of an+b
    int offset = 0;
    std::u16string name {}; ///< of the type, the class, the attribute
    std::u16string value {};
    std::shared_ptr<const std::vector<Selector>> list {}; ///< of Is and Not
};

enum class Combinator : std::uint8_t { Descendant, Child, NextSibling, LaterSibling };

struct Compound {
    std::vector<SimpleSelector> conditions; ///< none: any element
    Combinator before = Combinator::Descendant; ///< how it hangs on the compound to its left
};

struct Selector {
    std::vector<Compound> compounds; ///< from right to left
    std::uint32_t specificity = 0; ///< ids, classes and types, ten bits each
};

/// How many steps all matching on one page may take: a page within reason stays far below, and one of a
/// million siblings and a thousand sheets stops there with the styles it has.
class MatchBudget {
public:
    bool spend(std::size_t steps = 1)
    {
        if (steps > m_left) {
            m_left = 0;
            return false;
        }
        m_left -= steps;
        return true;
    }
    bool isSpent() const { return m_left == 0; }

private:
    std::size_t m_left = 40'000'000;
};

/// The selectors of a rule, up to its end; nil when one of them is not understood, since the rule does not
/// count then. Lists nest at most eight deep.
std::optional<std::vector<Selector>> parseSelectors(std::u16string_view text);

/// False too when the budget is spent.
bool matches(const Selector& selector, const Page& page, NodeIndex element, MatchBudget& budget);

} // namespace caddis::css
