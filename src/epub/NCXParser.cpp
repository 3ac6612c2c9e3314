#include "epub/NCXParser.h"

#include "foundation/URLExtensions.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr std::size_t DeepestEntry = 256;

} // namespace

NCXParser::NCXParser(const Data& data)
{
    XMLParser::parse(data, *this);
    m_children = childrenOf(m_entries.front());
}

void NCXParser::didStartElement(std::string_view name, const XMLAttributes& attributes)
{
    if (name == "navPoint") {
        flush();
    } else if (name == "navLabel") {
        ++m_navLabel;
    } else if (name == "content") {
        const auto source = attributes.value("src");
        m_content = source ? stringByRemovingPercentEscapes(*source) : std::nullopt;
        if (m_content)
            m_content = stringURLWithoutAnchor(*m_content);
    }
}

void NCXParser::didEndElement(std::string_view name)
{
    if (name == "navPoint") {
        flush();
        // Kept on purpose: a navPoint without label or content pushed nothing, and so pops its parent.
        if (!m_navPoints.empty())
            m_navPoints.pop_back();
    } else if (name == "navLabel") {
        --m_navLabel;
    }
}

void NCXParser::foundCharacters(const String& characters)
{
    if (m_navLabel <= 0)
        return;
    if (!m_label)
        m_label.emplace();
    m_label->append(characters);
}

// The pending entry becomes a child of the open one and is open itself. When even the root was popped, it
// hangs nowhere. Outside all navPoints, entries open that nothing closes: what would be too deep for those
// who walk through the tree hangs at the deepest entry that is not.
void NCXParser::flush()
{
    if (m_content && m_label) {
        const std::size_t index = m_entries.size();
        m_entries.push_back({ *m_content, String(trimmingWhiteSpaces(m_label->view())), {} });
        if (!m_navPoints.empty()) {
            const std::size_t parent = m_navPoints[std::min(m_navPoints.size(), DeepestEntry) - 1];
            m_entries[parent].children.push_back(index);
        }
        m_navPoints.push_back(index);
    }
    m_content.reset();
    m_label.reset();
}

Array NCXParser::childrenOf(const Entry& entry) const
{
    Array children;
    children.reserve(entry.children.size());
    for (const std::size_t index : entry.children) {
        const Entry& child = m_entries[index];
        Dictionary dictionary { { u"content"_s, child.content }, { u"label"_s, child.label } };
        if (!child.children.empty())
            dictionary.set(u"children"_s, Value(childrenOf(child)));
        children.emplace_back(std::move(dictionary));
    }
    return children;
}

} // namespace caddis
