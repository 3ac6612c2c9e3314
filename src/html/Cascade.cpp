#include "html/Cascade.h"

#include <algorithm>

namespace caddis::css {

namespace {

constexpr int DeepestVariable = 16;
constexpr std::size_t MostResolvedUnits = 4'000'000; // On a page, lest variables double each other.
constexpr std::size_t LongestValue = 65'536;

// The condition that the fewest elements fulfil.
const SimpleSelector* narrowest(const Compound& compound)
{
    using Kind = SimpleSelector::Kind;
    for (const Kind kind : { Kind::Id, Kind::Class, Kind::Type }) {
        const auto found = std::ranges::find(compound.conditions, kind, &SimpleSelector::kind);
        if (found != compound.conditions.end())
            return &*found;
    }
    return nullptr;
}

template <typename Take> void forEachWord(std::u16string_view text, Take take)
{
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin;
        while (end < text.size() && !isSpace(text[end]))
            ++end;
        if (end > begin)
            take(text.substr(begin, end - begin));
        begin = end + 1;
    }
}

const RuleIndex& userAgentRules()
{
    static const RuleIndex rules = [] {
        RuleIndex index;
        index.add(userAgentSheet());
        return index;
    }();
    return rules;
}

} // namespace

void RuleIndex::add(const StyleSheet& sheet)
{
    for (const StyleSheet::Rule& rule : sheet.rules) {
        const Entry entry { &sheet, &rule, m_order++ };
        const SimpleSelector* const key = narrowest(rule.selector.compounds.front());
        if (!key)
            m_others.push_back(entry);
        else if (key->kind == SimpleSelector::Kind::Id)
            m_byId[key->name].push_back(entry);
        else if (key->kind == SimpleSelector::Kind::Class)
            m_byClass[key->name].push_back(entry);
        else
            m_byType[key->name].push_back(entry);
    }
}

const RuleIndex::Entries* RuleIndex::find(const Table& table, std::u16string_view key)
{
    const auto found = table.find(key);
    return found == table.end() ? nullptr : &found->second;
}

template <typename Take> void RuleIndex::candidates(const html::Node& node, Take take) const
{
    const auto takeAll = [&](const Entries* entries) {
        if (entries)
            std::ranges::for_each(*entries, take);
    };
    takeAll(&m_others);
    takeAll(find(m_byType, node.text));
    if (!node.id.empty())
        takeAll(find(m_byId, node.id));
    if (!m_byClass.empty())
        forEachWord(node.classes, [&](std::u16string_view word) { takeAll(find(m_byClass, word)); });
}

std::size_t Cascade::KeyHash::operator()(const Key& key) const
{
    auto hash = reinterpret_cast<std::uintptr_t>(key.parent);
    for (const void* const block : key.blocks)
        hash = (hash << 7 ^ hash >> 9) * 0x9E3779B97F4A7C15 + reinterpret_cast<std::uintptr_t>(block);
    return hash ^ hash >> 29;
}

void Cascade::collect(const RuleIndex& rules, NodeIndex element, std::vector<Match>& found)
{
    found.clear();
    rules.candidates(m_page[element], [&](const RuleIndex::Entry& entry) {
        if (matches(entry.rule->selector, m_page, element, m_budget))
            found.push_back({ entry.weight(), entry.sheet, entry.rule->block });
    });
    std::ranges::sort(found, {}, &Match::weight);
}

const ComputedStyle& Cascade::styleOf(NodeIndex element, const ComputedStyle* parent)
{
    static const ComputedStyle initial;
    const ComputedStyle& from = parent ? *parent : initial;
    collect(userAgentRules(), element, m_own);
    collect(m_rules, element, m_author);
    m_hints.clear();
    m_inline.clear();
    appendHints(m_page, element, m_hints);
    if (m_page[element].attributeCount > 0) {
        if (const auto text = m_page.attribute(element, u"style"))
            parseDeclarations(*text, m_inline);
    }
    if (!m_hints.empty() || !m_inline.empty())
        return compute(element, from);
    Key key { parent, {} };
    for (const std::vector<Match>* found : { &m_own, &m_author }) {
        for (const Match& match : *found)
            key.blocks.push_back(&match.sheet->blocks[match.block]);
        key.blocks.push_back(nullptr);
    }
    const auto [known, isNew] = m_known.try_emplace(std::move(key), nullptr);
    if (isNew)
        known->second = &compute(element, from);
    return *known->second;
}

