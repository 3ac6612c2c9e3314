#include "html/Converter.h"

#include "text/CharacterTables.h"

namespace caddis::html {

using css::ComputedStyle;
using css::Keyword;

void Converter::convert(const LoadedPage& page, int depth)
{
    Walk walk { page, css::Cascade(page.page), m_frames.size(), {}, {} };
    for (const css::StyleSheet& sheet : page.sheets)
        walk.cascade.add(sheet);
    Walk* const outer = std::exchange(m_walk, &walk);
    const int outerDepth = std::exchange(m_depth, depth);
    m_characterOf = nullptr;
    enter(0);
    while (m_frames.size() > walk.firstFrame) {
        Frame& frame = m_frames.back();
        const NodeIndex child = frame.next;
        if (child == NoNode) {
            leave();
            continue;
        }
        frame.next = page.page[child].next;
        if (page.page[child].tag == Tag::Text)
            text(page.page[child].text);
        else
            enter(child);
    }
    m_characterOf = nullptr;
    m_walk = outer;
    m_depth = outerDepth;
}

const ComputedStyle& Converter::styleOf(NodeIndex node)
{
    const std::size_t depth = m_frames.size() - m_walk->firstFrame;
    const ComputedStyle* const parent = depth ? m_frames.back().style : nullptr;
    if (depth < DeepestStyled)
        return m_walk->cascade.styleOf(node, parent);
    if (depth == DeepestStyled) {
        m_walk->deepInline = m_walk->deepBlock = *parent;
        m_walk->deepInline.display = Keyword::Inline;
        m_walk->deepBlock.display = Keyword::Block;
        m_walk->deepBlock.floating = m_walk->deepInline.floating = Keyword::None;
    }
    return traitsOf(m_walk->loaded.page[node].tag) & ClosesParagraph ? m_walk->deepBlock : m_walk->deepInline;
}

void Converter::enter(NodeIndex node)
{
    const Node& element = m_walk->loaded.page[node];
    if (element.tag == Tag::Script || element.tag == Tag::Style || element.tag == Tag::Head)
        return;
    const ComputedStyle& style = styleOf(node);
    if (style.isHidden())
        return;
    Frame frame {
        .node = node, .next = element.firstChild, .style = &style, .tag = element.tag, .outerLink = m_link
    };
    if (!m_frames.empty()) {
        const Frame& parent = m_frames.back();
        frame.block = parent.block;
        frame.item = parent.item;
        frame.indent = parent.indent;
    }
    if (style.isBlock() && element.tag != Tag::Br)
        enterBlock(frame, m_frames.size());
    frame.start = m_builder.length();
    m_frames.push_back(std::move(frame));
    process(m_frames.back());
}

void Converter::enterBlock(Frame& frame, std::size_t index)
{
    const bool isItem = frame.tag == Tag::Li;
    const bool isList
        = frame.tag == Tag::Ul || frame.tag == Tag::Ol || frame.tag == Tag::Menu || frame.tag == Tag::Dir;
    const bool isLooseCell = frame.style->display == Keyword::TableCell && m_tables.empty();
    const bool isPlainInList = isInList() && !isItem && !isList && frame.style->display == Keyword::Block;
    if (isPlainInList) {
        if (frame.item != NoFrame && m_builder.length() > m_frames[frame.item].start)
            endLineOnce();
    } else if (!isLooseCell && frame.tag != Tag::Html && frame.tag != Tag::Body) {
        endParagraph(false);
    }
    frame.isBlock = true;
    frame.block = index;
    if (frame.tag == Tag::Blockquote || frame.tag == Tag::Dd || frame.tag == Tag::Figure)
        frame.indent += frame.style->marginLeft;
    if (isItem)
        openItem(frame, index);
    if (isList)
        openList(frame);
    if (frame.style->display == Keyword::Table)
        openTable(frame);
    else if (frame.style->display == Keyword::TableRow)
        openRow();
    else if (frame.style->display == Keyword::TableCell)
        openCell(frame);
}

// What an element contributes besides its content, which some don't show.
void Converter::process(const Frame& frame)
{
    Frame& own = m_frames.back();
    switch (frame.tag) {
    case Tag::A: {
        const std::u16string_view target = attribute(frame, u"href");
        if (!target.empty() && !target.starts_with(u'#')) {
            const auto url = resolved(m_walk->loaded, target);
            m_link = url ? url->absoluteString() : String(target);
        }
        break;
    }
    case Tag::Br: {
        const Tag block = frame.block == NoFrame ? Tag::Body : m_frames[frame.block].tag;
        if (block == Tag::P || block == Tag::Li || isHeading(block))
            endLine();
        else
            endParagraph(true, false);
        break;
    }
    case Tag::Q:
        return quotation(true);
    case Tag::Img:
        return image(frame);
    case Tag::Input:
    case Tag::Textarea:
        return control(own);
    case Tag::Iframe:
    case Tag::Frame:
        return nestedPage();
    case Tag::Object:
    case Tag::Embed:
    case Tag::Applet:
        return object(own);
    default:
        break;
    }
}

void Converter::leave()
{
    const Frame& frame = m_frames.back();
    if (frame.tag == Tag::Q)
        quotation(false);
    if (frame.isBlock)
        leaveBlock(frame);
    else if (frame.style->display == Keyword::TableCell)
        appendUnits(u"\t");
    m_link = frame.outerLink;
    m_frames.pop_back();
}

void Converter::leaveBlock(const Frame& frame)
{
    const Keyword display = frame.style->display;
    const bool isPlain = display == Keyword::Block && frame.tag != Tag::Li && !frame.opensList;
    if (frame.tag == Tag::Html || frame.tag == Tag::Body) {
        if (m_depth == 0)
            flushParagraphs();
    } else if (display == Keyword::TableCell && m_tables.empty()) {
        appendUnits(u"\t");
    } else if (isPlain && isInList()) {
        endLineOnce();
    } else {
        const bool isEmpty = m_builder.length() <= frame.start;
        const bool showsEmpty = frame.opensCell || frame.tag == Tag::Li || frame.tag == Tag::Hr;
        endParagraph(isEmpty && showsEmpty);
    }
    if (frame.opensList)
        m_lists.pop_back();
    if (frame.opensCell)
        m_cells.pop_back();
    if (frame.opensTable)
        closeTable();
}

void Converter::quotation(bool opens)
{
    const int level = opens ? m_quotations++ : --m_quotations;
    const bool isOuter = level % 2 == 0;
    const std::u16string_view mark
        = opens ? (isOuter ? u"\u201C" : u"\u2018") : (isOuter ? u"\u201D" : u"\u2019");
    appendUnits(mark);
}

std::u16string_view Converter::attribute(const Frame& frame, std::u16string_view name) const
{
    return m_walk->loaded.page.trimmedAttribute(frame.node, name);
}

} // namespace caddis::html
