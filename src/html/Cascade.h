#pragma once

#include "html/CSSStyleSheet.h"
#include "html/ComputedStyle.h"

#include <deque>
#include <unordered_map>

/// Weighs what style sheets, attributes and the browser's own sheet say of an element (CSS Cascading and
/// Inheritance, Level 4).
namespace caddis::css {

/// Rules by what their rightmost compound asks for, so that an element looks at few of them.
class RuleIndex {
public:
    struct Entry {
        const StyleSheet* sheet;
        const StyleSheet::Rule* rule;
        std::uint32_t order;

        /// What decides between two rules: layers, then specificity, then order.
        std::uint64_t weight() const
        {
            const std::uint64_t outside = rule->isLayered ? 0 : 1;
            return outside << 62 | std::uint64_t { rule->selector.specificity } << 31 | order;
        }
    };

    /// `sheet` must stay where it is.
    void add(const StyleSheet& sheet);
    bool isEmpty() const { return m_order == 0; }
    /// Hands over the entries that may fit.
    template <typename Take> void candidates(const html::Node& node, Take take) const;

private:
    using Entries = std::vector<Entry>;
    struct Hash : std::hash<std::u16string_view> {
        using is_transparent = void;
    };
    using Table = std::unordered_map<std::u16string, Entries, Hash, std::equal_to<>>;
    static const Entries* find(const Table& table, std::u16string_view key);

    Table m_byId, m_byClass, m_byType;
    Entries m_others;
    std::uint32_t m_order = 0;
};

class Cascade {
public:
    /// The page and the sheets added must outlive it.
    explicit Cascade(const Page& page)
        : m_page(page)
    {
    }

    /// A sheet yields to those added after it.
    void add(const StyleSheet& sheet) { m_rules.add(sheet); }

    /// Of an element inside one whose style is `parent`, which came from here; or the root's, of none. The
    /// result stays valid as long as the Cascade.
    const ComputedStyle& styleOf(NodeIndex element, const ComputedStyle* parent);

private:
    struct Match {
        std::uint64_t weight;
        const StyleSheet* sheet;
        std::uint32_t block;
    };
    struct Key {
        const ComputedStyle* parent;
        std::vector<const void*> blocks;

        friend bool operator==(const Key&, const Key&) = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const;
    };
    using CustomProperties = ComputedStyle::CustomProperties;
    using Declarations = std::span<const Declaration>;

    void collect(const RuleIndex& rules, NodeIndex element, std::vector<Match>& matches);
    const ComputedStyle& compute(NodeIndex element, const ComputedStyle& parent);
    void takeCustom(Declarations declarations, const ComputedStyle& parent);
    void take(Declarations declarations, bool important);
    void takeResolved(const Declaration& declaration);
    std::optional<std::u16string> resolved(std::u16string_view text, int depth);

    const Page& m_page;
    RuleIndex m_rules;
    MatchBudget m_budget;
    double m_rootFontSize = 0;
    std::deque<ComputedStyle> m_styles;
    std::unordered_map<Key, const ComputedStyle*, KeyHash> m_known;
    std::deque<std::u16string> m_texts; // What variables were replaced in.
    std::size_t m_resolvedUnits = 0;

    // Of the element under consideration.
    std::vector<Match> m_own, m_author;
    std::vector<Declaration> m_hints, m_inline;
    std::deque<std::vector<Declaration>> m_resolvedDeclarations;
    WinningValues m_winning {};
    std::shared_ptr<const CustomProperties> m_custom;
};

/// The sheet of the browser itself (HTML Standard, section 15.3).
const StyleSheet& userAgentSheet();

/// Appends what attributes such as bgcolor and align say of an element's looks (HTML Standard, section 15).
void appendHints(const Page& page, NodeIndex element, std::vector<Declaration>& declarations);

} // namespace caddis::css
