#pragma once

#include "bundles/support/Xml.h"

#include <span>
#include <string>

namespace caddis::bundles {

/// How a text becomes an attribute.
enum class Form {
    String,
    Strings, ///< one more entry of a list
    Parts, ///< a list in one text, separated by commas and semicolons
    Integer,
    Date, ///< ISO 8601
};

/// Sets or adds to the attribute at `key`; a text that is no number or date sets nothing.
void setProperty(Attributes& attributes, const char* key, Form form, std::string_view text);

/// ISO 8601, and the "D:" and EXIF forms that differ only in their signs; seconds since 1970. A text without
/// a zone is read in the default zone. Nil for another text.
std::optional<double> readDate(std::string_view text);

/// One of a document's properties: the element that holds it and the attribute it becomes.
struct Property {
    std::string_view element; ///< without its prefix
    const char* key;
    Form form = Form::String;
};

/// Reads the properties of a document: elements whose text is the value, such as Dublin Core's.
class PropertyReader : public XmlHandler {
public:
    PropertyReader(Attributes& attributes, std::span<const Property> properties)
        : m_attributes(attributes)
        , m_properties(properties)
    {
    }

    void startElement(std::string_view name, const XmlTag& tag) override;
    void endElement(std::string_view name) override;
    void characters(std::string_view text) override;

private:
    Attributes& m_attributes;
    std::span<const Property> m_properties;
    const Property* m_current = nullptr;
    std::string m_text;
};

} // namespace caddis::bundles
