#include "platform/files/PropertyList.h"

#include "platform/base/Base64.h"
#include "platform/base/MutableString.h"
#include "platform/dates/IsoDate.h"
#include "platform/xml/XMLParser.h"

#include <algorithm>
#include <charconv>

namespace caddis::PropertyList {

namespace {

template <typename Number> std::optional<Number> number(std::string_view text, int base = 10)
{
    Number result {};
    std::from_chars_result end {};
    if constexpr (std::is_floating_point_v<Number>)
        end = std::from_chars(text.data(), text.data() + text.size(), result);
    else
        end = std::from_chars(text.data(), text.data() + text.size(), result, base);
    const bool isWhole = end.ec == std::errc() && end.ptr == text.data() + text.size();
    return isWhole ? std::optional(result) : std::nullopt;
}

std::string trimmed(const String& text)
{
    const std::string bytes = text.utf8();
    const auto isWhite = [](char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); };
    const auto first = std::find_if_not(bytes.begin(), bytes.end(), isWhite);
    const auto last = std::find_if_not(bytes.rbegin(), bytes.rend(), isWhite).base();
    return first < last ? std::string(first, last) : std::string();
}

// Decimal, or hexadecimal behind "0x".
std::optional<Value> integer(const String& text)
{
    std::string digits = trimmed(text);
    const bool isNegative = digits.starts_with('-');
    if (isNegative || digits.starts_with('+'))
        digits.erase(0, 1);
    const bool isHexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    const auto magnitude
        = number<std::uint64_t>(isHexadecimal ? digits.substr(2) : digits, isHexadecimal ? 16 : 10);
    if (!magnitude)
        return std::nullopt;
    if (!isNegative)
        return Value(*magnitude);
    constexpr std::uint64_t Least = std::uint64_t(1) << 63U;
    return *magnitude <= Least ? std::optional(Value(static_cast<std::int64_t>(-*magnitude))) : std::nullopt;
}

std::optional<Value> real(const String& text)
{
    std::string digits = trimmed(text);
    if (digits.starts_with('+'))
        digits.erase(0, 1);
    const auto result = number<double>(digits);
    return result ? std::optional(Value(*result)) : std::nullopt;
}

template <typename T> std::optional<Value> valueOf(const std::optional<T>& found)
{
    return found ? std::optional(Value(*found)) : std::nullopt;
}

// The value of an element without children; nil for another element or a text that is none of its kind.
std::optional<Value> scalar(std::string_view element, const String& text)
{
    if (element == "string")
        return Value(text);
    if (element == "integer")
        return integer(text);
    if (element == "real")
        return real(text);
    if (element == "true" || element == "false")
        return Value(element == "true");
    if (element == "data")
        return valueOf(dataFromBase64(text));
    if (element == "date")
        return valueOf(readIsoDate(String::fromUtf8(trimmed(text))));
    return std::nullopt;
}

class XMLReader : public XMLParserDelegate {
public:
    std::optional<Value> take() { return m_failed ? std::nullopt : std::move(m_result); }

    void didStartElement(std::string_view name, const XMLAttributes&) override
    {
        m_text.clear();
        if (name == "dict" || name == "array")
            m_open.push_back({ name == "dict", std::nullopt, {}, {} });
        m_failed = m_failed || m_open.size() > MostNested;
    }

    void foundCharacters(const String& characters) override { m_text.append(characters); }

    void didEndElement(std::string_view name) override
    {
        if (m_failed || name == "plist")
            return;
        if (name == "dict" || name == "array") {
            endContainer();
            return;
        }
        const String text(m_text.view());
        m_text.clear();
        if (name == "key") {
            endKey(text);
            return;
        }
        auto value = scalar(name, text);
        m_failed = !value;
        if (value)
            add(std::move(*value));
    }

private:
    struct Container {
        bool isDictionary;
        std::optional<String> key;
        std::vector<Dictionary::Entry> entries;
        Array items;
    };

    void endKey(const String& text)
    {
        m_failed = m_open.empty() || !m_open.back().isDictionary || m_open.back().key;
        if (!m_failed)
            m_open.back().key = text;
    }

    void endContainer()
    {
        Container container = std::move(m_open.back());
        m_open.pop_back();
        m_failed = container.key.has_value();
        if (container.isDictionary)
            add(Dictionary::adopt(std::move(container.entries)));
        else
            add(std::move(container.items));
    }

    void add(Value value)
    {
        if (m_open.empty()) {
            m_failed = m_failed || m_result;
            m_result = std::move(value);
        } else if (!m_open.back().isDictionary) {
            m_open.back().items.push_back(std::move(value));
        } else if (m_open.back().key) {
            m_open.back().entries.push_back({ *m_open.back().key, std::move(value) });
            m_open.back().key.reset();
        } else {
            m_failed = true;
        }
    }

    MutableString m_text;
    std::vector<Container> m_open;
    std::optional<Value> m_result;
    bool m_failed = false;
};

} // namespace

std::optional<Value> readXML(const Data& data)
{
    XMLReader reader;
    return XMLParser::parse(data, reader) ? reader.take() : std::nullopt;
}

} // namespace caddis::PropertyList
