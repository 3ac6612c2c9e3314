#include "html/Page.h"

#include "html/CSSTokenizer.h"
#include "platform/base/MutableString.h"

namespace caddis::html {

std::span<const Attribute> Page::attributesOf(NodeIndex index) const
{
    const Node& node = m_nodes[index];
    return std::span(m_attributes).subspan(node.attributes, node.attributeCount);
}

std::optional<std::u16string_view> Page::attribute(NodeIndex index, std::u16string_view name) const
{
    for (const Attribute& attribute : attributesOf(index)) {
        if (attribute.name == name)
            return attribute.value;
    }
    return std::nullopt;
}

std::u16string_view Page::trimmedAttribute(NodeIndex index, std::u16string_view name) const
{
    return css::trimmed(attribute(index, name).value_or(std::u16string_view()));
}

NodeIndex Page::behind(NodeIndex index) const
{
    while (index != NoNode && m_nodes[index].next == NoNode)
        index = m_nodes[index].parent;
    return index == NoNode ? NoNode : m_nodes[index].next;
}

String Page::textOf(NodeIndex index) const
{
    MutableString text;
    const NodeIndex end = behind(index);
    for (NodeIndex inside = index + 1; inside < size() && inside != end; ++inside) {
        if (m_nodes[inside].tag == Tag::Text)
            text.append(m_nodes[inside].text);
    }
    return std::move(text).take();
}

} // namespace caddis::html
