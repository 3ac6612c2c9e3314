#pragma once

#include "html/Tags.h"
#include "platform/base/String.h"

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <optional>
#include <span>
#include <vector>

/// A parsed page: its elements and texts as one array, in document order.
namespace caddis::html {

using NodeIndex = std::uint32_t;
inline constexpr NodeIndex NoNode = 0xFFFFFFFF;

struct Attribute {
    std::u16string_view name; ///< in lower case
    std::u16string_view value; ///< references converted
};

struct Node {
    Tag tag = Tag::Text;
    std::uint32_t elementCount = 0; ///< among its children
    std::uint32_t position = 0; ///< among its parent's elements, from 1 on; 0 for texts
    NodeIndex parent = NoNode;
    NodeIndex firstChild = NoNode;
    NodeIndex lastChild = NoNode;
    NodeIndex next = NoNode; ///< behind it under the same parent
    NodeIndex previousElement = NoNode;
    std::uint32_t attributes = 0; ///< the first one's index
    std::uint32_t attributeCount = 0;
    std::u16string_view text {}; ///< an element's name in lower case; a text's units
    std::u16string_view id {};
    std::u16string_view classes {}; ///< as written, parted by white space
};

/// Node 0 is the html element; an empty page has that, too. Texts and values are views into the page's source
/// or into memory of its own: a Page can be moved, and copies there are none.
class Page {
public:
    explicit Page(String source)
        : m_source(std::move(source))
        , m_memory(std::make_unique<std::pmr::monotonic_buffer_resource>())
    {
    }

    const Node& operator[](NodeIndex index) const { return m_nodes[index]; }
    std::size_t size() const { return m_nodes.size(); }
    std::span<const Attribute> attributesOf(NodeIndex index) const;
    /// The first of that name; nil when the element has none. `name` is in lower case.
    std::optional<std::u16string_view> attribute(NodeIndex index, std::u16string_view name) const;
    /// The same without white space at the ends; empty when there is none.
    std::u16string_view trimmedAttribute(NodeIndex index, std::u16string_view name) const;
    /// The text inside the element, that of elements in it included.
    String textOf(NodeIndex index) const;
    /// The node behind `index` in document order that is not inside it; NoNode at the end.
    NodeIndex behind(NodeIndex index) const;

    const String& source() const { return m_source; }

private:
    friend class PageParser;

    String m_source;
    std::vector<Node> m_nodes;
    std::vector<Attribute> m_attributes;
    std::unique_ptr<std::pmr::monotonic_buffer_resource> m_memory;
};

/// Reads markup as browsers do (HTML Standard, section 13.2, in short): every text becomes a page.
///
/// Missing tags are filled in, stray ones passed over. What differs from a browser's reading: text between a
/// table's cells stays there, and an end tag that comes too early for the elements in between waits for
/// them. Scripts don't run, so noscript is content. Time and memory are linear in the text.
Page parsePage(const String& markup);

} // namespace caddis::html
