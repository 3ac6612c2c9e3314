#include "platform/richtext/RTFTokens.h"

#include <algorithm>
#include <array>
#include <limits>

namespace caddis::rtf {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Which bytes are text wherever they stand.
constexpr std::array<bool, 256> isPlain = [] {
    std::array<bool, 256> plain {};
    plain.fill(true);
    for (const char special : { '\\', '{', '}', '\n', '\r', '\0' })
        plain[static_cast<unsigned char>(special)] = false;
    return plain;
}();

int hexValue(char c)
{
    if (isDigit(c))
        return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

Token Tokens::next()
{
    while (!m_rest.empty() && (m_rest[0] == '\n' || m_rest[0] == '\r' || m_rest[0] == '\0'))
        m_rest.remove_prefix(1);
    if (m_rest.empty())
        return {};
    const char first = m_rest[0];
    if (first == '\\')
        return control();
    if (first != '{' && first != '}')
        return text();
    m_rest.remove_prefix(1);
    return { first == '{' ? Token::Kind::Open : Token::Kind::Close, {}, first, {}, false };
}

Token Tokens::text()
{
    std::size_t end = 0;
    unsigned char all = 0;
    while (end < m_rest.size() && isPlain[static_cast<unsigned char>(m_rest[end])])
        all |= static_cast<unsigned char>(m_rest[end++]);
    const Token token { Token::Kind::Text, m_rest.substr(0, end), 0, {}, all < 0x80 };
    m_rest.remove_prefix(end);
    return token;
}

Token Tokens::control()
{
    m_rest.remove_prefix(1);
    if (m_rest.empty())
        return {};
    if (isLetter(m_rest[0]))
        return word();
    const char symbol = m_rest[0];
    m_rest.remove_prefix(1);
    if (symbol == '\r' && m_rest.starts_with('\n'))
        m_rest.remove_prefix(1);
    if (symbol != '\'')
        return { Token::Kind::Symbol, {}, symbol, {}, false };
    const int high = m_rest.size() >= 2 ? hexValue(m_rest[0]) : -1;
    const int low = high >= 0 ? hexValue(m_rest[1]) : -1;
    if (low < 0)
        return { Token::Kind::Symbol, {}, symbol, {}, false };
    m_rest.remove_prefix(2);
    return { Token::Kind::Byte, {}, static_cast<char>(high << 4 | low), {}, false };
}

Token Tokens::word()
{
    std::size_t end = 1;
    while (end < m_rest.size() && isLetter(m_rest[end]))
        ++end;
    Token token { Token::Kind::Word, m_rest.substr(0, end), 0, {}, false };
    m_rest.remove_prefix(end);
    token.number = number();
    if (m_rest.starts_with(' '))
        m_rest.remove_prefix(1);
    return token;
}

std::optional<std::int32_t> Tokens::number()
{
    const bool isNegative = m_rest.size() >= 2 && m_rest[0] == '-' && isDigit(m_rest[1]);
    if (isNegative)
        m_rest.remove_prefix(1);
    if (m_rest.empty() || !isDigit(m_rest[0]))
        return std::nullopt;
    std::int64_t value = 0;
    for (; !m_rest.empty() && isDigit(m_rest[0]); m_rest.remove_prefix(1))
        value = std::min<std::int64_t>(
            value * 10 + (m_rest[0] - '0'), std::numeric_limits<std::int32_t>::max());
    return static_cast<std::int32_t>(isNegative ? -value : value);
}

} // namespace caddis::rtf
