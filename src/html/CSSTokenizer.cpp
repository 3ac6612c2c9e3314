#include "html/CSSTokenizer.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace caddis::css {

namespace {

constexpr std::size_t LongestNumber = 64; // What is longer goes on as the next one.

constexpr bool isDigit(char16_t character) { return character >= u'0' && character <= u'9'; }

constexpr bool isNameStart(char16_t character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z')
        || character == u'_' || character >= 0x80;
}

constexpr bool isNameCharacter(char16_t character)
{
    return isNameStart(character) || isDigit(character) || character == u'-';
}

constexpr char16_t lower(char16_t character)
{
    return character >= u'A' && character <= u'Z' ? static_cast<char16_t>(character | 0x20) : character;
}

void appendCharacter(std::u16string& text, std::uint32_t code)
{
    if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
        code = 0xFFFD;
    if (code < 0x10000) {
        text += static_cast<char16_t>(code);
    } else {
        text += static_cast<char16_t>(0xD7C0 + (code >> 10));
        text += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    }
}

// The length of "<!--" or "-->", which hide a sheet from browsers that know none.
std::size_t commentBracket(std::u16string_view text)
{
    constexpr std::u16string_view Opening = u"<!--";
    constexpr std::u16string_view Closing = u"-->";
    if (text.starts_with(Opening))
        return Opening.size();
    return text.starts_with(Closing) ? Closing.size() : 0;
}

// The character that ends a block opened by this token.
constexpr TokenType closing(TokenType opening)
{
    if (opening == TokenType::OpenBrace)
        return TokenType::CloseBrace;
    return opening == TokenType::OpenSquare ? TokenType::CloseSquare : TokenType::CloseParenthesis;
}

} // namespace

int hexDigit(char16_t character)
{
    if (isDigit(character))
        return character - u'0';
    const int letter = lower(character) - u'a';
    return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

bool equalsIgnoringCase(std::u16string_view text, std::u16string_view lowerCase)
{
    return text.size() == lowerCase.size()
        && std::equal(text.begin(), text.end(), lowerCase.begin(),
            [](char16_t left, char16_t right) { return lower(left) == right; });
}

std::u16string lowered(std::u16string_view text)
{
    std::u16string result(text);
    std::ranges::transform(result, result.begin(), lower);
    return result;
}

std::u16string_view trimmed(std::u16string_view text)
{
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

std::u16string unescaped(std::u16string_view text)
{
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != u'\\' || index + 1 == text.size()) {
            result += text[index];
            continue;
        }
        std::uint32_t code = 0;
        std::size_t digits = 0;
        while (digits < 6 && index + 1 < text.size() && hexDigit(text[index + 1]) >= 0) {
            code = code * 16 + static_cast<std::uint32_t>(hexDigit(text[++index]));
            ++digits;
        }
        if (digits) {
            appendCharacter(result, code);
            if (index + 1 < text.size() && isSpace(text[index + 1]))
                ++index;
        } else if (text[++index] != u'\n') {
            result += text[index];
        }
    }
    return result;
}

bool Token::isIdent(std::u16string_view lowerCase) const
{
    return type == TokenType::Ident && equalsIgnoringCase(text, lowerCase);
}

bool Tokenizer::startsName(std::size_t offset) const
{
    const char16_t first = at(offset);
    if (first == u'-')
        return isNameStart(at(offset + 1)) || at(offset + 1) == u'-'
            || (at(offset + 1) == u'\\' && at(offset + 2) != u'\n');
    return isNameStart(first) || (first == u'\\' && at(offset + 1) != u'\n');
}

bool Tokenizer::startsNumber() const
{
    const std::size_t sign = at(0) == u'+' || at(0) == u'-' ? 1 : 0;
    return isDigit(at(sign)) || (at(sign) == u'.' && isDigit(at(sign + 1)));
}

std::u16string_view Tokenizer::takeName()
{
    const std::size_t begin = m_position;
    while (m_position < m_text.size()) {
        if (m_text[m_position] == u'\\' && at(1) != u'\n')
            m_position += 2;
        else if (isNameCharacter(m_text[m_position]))
            ++m_position;
        else
            break;
    }
    m_position = std::min(m_position, m_text.size());
    return between(begin, m_position);
}

bool Tokenizer::takeWhiteSpace()
{
    const std::size_t begin = m_position;
    while (m_position < m_text.size()) {
        if (isSpace(m_text[m_position])) {
            ++m_position;
        } else if (m_text[m_position] == u'/' && at(1) == u'*') {
            const std::size_t end = m_text.find(u"*/", m_position + 2);
            m_position = end == m_text.npos ? m_text.size() : end + 2;
        } else if (const std::size_t bracket = commentBracket(m_text.substr(m_position))) {
            m_position += bracket;
        } else {
            break;
        }
    }
    return m_position > begin;
}