const ComputedStyle& Cascade::compute(NodeIndex element, const ComputedStyle& parent)
{
    const auto declarationsOf = [](const Match& match) {
        const StyleSheet::Block& block = match.sheet->blocks[match.block];
        return Declarations(match.sheet->declarations).subspan(block.first, block.count);
    };
    m_winning = {};
    m_resolvedDeclarations.clear();
    m_custom = parent.customProperties;
    for (const Match& match : m_author)
        takeCustom(declarationsOf(match), parent);
    takeCustom(m_inline, parent);

    for (const Match& match : m_own)
        take(declarationsOf(match), false);
    take(m_hints, false);
    for (const Match& match : m_author)
        take(declarationsOf(match), false);
    take(m_inline, false);
    for (const Match& match : m_author)
        take(declarationsOf(match), true);
    take(m_inline, true);

    ComputedStyle& style = m_styles.emplace_back(computedStyle(parent, m_winning, m_rootFontSize));
    style.customProperties = std::move(m_custom);
    if (element == 0)
        m_rootFontSize = style.fontSize;
    return style;
}

void Cascade::takeCustom(Declarations declarations, const ComputedStyle& parent)
{
    std::shared_ptr<CustomProperties> own;
    for (const Declaration& declaration : declarations) {
        if (declaration.property != Property::Custom)
            continue;
        if (!own)
            own = m_custom ? std::make_shared<CustomProperties>(*m_custom)
                           : std::make_shared<CustomProperties>();
        m_resolvedUnits += declaration.value.text.size() + 1;
        (*own)[std::u16string(declaration.customName)] = declaration.value.text.substr(0, LongestValue);
    }
    // Whoever copies the properties of his ancestors again and again is not a page within reason.
    m_resolvedUnits += own && parent.customProperties ? own->size() : 0;
    if (own && m_resolvedUnits < MostResolvedUnits)
        m_custom = std::move(own);
}

void Cascade::take(Declarations declarations, bool important)
{
    for (const Declaration& declaration : declarations) {
        if (declaration.isImportant != important || declaration.property == Property::Custom)
            continue;
        if (declaration.value.kind == PropertyValue::Kind::Unresolved)
            takeResolved(declaration);
        else
            m_winning[static_cast<std::size_t>(declaration.property)] = &declaration.value;
    }
}

void Cascade::takeResolved(const Declaration& declaration)
{
    auto text = resolved(declaration.value.text, 0);
    if (!text)
        return;
    std::vector<Declaration>& declarations = m_resolvedDeclarations.emplace_back();
    parseDeclaration(declaration.customName, trimmed(m_texts.emplace_back(std::move(*text))), declarations);
    for (const Declaration& one : declarations) {
        if (one.value.kind != PropertyValue::Kind::Unresolved)
            m_winning[static_cast<std::size_t>(one.property)] = &one.value;
    }
}

// The text with each var(--name, fallback) replaced; nil when one has neither value nor fallback.
std::optional<std::u16string> Cascade::resolved(std::u16string_view text, int depth)
{
    constexpr std::u16string_view Function = u"var(";
    std::u16string result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t found = std::min(text.find(Function, at), text.size());
        result += text.substr(at, found - at);
        if (found == text.size())
            break;
        Tokenizer tokens(text.substr(found + Function.size()));
        const std::u16string_view inside = tokens.skipBlock(TokenType::Function);
        at = found + Function.size() + tokens.position();
        const std::size_t comma = std::min(inside.find(u','), inside.size());
        const std::u16string_view name = trimmed(inside.substr(0, comma));
        std::optional<std::u16string> value;
        const auto known = m_custom ? m_custom->find(name) : CustomProperties::const_iterator();
        if (depth < DeepestVariable && m_custom && known != m_custom->end())
            value = resolved(known->second, depth + 1);
        if (!value && comma < inside.size() && depth < DeepestVariable)
            value = resolved(inside.substr(comma + 1), depth + 1);
        if (!value || result.size() + value->size() > LongestValue)
            return std::nullopt;
        m_resolvedUnits += value->size() + 1;
        if (m_resolvedUnits > MostResolvedUnits)
            return std::nullopt;
        result += *value;
    }
    return result;
}

} // namespace caddis::css
