#pragma once

#include "platform/base/Value.h"
#include "platform/xml/XMLParser.h"

#include <string>

/// Inside this folder: what a document says of itself (title, author and so on), whatever part of it that
/// stands in.
namespace caddis::office {

/// Takes the elements that hold a property, by the names that they have in documents of one kind.
class DocumentProperties {
public:
    enum class Kind { OfficeOpen, OpenDocument };
    explicit DocumentProperties(Kind kind)
        : m_kind(kind)
    {
    }

    /// Whether the element is a property's.
    bool start(std::string_view element);
    void characters(const String& text);
    void end(std::string_view element);

    /// Reads a part that holds nothing else; one that is not well formed up to its fault.
    void read(const Data& part);

    const Dictionary& attributes() const { return m_attributes; }

private:
    std::u16string_view keyOf(std::string_view element) const;
    void set(std::u16string_view key, const String& text);

    Kind m_kind;
    Dictionary m_attributes;
    Array m_keywords;
    std::u16string_view m_key; // Of the element that is open.
    String m_text;
};

} // namespace caddis::office
