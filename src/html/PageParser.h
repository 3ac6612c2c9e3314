#pragma once

#include "html/Page.h"

#include <unordered_map>

/// Inside this folder: the parser's machine.
namespace caddis::html {

/// The elements that are open, the innermost last.
///
/// Whether one of a name is open, and inside which scope, is known without a search: for each name the place
/// of the innermost is kept, and each place knows the next outer one of its name.
class OpenElements {
public:
    using Name = std::uint32_t; ///< a number per name

    /// Places count from 1; 0 is none.
    using Place = std::size_t;

    void push(NodeIndex node, Name name, std::uint8_t traits);
    /// Ends the elements from `place` on, and those below that were waiting for it.
    void popThrough(Place place);
    Place innermost(Name name) const { return name < m_innermost.size() ? m_innermost[name] : 0; }
    Place innermost(Tag tag) const { return innermost(static_cast<Name>(tag)); }
    /// Of the scope that is open; 0 when none is.
    Place scope() const { return m_scopes.empty() ? 0 : m_scopes.back(); }
    Place size() const { return m_elements.size(); }
    NodeIndex node(Place place) const { return m_elements[place - 1].node; }
    std::uint8_t traits(Place place) const { return m_elements[place - 1].traits; }
    /// The element ends as soon as nothing is open in it.
    void endLater(Place place) { m_elements[place - 1].isEnding = true; }
    bool isInScope(Tag tag) const { return innermost(tag) > scope(); }

private:
    struct OpenElement {
        NodeIndex node;
        Name name;
        Place outer; ///< of the next of its name
        std::uint8_t traits;
        bool isEnding = false;
    };

    std::vector<OpenElement> m_elements;
    std::vector<Place> m_innermost; ///< by name
    std::vector<Place> m_scopes;
};

class PageParser {
public:
    explicit PageParser(const String& markup);
    Page parse() &&;

private:
    using Name = OpenElements::Name;
    struct StartTag {
        Tag tag;
        Name name;
        std::u16string_view text;
        std::uint32_t attributes = 0;
        std::uint32_t attributeCount = 0;
        bool isSelfClosing = false;
    };

    std::size_t parseMarkup(std::size_t at);
    std::size_t parseDeclaration(std::size_t at);
    std::size_t parseEndTag(std::size_t at);
    std::size_t parseStartTag(std::size_t at);
    std::size_t parseAttributes(std::size_t at, StartTag& tag);
    std::size_t parseAttribute(std::size_t at);
    std::size_t parseRawContent(std::size_t at, const StartTag& tag);
    std::size_t endOfRaw(std::size_t at, const StartTag& tag);

    void text(std::u16string_view units);
    void startTag(const StartTag& tag);
    bool startStructure(const StartTag& tag);
    void endTag(Tag tag, Name name);
    void endImplied(const StartTag& tag);
    void endTableParts(Tag tag);
    void endFormatting(OpenElements::Place place);
    void openHead();
    void openBody(const StartTag* tag = nullptr);
    NodeIndex append(Node node);
    NodeIndex appendElement(const StartTag& tag);

    std::u16string_view lowerCase(std::u16string_view name);
    std::u16string_view withReferences(std::u16string_view text);
    char16_t* allocate(std::size_t units);
    Name nameNumber(Tag tag, std::u16string_view name);

    Page m_page;
    std::u16string_view m_text;
    OpenElements m_open;
    std::unordered_map<std::u16string_view, Name> m_otherNames;
    NodeIndex m_head = NoNode;
    NodeIndex m_body = NoNode;
    bool m_isXML = false;
    bool m_dropsNewline = false; // Right behind pre and its like.
    bool m_isUnended[static_cast<std::size_t>(Tag::Count)] = {}; // Raw elements without an end tag ahead.
};

} // namespace caddis::html
