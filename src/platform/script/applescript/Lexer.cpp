#include "platform/script/applescript/Lexer.h"

#include "platform/script/applescript/Failure.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <unicode/uchar.h>

namespace caddis::applescript {

namespace {

constexpr char16_t Continuation = u'¬';

bool isNewline(char16_t unit) { return unit == u'\n' || unit == u'\r' || unit == 0x2028 || unit == 0x2029; }
bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool isNameStart(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_'
        || (unit >= 0x80 && unit != u'ƒ' && u_isalpha(unit));
}
bool isNamePart(char16_t unit) { return isNameStart(unit) || isDigit(unit); }
bool isBlank(char16_t unit)
{
    return unit == u' ' || unit == u'\t' || unit == 0xA0 || unit == 0x3000 || unit == 0xFEFF || unit == 0x0B
        || unit == 0x0C;
}

class Lexer {
public:
    explicit Lexer(const String& source)
        : m_text(source.view())
    {
        m_tokens.reserve(m_text.size() / 4 + 1);
    }

    std::vector<Token> run()
    {
        skipHashBang();
        while (m_at < m_text.size())
            next();
        add(TokenType::EndOfLine, m_at);
        add(TokenType::EndOfText, m_at);
        return std::move(m_tokens);
    }

private:
    char16_t peek(std::size_t ahead = 0) const
    {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : u'\0';
    }
    bool startsWith(std::u16string_view text) const { return m_text.substr(m_at).starts_with(text); }

    [[noreturn]] void failAt(std::size_t start, const String& message) const
    {
        Failure failure;
        failure.number = static_cast<int>(ScriptErrorNumber::UnexpectedToken);
        failure.message = message;
        failure.range = { start, std::min(m_at, m_text.size()) - start };
        throw Failure(failure);
    }

    Token& add(TokenType type, std::size_t start)
    {
        Token token;
        token.type = type;
        token.range = { start, m_at - start };
        token.spaceBefore = start > 0 && (isBlank(m_text[start - 1]) || isNewline(m_text[start - 1]));
        m_tokens.push_back(std::move(token));
        return m_tokens.back();
    }

    void skipHashBang()
    {
        if (startsWith(u"#!"))
            skipLine();
    }
    void skipLine()
    {
        while (m_at < m_text.size() && !isNewline(m_text[m_at]))
            ++m_at;
    }

    void next()
    {
        const char16_t unit = m_text[m_at];
        if (isBlank(unit))
            ++m_at;
        else if (isNewline(unit))
            newline();
        else if (unit == Continuation)
            continuation();
        else if (unit == u'#' || startsWith(u"--"))
            skipLine();
        else if (startsWith(u"(*"))
            blockComment();
        else if (isDigit(unit) || (unit == u'.' && isDigit(peek(1))))
            number();
        else if (isNameStart(unit))
            name();
        else if (unit == u'"')
            string();
        else if (unit == u'|')
            barredName();
        else if (unit == u'«' || startsWith(u"<<"))
            raw();
        else
            punctuation();
    }

    void newline()
    {
        const std::size_t start = m_at++;
        if (m_text[start] == u'\r' && peek() == u'\n')
            ++m_at;
        if (m_tokens.empty() || !m_tokens.back().is(TokenType::EndOfLine))
            add(TokenType::EndOfLine, start);
    }

    // The mark joins the next line to this one; only blanks and a comment may stand behind it.
    void continuation()
    {
        const std::size_t start = m_at++;
        while (isBlank(peek()))
            ++m_at;
        if (startsWith(u"--") || peek() == u'#')
            skipLine();
        if (m_at >= m_text.size())
            return;
        if (!isNewline(peek()))
            failAt(start, String(u"Expected end of line after “¬”."));
        const char16_t first = m_text[m_at++];
        if (first == u'\r' && peek() == u'\n')
            ++m_at;
    }

    // Comments nest.
    void blockComment()
    {
        const std::size_t start = m_at;
        std::size_t depth = 0;
        do {
            if (m_at >= m_text.size())
                failAt(start, String(u"Expected “*)” but found end of script."));
            if (startsWith(u"(*")) {
                ++depth;
                m_at += 2;
            } else if (startsWith(u"*)")) {
                --depth;
                m_at += 2;
            } else {
                ++m_at;
            }
        } while (depth);
    }

    void number()
    {
        const std::size_t start = m_at;
        bool whole = true;
        while (isDigit(peek()))
            ++m_at;
        if (peek() == u'.' && (isDigit(peek(1)) || !isNameStart(peek(1)))) {
            whole = false;
            ++m_at;
            while (isDigit(peek()))
                ++m_at;
        }
        const std::size_t sign = peek(1) == u'+' || peek(1) == u'-' ? 1 : 0;
        if ((peek() == u'e' || peek() == u'E') && isDigit(peek(1 + sign))) {
            whole = false;
            m_at += 1 + sign;
            while (isDigit(peek()))
                ++m_at;
        }
        const double value = valueOf(start);
        const bool ordinal = whole && ordinalSuffix();
        const bool fits = whole && value <= static_cast<double>(Datum::MaximumInteger);
        add(ordinal ? TokenType::Ordinal : fits ? TokenType::Integer : TokenType::Real, start).number = value;
    }
    double valueOf(std::size_t start) const
    {
        const std::string digits = utf16ToAscii(m_text.substr(start, m_at - start));
        double value = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (error == std::errc::result_out_of_range) {
            Failure failure;
            failure.number = static_cast<int>(ScriptErrorNumber::NumberTooLarge);
            failure.message = String(u"The number is too large.");
            failure.range = { start, m_at - start };
            throw Failure(failure);
        }
        return value;
    }
    static std::string utf16ToAscii(std::u16string_view digits)
    {
        std::string text;
        for (const char16_t unit : digits)
            text += static_cast<char>(unit);
        return text;
    }
    bool ordinalSuffix()
    {
        if (isNamePart(peek(2)))
            return false;
        constexpr std::u16string_view Suffixes[] = { u"st", u"nd", u"rd", u"th" };
        const bool found
            = std::ranges::any_of(Suffixes, [&](std::u16string_view suffix) { return startsWith(suffix); });
        m_at += found ? 2 : 0;
        return found;
    }

