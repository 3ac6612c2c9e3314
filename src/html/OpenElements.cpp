#include "html/PageParser.h"

namespace caddis::html {

void OpenElements::push(NodeIndex node, Name name, std::uint8_t traits)
{
    if (name >= m_innermost.size())
        m_innermost.resize(name + 1);
    m_elements.push_back({ node, name, m_innermost[name], traits });
    m_innermost[name] = m_elements.size();
    if (traits & IsScope)
        m_scopes.push_back(m_elements.size());
}

void OpenElements::popThrough(Place place)
{
    while (m_elements.size() >= place || (!m_elements.empty() && m_elements.back().isEnding)) {
        const OpenElement& last = m_elements.back();
        if (last.traits & IsScope)
            m_scopes.pop_back();
        m_innermost[last.name] = last.outer;
        m_elements.pop_back();
    }
}

} // namespace caddis::html
