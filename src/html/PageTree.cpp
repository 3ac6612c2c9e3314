// How tags make a tree: what a start tag ends, what an end tag ends, what is filled in.

#include "html/CSSTokenizer.h"
#include "html/PageParser.h"

#include <algorithm>

namespace caddis::html {

namespace {

constexpr bool isTablePart(Tag tag)
{
    return tag == Tag::Caption || tag == Tag::Colgroup || tag == Tag::Col || tag == Tag::Thead
        || tag == Tag::Tbody || tag == Tag::Tfoot || tag == Tag::Tr || tag == Tag::Td || tag == Tag::Th;
}

} // namespace

NodeIndex PageParser::append(Node node)
{
    const auto index = static_cast<NodeIndex>(m_page.m_nodes.size());
    if (m_open.size() > 0) {
        node.parent = m_open.node(m_open.size());
        Node& parent = m_page.m_nodes[node.parent];
        const NodeIndex before = parent.lastChild;
        (before == NoNode ? parent.firstChild : m_page.m_nodes[before].next) = index;
        parent.lastChild = index;
        if (before != NoNode) {
            const Node& neighbour = m_page.m_nodes[before];
            node.previousElement = neighbour.tag == Tag::Text ? neighbour.previousElement : before;
        }
        if (node.tag != Tag::Text) {
            node.position
                = node.previousElement == NoNode ? 1 : m_page.m_nodes[node.previousElement].position + 1;
            parent.elementCount = node.position;
        }
    }
    m_page.m_nodes.push_back(node);
    return index;
}

NodeIndex PageParser::appendElement(const StartTag& tag)
{
    Node node { .tag = tag.tag, .text = tag.text };
    node.attributes = tag.attributes;
    node.attributeCount = tag.attributeCount;
    const NodeIndex index = append(node);
    m_page.m_nodes[index].id = m_page.trimmedAttribute(index, u"id");
    m_page.m_nodes[index].classes = m_page.trimmedAttribute(index, u"class");
    return index;
}

void PageParser::text(std::u16string_view units)
{
    if (std::exchange(m_dropsNewline, false) && units.starts_with(u'\n'))
        units.remove_prefix(1);
    if (units.empty())
        return;
    if (m_body == NoNode && !m_open.innermost(Tag::Template)) {
        if (css::trimmed(units).empty())
            return;
        openBody();
    }
    append({ .text = withReferences(units) });
}

void PageParser::openHead()
{
    if (m_head != NoNode || m_body != NoNode)
        return;
    m_head = append({ .tag = Tag::Head, .text = nameOf(Tag::Head) });
    m_open.push(m_head, static_cast<Name>(Tag::Head), 0);
}

void PageParser::openBody(const StartTag* tag)
{
    if (m_body != NoNode)
        return;
    m_open.popThrough(2); // The head, if it is open.
    m_body = tag ? appendElement(*tag) : append({ .tag = Tag::Body, .text = nameOf(Tag::Body) });
    m_open.push(m_body, static_cast<Name>(Tag::Body), 0);
}

// True for the elements of which a page has one.
bool PageParser::startStructure(const StartTag& tag)
{
    if (tag.tag == Tag::Head) {
        openHead();
        return true;
    }
    if (tag.tag == Tag::Body) {
        openBody(&tag);
        return true;
    }
    if (tag.tag != Tag::Html)
        return false;
    Node& root = m_page.m_nodes[0];
    if (root.attributeCount == 0) {
        root.attributes = tag.attributes;
        root.attributeCount = tag.attributeCount;
        root.id = m_page.trimmedAttribute(0, u"id");
        root.classes = m_page.trimmedAttribute(0, u"class");
    }
    return true;
}

void PageParser::startTag(const StartTag& tag)
{
    const std::uint8_t traits = traitsOf(tag.tag);
    if (startStructure(tag))
        return;
    if (m_body == NoNode) {
        if (traits & IsHeadContent)
            openHead();
        else
            openBody();
    }
    endImplied(tag);
    const NodeIndex node = appendElement(tag);
    const bool isEmpty
        = tag.isSelfClosing && (m_isXML || m_open.innermost(Tag::Svg) || m_open.innermost(Tag::Math));
    if (!(traits & IsVoid) && !isEmpty)
        m_open.push(node, tag.name, traits);
}

// Ends what can't go on with this element in it.
void PageParser::endImplied(const StartTag& tag)
{
    const auto endIfAbove = [&](Tag ended, OpenElements::Place fence) {
        if (const auto place = m_open.innermost(ended); place > std::max(fence, m_open.scope()))
            m_open.popThrough(place);
    };
    if (traitsOf(tag.tag) & ClosesParagraph)
        endIfAbove(Tag::P, 0);
    if (tag.tag == Tag::Li)
        endIfAbove(Tag::Li, std::max(m_open.innermost(Tag::Ul), m_open.innermost(Tag::Ol)));
    if (tag.tag == Tag::Dt || tag.tag == Tag::Dd) {
        endIfAbove(Tag::Dt, m_open.innermost(Tag::Dl));
        endIfAbove(Tag::Dd, m_open.innermost(Tag::Dl));
    }
    if (tag.tag == Tag::Option || tag.tag == Tag::Optgroup)
        endIfAbove(Tag::Option, m_open.innermost(Tag::Select));
    if (tag.tag == Tag::Optgroup)
        endIfAbove(Tag::Optgroup, m_open.innermost(Tag::Select));
    if (tag.tag == Tag::A && m_open.isInScope(Tag::A))
        endFormatting(m_open.innermost(Tag::A));
    if (isHeading(tag.tag) && isHeading(m_page[m_open.node(m_open.size())].tag))
        m_open.popThrough(m_open.size());
    if (isTablePart(tag.tag))
        endTableParts(tag.tag);
}

// A row ends the row before it, a group of rows the group: all up to what the part may stand in.
void PageParser::endTableParts(Tag tag)
{
    const OpenElements::Place table = m_open.innermost(Tag::Table);
    if (table == 0)
        return;
    OpenElements::Place keep = table;
    if (tag == Tag::Td || tag == Tag::Th || tag == Tag::Tr) {
        for (const Tag group : { Tag::Thead, Tag::Tbody, Tag::Tfoot })
            keep = std::max(keep, m_open.innermost(group));
    }
    const bool isCell = tag == Tag::Td || tag == Tag::Th;
    if (isCell)
        keep = std::max(keep, m_open.innermost(Tag::Tr));
    if (tag == Tag::Col)
        keep = std::max(keep, m_open.innermost(Tag::Colgroup));
    m_open.popThrough(keep + 1);
    if (isCell && m_open.innermost(Tag::Tr) < table) {
        const auto row = static_cast<Name>(Tag::Tr);
        m_open.push(append({ .tag = Tag::Tr, .text = nameOf(Tag::Tr) }), row, 0);
    }
}

void PageParser::endTag(Tag tag, Name name)
{
    m_dropsNewline = false;
    if (tag == Tag::Html || tag == Tag::Body)
        return;
    if (tag == Tag::Br)
        return startTag({ Tag::Br, name, nameOf(Tag::Br) });
    const OpenElements::Place place = m_open.innermost(name);
    const bool endsRow = isTablePart(tag);
    if (place == 0 || (endsRow && place < m_open.innermost(Tag::Table)))
        return;
    const bool isBehindScope = place < m_open.scope();
    if (isBehindScope && !endsRow && tag != Tag::Table)
        return;
    if (traitsOf(tag) & IsFormatting)
        endFormatting(place);
    else
        m_open.popThrough(place);
}

// Formatting elements inside go on behind it; with a block inside it waits for the block's end.
void PageParser::endFormatting(OpenElements::Place place)
{
    constexpr std::size_t MostReopened = 8;
    const OpenElements::Place last = m_open.size();
    if (last - place > MostReopened)
        return m_open.endLater(place);
    for (auto inside = place + 1; inside <= last; ++inside) {
        if (!(m_open.traits(inside) & IsFormatting))
            return m_open.endLater(place);
    }
    std::vector<Node> reopened;
    for (auto inside = place + 1; inside <= last; ++inside)
        reopened.push_back(m_page[m_open.node(inside)]);
    m_open.popThrough(place);
    for (const Node& old : reopened) {
        const StartTag tag { old.tag, static_cast<Name>(old.tag), old.text, old.attributes,
            old.attributeCount };
        m_open.push(appendElement(tag), tag.name, IsFormatting);
    }
}

} // namespace caddis::html
