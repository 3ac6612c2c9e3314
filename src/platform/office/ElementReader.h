#pragma once

#include "platform/office/DocumentProperties.h"
#include "platform/xml/XMLParser.h"

#include <unordered_map>

/// Inside this folder: how a reader of office markup gets to the function of an element.
namespace caddis::office {

/// Calls the functions that `Reader` has for its elements, at most one for the start of each and one for its
/// end. What has none goes to the properties of the document; what is left out, with all that is in it,
/// nowhere.
template <typename Reader> class ElementReader : public XMLParserDelegate {
protected:
    struct Element {
        void (Reader::*start)(const XMLAttributes&) = nullptr;
        void (Reader::*end)() = nullptr;
    };
    using Elements = std::unordered_map<std::string_view, Element>;

    explicit ElementReader(DocumentProperties::Kind kind)
        : m_properties(kind)
    {
    }

    // A reader has: static const Elements& elements(); static bool isSkipped(std::string_view name).

    /// For elements whose meaning depends on those around them. True: there is nothing more to do.
    virtual bool takeElement(std::string_view, const XMLAttributes&) { return false; }

    /// Whether an element without a function may be a property of the document.
    virtual bool isAmongProperties() const { return true; }

    void didStartElement(std::string_view name, const XMLAttributes& attributes) final
    {
        if (m_skipped > 0 || Reader::isSkipped(name)) {
            ++m_skipped;
            return;
        }
        if (takeElement(name, attributes))
            return;
        const auto found = Reader::elements().find(name);
        if (found == Reader::elements().end()) {
            if (isAmongProperties())
                m_properties.start(name);
        } else if (found->second.start) {
            (static_cast<Reader&>(*this).*found->second.start)(attributes);
        }
    }

    void didEndElement(std::string_view name) final
    {
        if (m_skipped > 0) {
            --m_skipped;
            return;
        }
        const auto found = Reader::elements().find(name);
        if (found == Reader::elements().end())
            m_properties.end(name);
        else if (found->second.end)
            (static_cast<Reader&>(*this).*found->second.end)();
    }

    /// The document's attributes, those of its pages among them.
    Dictionary documentAttributes()
    {
        Dictionary attributes = m_properties.attributes();
        for (const auto& [key, value] : m_page)
            attributes.set(key, value);
        return attributes;
    }

    DocumentProperties m_properties;
    Dictionary m_page;
    std::size_t m_skipped = 0; // Elements that are open and left out.
};

} // namespace caddis::office
