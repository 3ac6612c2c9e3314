#include "platform/script/DescriptorJSON.h"

#include "platform/base/MutableString.h"
#include "platform/script/FlattenedDescriptor.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace caddis {

namespace {

constexpr FourCharCode UserFields = "usrf"_code;

void appendQuoted(std::string& out, const String& text)
{
    out += '"';
    for (const char character : text.utf8()) {
        if (character == '"' || character == '\\')
            out += '\\';
        if (static_cast<unsigned char>(character) >= 0x20) {
            out += character;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(character));
        out += escape;
    }
    out += '"';
}

void append(std::string& out, const EventDescriptor& value);

void appendMember(std::string& out, const String& name, const EventDescriptor& value)
{
    if (!out.ends_with('{'))
        out += ", ";
    appendQuoted(out, name);
    out += ": ";
    append(out, value);
}

void appendRecord(std::string& out, const EventDescriptor& record)
{
    out += '{';
    for (const auto& [keyword, value] : record.fields()) {
        if (keyword != UserFields || !value.isList()) {
            appendMember(out, String::fromLatin1(codeCharacters(keyword)), value);
            continue;
        }
        for (std::size_t position = 1; position < value.numberOfItems(); position += 2)
            appendMember(out, value.descriptorAtIndex(position).stringValue().value_or(String()),
                value.descriptorAtIndex(position + 1));
    }
    out += '}';
}

void appendScalar(std::string& out, const EventDescriptor& value)
{
    const FourCharCode type = value.descriptorType();
    const bool isText
        = type == "utxt"_code || type == "utf8"_code || type == "TEXT"_code || type == "ut16"_code;
    const auto number = isText ? std::nullopt : value.doubleValue();
    if (const auto yes = value.booleanValue()) {
        out += *yes ? "true" : "false";
    } else if (number && std::isfinite(*number)) {
        char digits[32];
        out.append(digits, std::to_chars(digits, std::end(digits), *number).ptr);
    } else if (const auto date = value.dateValue()) {
        appendQuoted(out, date->description());
    } else if (const auto text = value.stringValue(); text && value.codeValue() != "msng"_code) {
        appendQuoted(out, *text);
    } else {
        out += "null";
    }
}

void append(std::string& out, const EventDescriptor& value)
{
    if (value.isRecord()) {
        appendRecord(out, value);
    } else if (value.isList()) {
        out += '[';
        for (const auto& field : value.fields()) {
            if (!out.ends_with('['))
                out += ", ";
            append(out, field.value);
        }
        out += ']';
    } else {
        appendScalar(out, value);
    }
}

class Reader {
public:
    explicit Reader(std::string_view text)
        : m_text(text)
    {
    }

    std::optional<EventDescriptor> whole()
    {
        auto result = value(0);
        skipBlanks();
        return m_at == m_text.size() ? result : std::nullopt;
    }

private:
    void skipBlanks() { m_at = std::min(m_text.find_first_not_of(" \t\r\n", m_at), m_text.size()); }
    char peek() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }
    bool accept(std::string_view mark)
    {
        skipBlanks();
        if (!m_text.substr(m_at).starts_with(mark))
            return false;
        m_at += mark.size();
        return true;
    }

    std::optional<EventDescriptor> value(std::size_t depth)
    {
        skipBlanks();
        if (depth >= MaximumDescriptorDepth)
            return std::nullopt;
        if (accept("null"))
            return EventDescriptor();
        if (accept("true"))
            return EventDescriptor::withBoolean(true);
        if (accept("false"))
            return EventDescriptor::withBoolean(false);
        if (accept("["))
            return list(depth);
        if (accept("{"))
            return record(depth);
        if (peek() == '"') {
            auto text = string();
            return text ? std::optional(EventDescriptor::withString(*text)) : std::nullopt;
        }
        return number();
    }

    std::optional<EventDescriptor> list(std::size_t depth)
    {
        std::vector<EventDescriptor> items;
        while (!accept("]")) {
            if (!items.empty() && !accept(","))
                return std::nullopt;
            auto item = value(depth + 1);
            if (!item)
                return std::nullopt;
            items.push_back(*std::move(item));
        }
        return EventDescriptor::list(std::move(items));
    }

    std::optional<EventDescriptor> record(std::size_t depth)
    {
        std::vector<EventDescriptor> entries;
        while (!accept("}")) {
            if (!entries.empty() && !accept(","))
                return std::nullopt;
            skipBlanks();
            const auto name = string();
            if (!name || !accept(":"))
                return std::nullopt;
            auto member = value(depth + 2);
            if (!member)
                return std::nullopt;
            entries.push_back(EventDescriptor::withString(*name));
            entries.push_back(*std::move(member));
        }
        if (entries.empty())
            return EventDescriptor::record({});
        return EventDescriptor::record({ { UserFields, EventDescriptor::list(std::move(entries)) } });
    }

    std::optional<String> string()
    {
        if (peek() != '"')
            return std::nullopt;
        MutableString text;
        for (++m_at; m_at < m_text.size();) {
            const std::size_t end = std::min(m_text.find_first_of("\"\\", m_at), m_text.size());
            text.appendUtf8(m_text.substr(m_at, end - m_at));
            m_at = end + 1;
            if (end == m_text.size())
                return std::nullopt;
            if (m_text[end] == '"')
                return std::move(text).take();
            const auto unit = escape();
            if (!unit)
                return std::nullopt;
            text.append(*unit);
        }
        return std::nullopt;
    }

    std::optional<char16_t> escape()
    {
        const char kind = peek();
        ++m_at;
        constexpr std::string_view Kinds = "\"\\/bfnrt";
        constexpr std::u16string_view Units = u"\"\\/\b\f\n\r\t";
        if (const std::size_t index = Kinds.find(kind); kind != '\0' && index != std::string_view::npos)
            return Units[index];
        std::uint16_t unit = 0;
        const std::string_view digits = m_text.substr(std::min(m_at, m_text.size()), 4);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
        if (kind != 'u' || digits.size() != 4 || error != std::errc() || end != digits.data() + 4)
            return std::nullopt;
        m_at += 4;
        return static_cast<char16_t>(unit);
    }

    std::optional<EventDescriptor> number()
    {
        double number = 0;
        const char* start = m_text.data() + m_at;
        const auto [end, error] = std::from_chars(start, m_text.data() + m_text.size(), number);
        if (error != std::errc() || end == start || !std::isfinite(number))
            return std::nullopt;
        m_at += static_cast<std::size_t>(end - start);
        const bool whole = number == std::floor(number) && std::abs(number) < 2147483648.0;
        return whole ? EventDescriptor::withInt32(static_cast<std::int32_t>(number))
                     : EventDescriptor::withDouble(number);
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

} // namespace

std::string jsonFromDescriptor(const EventDescriptor& descriptor)
{
    std::string out;
    append(out, descriptor);
    return out;
}

std::optional<EventDescriptor> descriptorFromJson(std::string_view json) { return Reader(json).whole(); }

} // namespace caddis