    void name()
    {
        const std::size_t start = m_at;
        while (m_at < m_text.size() && isNamePart(m_text[m_at]))
            ++m_at;
        // "isn't", "doesn't" and "don't" are words of the language.
        if (peek() == u'\'' || peek() == u'’') {
            const std::u16string_view word = m_text.substr(start, m_at - start);
            const bool negation = word.ends_with(u'n') && (peek(1) == u't') && !isNamePart(peek(2));
            if (negation) {
                m_at += 2;
                std::u16string plain(word);
                plain += u"'t";
                add(TokenType::Word, start).symbol = symbolOfPlainName(plain);
                return;
            }
        }
        add(TokenType::Word, start).symbol = symbolOfPlainName(m_text.substr(start, m_at - start));
    }

    void barredName()
    {
        const std::size_t start = m_at++;
        const std::size_t end = m_text.find(u'|', m_at);
        if (end == std::u16string_view::npos
            || m_text.substr(m_at, end - m_at).find_first_of(u"\r\n") != std::u16string_view::npos)
            failAt(start, String(u"Expected “|” but found end of line."));
        const Symbol symbol = symbolOfUserName(m_text.substr(m_at, end - m_at));
        m_at = end + 1;
        add(TokenType::BarredName, start).symbol = symbol;
    }
    void string()
    {
        const std::size_t start = m_at++;
        MutableString text;
        while (true) {
            if (m_at >= m_text.size())
                failAt(start, String(u"Expected “\"” but found end of script."));
            const char16_t unit = m_text[m_at++];
            if (unit == u'"')
                break;
            text.append(unit == u'\\' && m_at < m_text.size() ? escape() : unit);
        }
        String value = std::move(text).take();
        add(TokenType::String, start).text = value;
    }
    char16_t escape()
    {
        const char16_t unit = m_text[m_at++];
        switch (unit) {
        case u'n':
            return u'\n';
        case u'r':
            return u'\r';
        case u't':
            return u'\t';
        case u'"':
        case u'\\':
            return unit;
        default:
            failAt(m_at - 2, String(u"Expected “\"” but found unknown token."));
        }
    }

    void raw()
    {
        const std::size_t start = m_at;
        const bool ascii = m_text[m_at] == u'<';
        m_at += ascii ? 2 : 1;
        const std::size_t end = m_text.find(ascii ? u">>" : u"»", m_at);
        if (end == std::u16string_view::npos)
            failAt(start, String(u"Expected “»” but found end of script."));
        const String text(m_text.substr(m_at, end - m_at));
        m_at = end + (ascii ? 2 : 1);
        add(TokenType::Raw, start).text = text;
    }

    void punctuation()
    {
        struct Mark {
            std::u16string_view text;
            TokenType type;
        };
        using T = TokenType;
        static constexpr Mark marks[] = { { u"'s", T::Possessive }, { u"’s", T::Possessive },
            { u"<=", T::LessOrEqual }, { u">=", T::GreaterOrEqual }, { u"/=", T::NotEqual },
            { u"(", T::LeftParenthesis }, { u")", T::RightParenthesis }, { u"{", T::LeftBrace },
            { u"}", T::RightBrace }, { u"[", T::LeftBrace }, { u"]", T::RightBrace }, { u",", T::Comma },
            { u":", T::Colon }, { u"+", T::Plus }, { u"-", T::Minus }, { u"−", T::Minus }, { u"*", T::Times },
            { u"/", T::Divide }, { u"÷", T::Divide }, { u"^", T::Power }, { u"&", T::Ampersand },
            { u"=", T::Equal }, { u"≠", T::NotEqual }, { u"<", T::Less }, { u"≤", T::LessOrEqual },
            { u">", T::Greater }, { u"≥", T::GreaterOrEqual } };
        for (const Mark& mark : marks) {
            if (startsWith(mark.text)) {
                const std::size_t start = m_at;
                m_at += mark.text.size();
                add(mark.type, start);
                return;
            }
        }
        const std::size_t start = m_at++;
        failAt(start, String(u"Expected expression but found unknown token."));
    }

    std::u16string_view m_text;
    std::size_t m_at = 0;
    std::vector<Token> m_tokens;
};

} // namespace

std::vector<Token> tokensOf(const String& source) { return Lexer(source).run(); }

} // namespace caddis::applescript
