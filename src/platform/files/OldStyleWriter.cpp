#include "platform/files/PropertyList.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace caddis::PropertyList {

namespace {

constexpr std::string_view HexadecimalDigits = "0123456789abcdef";

bool isPlain(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9')
        || unit == u'_';
}

class OldStyleWriter {
public:
    std::string take() { return std::move(m_out); }

    void write(const Value& value)
    {
        std::visit([this](const auto& content) { put(content); }, value.variant());
    }

private:
    void put(Null) { m_out += "\"<null>\""; }
    void put(bool yes) { m_out += yes ? '1' : '0'; }
    void put(std::int64_t number) { putNumber(number); }
    void put(std::uint64_t number) { putNumber(number); }
    void put(float number) { putReal(number); }
    void put(double number) { putReal(number); }
    void put(const Date& date) { put(date.description()); }
    void put(const URL& url) { put(url.absoluteString()); }

    void put(const String& text)
    {
        if (!text.isEmpty() && std::all_of(text.begin(), text.end(), isPlain)) {
            m_out += text.utf8();
            return;
        }
        m_out += '"';
        for (const char16_t unit : text)
            putQuoted(unit);
        m_out += '"';
    }

    void put(const Data& data)
    {
        m_out += '<';
        for (const std::uint8_t byte : data.span())
            (m_out += HexadecimalDigits[byte >> 4U]) += HexadecimalDigits[byte & 15U];
        m_out += '>';
    }

    void put(const Array& items)
    {
        m_out += '(';
        ++m_level;
        const char* separator = "";
        for (const Value& item : items) {
            m_out += separator;
            startLine();
            write(item);
            separator = ",";
        }
        --m_level;
        startLine();
        m_out += ')';
    }

    void put(const Dictionary& dictionary)
    {
        m_out += '{';
        ++m_level;
        for (const auto& [key, value] : dictionary) {
            startLine();
            put(key);
            m_out += " = ";
            write(value);
            m_out += ';';
        }
        --m_level;
        startLine();
        m_out += '}';
    }

    template <typename Number> void putNumber(Number number)
    {
        std::array<char, 32> digits {};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
        m_out.append(digits.data(), end.ptr);
    }

    // Quoted where a sign or a point could not stand in a plain word.
    template <typename Number> void putReal(Number number)
    {
        m_out += '"';
        putNumber(number);
        m_out += '"';
    }

    void putQuoted(char16_t unit)
    {
        if (unit == u'"' || unit == u'\\')
            (m_out += '\\') += static_cast<char>(unit);
        else if (unit == u'\n')
            m_out += "\\n";
        else if (unit >= u' ' && unit < 0x7F)
            m_out += static_cast<char>(unit);
        else
            putEscaped(unit);
    }

    void putEscaped(char16_t unit)
    {
        m_out += "\\U";
        for (int shift = 12; shift >= 0; shift -= 4)
            m_out += HexadecimalDigits[unsigned(unit) >> unsigned(shift) & 15U];
    }

    void startLine() { m_out.append("\n").append(4 * m_level, ' '); }

    std::string m_out;
    std::size_t m_level = 0;
};

} // namespace

std::string writeOldStyle(const Value& value)
{
    OldStyleWriter writer;
    writer.write(value);
    return writer.take();
}

} // namespace caddis::PropertyList
