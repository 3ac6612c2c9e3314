#include "bundles/support/Attributes.h"

#include "bundles/support/Utf8.h"
#include "platform/base/LeftOut.h"

#include <cmath>

namespace caddis::bundles {

namespace {

std::string_view attributeOf(std::string_view utf8)
{
    const std::string_view text = trimmed(utf8);
    if (text.size() <= Attributes::MaximumString)
        return text;
    noteLeftOut(u"an attribute beyond 64 KiB");
    return wholeCharacters(text.substr(0, Attributes::MaximumString));
}

} // namespace

void Attributes::setString(const char* key, std::string_view utf8)
{
    const std::string_view value = attributeOf(utf8);
    if (!value.empty())
        m_host.set_string(m_dictionary, key, value.data(), value.size());
}

void Attributes::setString(const char* key, const std::optional<String>& text)
{
    if (text)
        setString(key, *text);
}

void Attributes::setInteger(const char* key, std::int64_t value)
{
    m_host.set_integer(m_dictionary, key, value);
}

void Attributes::setReal(const char* key, double value)
{
    if (std::isfinite(value))
        m_host.set_real(m_dictionary, key, value);
}

void Attributes::setBoolean(const char* key, bool value) { m_host.set_boolean(m_dictionary, key, value); }

void Attributes::setDate(const char* key, std::optional<double> secondsSince1970)
{
    if (secondsSince1970 && std::isfinite(*secondsSince1970))
        m_host.set_date(m_dictionary, key, *secondsSince1970);
}

void Attributes::addString(const char* key, std::string_view utf8)
{
    const std::string_view value = attributeOf(utf8);
    if (value.empty())
        return;
    if (m_items == MaximumItems)
        return noteLeftOut(u"entries of lists after the first 10,000");
    ++m_items;
    m_host.add_string(m_dictionary, key, value.data(), value.size());
}

void Attributes::addParts(const char* key, std::string_view utf8, std::string_view separators)
{
    for (bool hasRoom = true; !utf8.empty() && hasRoom;) {
        hasRoom = m_items < MaximumItems;
        const auto end = std::min(utf8.find_first_of(separators), utf8.size());
        addString(key, utf8.substr(0, end));
        utf8.remove_prefix(std::min(end + 1, utf8.size()));
    }
}

bool Attributes::appendText(std::string_view utf8)
{
    m_isTextFull = m_isTextFull || !m_host.append_text(m_dictionary, utf8.data(), utf8.size());
    return !m_isTextFull;
}

bool Attributes::shouldStop() const { return m_isTextFull || m_host.should_stop() != 0; }

} // namespace caddis::bundles
