#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The tokens of CSS (CSS Syntax Module Level 3, section 4), cut from a text without copying it.
namespace caddis::css {

enum class TokenType : std::uint8_t {
    End,
    Ident,
    Function, ///< a name and its "("
    AtKeyword,
    Hash,
    String,
    BadString, ///< ended by a line break
    Url, ///< url(…) without quotes
    Number,
    Percentage,
    Dimension,
    Delimiter, ///< any other character, as text
    WhiteSpace, ///< comments count as part of it, and what hides sheets from old browsers
    Colon,
    Semicolon,
    Comma,
    OpenSquare,
    CloseSquare,
    OpenParenthesis,
    CloseParenthesis,
    OpenBrace,
    CloseBrace,
};

struct Token {
    TokenType type = TokenType::End;
    /// The name, the string's inside, the URL, the number's unit: as written, escapes and all.
    std::u16string_view text {};
    double number = 0;
    std::size_t begin = 0; ///< where it begins in the tokenizer's text
    std::size_t end = 0;

    bool is(TokenType wanted) const { return type == wanted; }
    bool isDelimiter(char16_t wanted) const { return type == TokenType::Delimiter && text[0] == wanted; }
    /// Whether it is this identifier, which is given in lower case.
    bool isIdent(std::u16string_view lowerCase) const;
};

/// Every character belongs to one token, so that reading ends after as many steps at most.
class Tokenizer {
public:
    explicit Tokenizer(std::u16string_view text)
        : m_text(text)
    {
    }

    Token next();
    /// The next one that is no white space.
    Token nextSolid();
    /// Goes back to where `token` began.
    void back(const Token& token) { m_position = token.begin; }

    std::size_t position() const { return m_position; }
    std::u16string_view text() const { return m_text; }
    std::u16string_view between(std::size_t begin, std::size_t end) const
    {
        return m_text.substr(begin, end - begin);
    }

    /// Behind an opening bracket: passes over all up to its partner, which is taken too, or the end. Gives
    /// what stands between.
    std::u16string_view skipBlock(TokenType opening);

private:
    char16_t at(std::size_t offset) const
    {
        return m_position + offset < m_text.size() ? m_text[m_position + offset] : u'\0';
    }
    bool startsName(std::size_t offset) const;
    bool startsNumber() const;
    std::u16string_view takeName();
    bool takeWhiteSpace();
    Token takeIdentLike();
    Token takeUrl();
    Token takeNumber();
    Token takeString(char16_t quote);
    Token takeSymbol();

    std::u16string_view m_text;
    std::size_t m_position = 0;
};

/// Names compare without case in ASCII; `lowerCase` is lower already.
bool equalsIgnoringCase(std::u16string_view text, std::u16string_view lowerCase);
std::u16string lowered(std::u16string_view text);
/// `text` with its escapes replaced by what they stand for.
std::u16string unescaped(std::u16string_view text);
std::u16string_view trimmed(std::u16string_view text);
/// -1 for what is no hexadecimal digit.
int hexDigit(char16_t character);
constexpr bool isSpace(char16_t character)
{
    return character == u' ' || character == u'\n' || character == u'\t' || character == u'\r'
        || character == u'\f';
}
/// A token that opens a block, the functions among them.
constexpr bool opensBlock(TokenType type)
{
    return type == TokenType::Function || type == TokenType::OpenParenthesis || type == TokenType::OpenBrace
        || type == TokenType::OpenSquare;
}

} // namespace caddis::css
