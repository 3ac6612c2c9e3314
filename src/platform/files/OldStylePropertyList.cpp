#include "platform/files/PropertyList.h"

#include "platform/base/HexDigit.h"
#include "platform/base/MutableString.h"
#include "platform/unicode/TextEncoding.h"

namespace caddis::PropertyList {

namespace {

bool isWhite(char16_t unit)
{
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r') || unit == u'\u2028' || unit == u'\u2029';
}

bool isUnquoted(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9')
        || std::u16string_view(u"_$/:.-").find(unit) != std::u16string_view::npos;
}

bool isOctal(char16_t unit) { return unit >= u'0' && unit <= u'7'; }
bool isHexadecimal(char16_t unit) { return hexDigit(unit) >= 0; }

class OldStyleReader {
public:
    explicit OldStyleReader(std::u16string_view text)
        : m_rest(text)
    {
    }

    std::optional<Value> read()
    {
        auto result = value(0);
        skipSpace();
        return m_rest.empty() ? std::move(result) : std::nullopt;
    }

private:
    bool take(char16_t unit)
    {
        skipSpace();
        if (!m_rest.starts_with(unit))
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    void skipSpace()
    {
        for (;;) {
            while (!m_rest.empty() && isWhite(m_rest.front()))
                m_rest.remove_prefix(1);
            if (m_rest.starts_with(u"//"))
                m_rest.remove_prefix(std::min(m_rest.find_first_of(u"\r\n\u2028\u2029"), m_rest.size()));
            else if (m_rest.starts_with(u"/*"))
                m_rest.remove_prefix(std::min(m_rest.find(u"*/", 2), m_rest.size() - 2) + 2);
            else
                return;
        }
    }

    std::optional<Value> value(int depth)
    {
        if (take(u'('))
            return array(depth + 1);
        if (take(u'{'))
            return dictionary(depth + 1);
        if (take(u'<'))
            return data();
        auto text = string();
        return text ? std::optional(Value(std::move(*text))) : std::nullopt;
    }

    std::optional<Value> array(int depth)
    {
        Array items;
        while (depth <= MostNested && !take(u')')) {
            auto item = value(depth);
            if (!item)
                return std::nullopt;
            items.push_back(std::move(*item));
            if (!take(u',') && !m_rest.starts_with(u')'))
                return std::nullopt;
        }
        return depth <= MostNested ? std::optional(Value(std::move(items))) : std::nullopt;
    }

    std::optional<Value> dictionary(int depth)
    {
        std::vector<Dictionary::Entry> entries;
        while (depth <= MostNested && !take(u'}')) {
            const auto key = string();
            if (!key)
                return std::nullopt;
            // "key;" alone stands for "key = key;".
            auto item = take(u'=') ? value(depth) : std::optional(Value(*key));
            if (!item || !take(u';'))
                return std::nullopt;
            entries.push_back({ *key, std::move(*item) });
        }
        return depth <= MostNested ? std::optional(Value(Dictionary::adopt(std::move(entries))))
                                   : std::nullopt;
    }

    // Pairs of hexadecimal digits, with white space anywhere.
    std::optional<Value> data()
    {
        std::vector<std::uint8_t> bytes;
        int high = -1;
        while (!take(u'>')) {
            const int digit = m_rest.empty() ? -1 : hexDigit(m_rest.front());
            if (digit < 0)
                return std::nullopt;
            m_rest.remove_prefix(1);
            if (high >= 0)
                bytes.push_back(static_cast<std::uint8_t>(high * 16 + digit));
            high = high < 0 ? digit : -1;
        }
        return high < 0 ? std::optional(Value(Data::adopt(std::move(bytes)))) : std::nullopt;
    }

    std::optional<String> string()
    {
        if (take(u'"'))
            return quoted(u'"');
        if (take(u'\''))
            return quoted(u'\'');
        std::size_t length = 0;
        while (length < m_rest.size() && isUnquoted(m_rest[length]))
            ++length;
        const String result(m_rest.substr(0, length));
        m_rest.remove_prefix(length);
        return length ? std::optional(result) : std::nullopt;
    }

    std::optional<String> quoted(char16_t quote)
    {
        MutableString result;
        for (;;) {
            const std::size_t length = m_rest.find_first_of(quote == u'"' ? u"\"\\" : u"'\\");
            if (length == m_rest.npos)
                return std::nullopt;
            result.append(m_rest.substr(0, length));
            const bool isEnd = m_rest[length] == quote;
            m_rest.remove_prefix(length + 1);
            if (isEnd)
                return std::move(result).take();
            if (m_rest.empty())
                return std::nullopt;
            appendEscape(result);
        }
    }

    // Behind a backslash; at least one unit is left.
    void appendEscape(MutableString& result)
    {
        if (isOctal(m_rest.front())) {
            // Kept on purpose: octal escapes are bytes of the encoding that this form is older than Unicode
            // in.
            const char byte = static_cast<char>(digits(3, isOctal, 8));
            result.append(*decodeText({ &byte, 1 }, NSStringEncoding::NEXTSTEP));
            return;
        }
        const char16_t unit = m_rest.front();
        m_rest.remove_prefix(1);
        constexpr std::u16string_view Letters = u"abfnrtv";
        constexpr std::u16string_view Meanings = u"\a\b\f\n\r\t\v";
        const std::size_t letter = Letters.find(unit);
        if (unit == u'U' && !m_rest.empty() && isHexadecimal(m_rest.front()))
            result.append(static_cast<char16_t>(digits(4, isHexadecimal, 16)));
        else
            result.append(letter == Letters.npos ? unit : Meanings[letter]);
    }

    unsigned digits(int most, bool (*isDigit)(char16_t), unsigned base)
    {
        unsigned number = 0;
        for (; most > 0 && !m_rest.empty() && isDigit(m_rest.front()); --most) {
            number = number * base + static_cast<unsigned>(hexDigit(m_rest.front()));
            m_rest.remove_prefix(1);
        }
        return number;
    }

    std::u16string_view m_rest;
};

} // namespace

std::optional<Value> readOldStyle(const String& text) { return OldStyleReader(text).read(); }

} // namespace caddis::PropertyList
