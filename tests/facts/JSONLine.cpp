#include "facts/JSONLine.h"

#include <cstdio>

namespace caddis::facts {

namespace {

class Reader {
public:
    explicit Reader(std::u16string_view text)
        : m_text(text)
    {
    }

    // Skips blanks, then takes `expected` when it is next.
    bool take(char16_t expected)
    {
        while (!m_text.empty() && m_text.front() <= u' ')
            m_text.remove_prefix(1);
        if (!m_text.starts_with(expected))
            return false;
        m_text.remove_prefix(1);
        return true;
    }

    std::optional<String> string()
    {
        if (!take(u'"'))
            return std::nullopt;
        MutableString result;
        while (!m_text.empty()) {
            const char16_t unit = next();
            if (unit == u'"')
                return std::move(result).take();
            if (unit == u'\\' && m_text.empty())
                return std::nullopt;
            result.append(unit == u'\\' ? escaped() : unit);
        }
        return std::nullopt;
    }

private:
    char16_t next()
    {
        const char16_t unit = m_text.front();
        m_text.remove_prefix(1);
        return unit;
    }

    char16_t escaped()
    {
        constexpr std::u16string_view Letters = u"bfnrt";
        constexpr std::u16string_view Meanings = u"\b\f\n\r\t";
        const char16_t unit = next();
        if (unit == u'u') {
            const auto digits = String(m_text.substr(0, 4)).utf8();
            m_text.remove_prefix(std::min<std::size_t>(4, m_text.size()));
            return static_cast<char16_t>(std::stoul(digits, nullptr, 16));
        }
        const std::size_t index = Letters.find(unit);
        return index == Letters.npos ? unit : Meanings[index];
    }

    std::u16string_view m_text;
};

} // namespace

std::optional<std::map<String, String>> readObject(std::u16string_view line)
{
    Reader reader(line);
    std::map<String, String> members;
    if (!reader.take(u'{'))
        return std::nullopt;
    do {
        const auto key = reader.string();
        if (!key || !reader.take(u':'))
            return std::nullopt;
        const auto value = reader.string();
        if (!value)
            return std::nullopt;
        members.emplace(*key, *value);
    } while (reader.take(u','));
    return reader.take(u'}') ? std::optional(std::move(members)) : std::nullopt;
}

std::string quoted(std::u16string_view text)
{
    std::string result = "\"";
    for (const char16_t unit : text) {
        if (unit >= u' ' && unit < 0x7F && unit != u'"' && unit != u'\\') {
            result += static_cast<char>(unit);
            continue;
        }
        char escape[8] = {};
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
        result += escape;
    }
    return result + '"';
}

} // namespace caddis::facts