Token Tokenizer::takeIdentLike()
{
    const std::u16string_view name = takeName();
    if (at(0) != u'(' || m_position == m_text.size())
        return { .type = TokenType::Ident, .text = name };
    ++m_position;
    if (!equalsIgnoringCase(name, u"url"))
        return { .type = TokenType::Function, .text = name };
    const std::size_t inside = m_position;
    takeWhiteSpace();
    if (at(0) == u'"' || at(0) == u'\'') {
        m_position = inside;
        return { .type = TokenType::Function, .text = name };
    }
    m_position = inside;
    return takeUrl();
}

Token Tokenizer::takeUrl()
{
    const std::size_t begin = m_position;
    while (m_position < m_text.size() && m_text[m_position] != u')')
        m_position += m_text[m_position] == u'\\' ? 2 : 1;
    m_position = std::min(m_position, m_text.size());
    const Token token { TokenType::Url, trimmed(between(begin, m_position)) };
    if (m_position < m_text.size())
        ++m_position;
    return token;
}

Token Tokenizer::takeNumber()
{
    if (at(0) == u'+')
        ++m_position;
    Token token;
    token.type = TokenType::Number;
    std::array<char, LongestNumber> digits {};
    const std::u16string_view rest = m_text.substr(m_position, digits.size());
    std::ranges::transform(
        rest, digits.begin(), [](char16_t unit) { return unit < 0x80 ? static_cast<char>(unit) : ' '; });
    const auto read = std::from_chars(digits.data(), digits.data() + rest.size(), token.number);
    m_position += static_cast<std::size_t>(read.ptr - digits.data());
    if (read.ec != std::errc())
        token.number = 0;
    if (at(0) == u'%') {
        ++m_position;
        token.type = TokenType::Percentage;
    } else if (startsName(0)) {
        token.type = TokenType::Dimension;
        token.text = takeName();
    }
    return token;
}

Token Tokenizer::takeString(char16_t quote)
{
    const std::size_t begin = ++m_position;
    while (m_position < m_text.size() && m_text[m_position] != quote) {
        if (m_text[m_position] == u'\n')
            return { TokenType::BadString, between(begin, m_position) };
        m_position += m_text[m_position] == u'\\' ? 2 : 1;
    }
    m_position = std::min(m_position, m_text.size());
    const Token token { TokenType::String, between(begin, m_position) };
    if (m_position < m_text.size())
        ++m_position;
    return token;
}

Token Tokenizer::takeSymbol()
{
    constexpr std::u16string_view Symbols = u":;,[](){}";
    constexpr TokenType types[] = { TokenType::Colon, TokenType::Semicolon, TokenType::Comma,
        TokenType::OpenSquare, TokenType::CloseSquare, TokenType::OpenParenthesis,
        TokenType::CloseParenthesis, TokenType::OpenBrace, TokenType::CloseBrace };
    const std::u16string_view text = m_text.substr(m_position++, 1);
    const std::size_t symbol = Symbols.find(text[0]);
    return { symbol == Symbols.npos ? TokenType::Delimiter : types[symbol], text };
}

Token Tokenizer::next()
{
    const std::size_t begin = m_position;
    Token token;
    const char16_t first = at(0);
    if (m_position == m_text.size()) {
        token = {};
    } else if (takeWhiteSpace()) {
        token = { TokenType::WhiteSpace, u" " };
    } else if (startsNumber()) {
        token = takeNumber();
    } else if (startsName(0)) {
        token = takeIdentLike();
    } else if (first == u'"' || first == u'\'') {
        token = takeString(first);
    } else if (first == u'#' && (isNameCharacter(at(1)) || at(1) == u'\\')) {
        ++m_position;
        token = { TokenType::Hash, takeName() };
    } else if (first == u'@' && startsName(1)) {
        ++m_position;
        token = { TokenType::AtKeyword, takeName() };
    } else {
        token = takeSymbol();
    }
    token.begin = begin;
    token.end = m_position;
    return token;
}

Token Tokenizer::nextSolid()
{
    Token token = next();
    if (token.is(TokenType::WhiteSpace))
        token = next();
    return token;
}

std::u16string_view Tokenizer::skipBlock(TokenType opening)
{
    std::u16string open(1, static_cast<char16_t>(closing(opening)));
    const std::size_t begin = m_position;
    for (Token token = next(); !token.is(TokenType::End); token = next()) {
        if (opensBlock(token.type))
            open += static_cast<char16_t>(closing(token.type));
        else if (static_cast<char16_t>(token.type) == open.back())
            open.pop_back();
        if (open.empty())
            return between(begin, token.begin);
    }
    return between(begin, m_position);
}

} // namespace caddis::css
