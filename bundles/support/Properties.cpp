#include "bundles/support/Properties.h"

#include "bundles/support/Utf8.h"
#include "platform/dates/IsoDate.h"

#include <charconv>

namespace caddis::bundles {

void setProperty(Attributes& attributes, const char* key, Form form, std::string_view text)
{
    text = trimmed(text);
    switch (form) {
    case Form::String:
        return attributes.setString(key, text);
    case Form::Strings:
        return attributes.addString(key, text);
    case Form::Parts:
        return attributes.addParts(key, text);
    case Form::Date:
        return attributes.setDate(key, readDate(text));
    case Form::Integer:
        std::int64_t value = 0;
        if (std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc())
            attributes.setInteger(key, value);
    }
}

std::optional<double> readDate(std::string_view text)
{
    std::string plain(trimmed(text).substr(0, 64));
    // EXIF's "2003:12:31 10:14:55" has colons where ISO 8601 has hyphens.
    if (plain.size() >= 10 && plain[4] == ':' && plain[7] == ':')
        plain[4] = plain[7] = '-';
    const auto date = readIsoDate(String::fromUtf8(plain));
    return date ? std::optional(date->unixSeconds()) : std::nullopt;
}

void PropertyReader::startElement(std::string_view name, const XmlTag&)
{
    for (const Property& property : m_properties) {
        if (property.element == name) {
            m_current = &property;
            m_text.clear();
        }
    }
}

void PropertyReader::characters(std::string_view text)
{
    if (m_current && m_text.size() < Attributes::MaximumString)
        m_text.append(text.substr(0, Attributes::MaximumString));
}

void PropertyReader::endElement(std::string_view name)
{
    if (m_current && m_current->element == name) {
        setProperty(m_attributes, m_current->key, m_current->form, m_text);
        m_current = nullptr;
    }
}

} // namespace caddis::bundles
