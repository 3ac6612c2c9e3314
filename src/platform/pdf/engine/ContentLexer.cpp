#include "platform/pdf/engine/ContentLexer.h"

#include "platform/base/HexDigit.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

namespace caddis::pdf {

namespace {

constexpr std::size_t MostOperands = 1'000'000;

enum Class : std::uint8_t { Regular, White, Delimiter, Numeric };

constexpr std::array<Class, 256> makeClasses()
{
    std::array<Class, 256> classes {};
    for (const char white : { '\0', '\t', '\n', '\f', '\r', ' ' })
        classes[static_cast<unsigned char>(white)] = White;
    for (const char delimiter : { '(', ')', '<', '>', '[', ']', '{', '}', '/', '%' })
        classes[static_cast<unsigned char>(delimiter)] = Delimiter;
    for (const char numeric : { '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', '+', '-', '.' })
        classes[static_cast<unsigned char>(numeric)] = Numeric;
    return classes;
}

constexpr auto classes = makeClasses();

Class classOf(char byte) { return classes[static_cast<unsigned char>(byte)]; }
bool endsWord(char byte) { return classOf(byte) == White || classOf(byte) == Delimiter; }

// EI may occur in the image's bytes by chance; what follows the real one is text again.
bool looksLikeContent(const char* at, const char* end)
{
    end = std::min(end, at + 12);
    return std::all_of(
        at, end, [](char byte) { return classOf(byte) == White || (byte >= 0x20 && byte < 0x7F); });
}

} // namespace

ContentLexer::ContentLexer(std::string content)
    : m_content(std::move(content))
    , m_at(m_content.data())
    , m_end(m_content.data() + m_content.size())
{
}

void ContentLexer::add(Operand::Kind kind, double number, std::string_view bytes)
{
    if (m_operands.size() < MostOperands)
        m_operands.push_back({ kind, number, bytes });
}

bool ContentLexer::next()
{
    m_operands.clear();
    m_operator = {};
    while (m_at < m_end) {
        const char first = *m_at;
        switch (classOf(first)) {
        case White:
            ++m_at;
            break;
        case Numeric:
            readNumber();
            break;
        case Regular:
            readWord();
            if (!m_operator.empty())
                return true;
            break;
        case Delimiter:
            ++m_at;
            if (first == '(')
                readLiteralString();
            else if (first == '/')
                readName();
            else if (first == '[')
                add(Operand::Kind::ArrayBegin);
            else if (first == ']')
                add(Operand::Kind::ArrayEnd);
            else if (first == '%')
                skipComment();
            else if (first == '<' || first == '>')
                readAngle(first);
            break;
        }
    }
    return false;
}

void ContentLexer::skipComment()
{
    m_at = std::find_if(m_at, m_end, [](char byte) { return byte == '\n' || byte == '\r'; });
}

void ContentLexer::readAngle(char first)
{
    if (m_at < m_end && *m_at == first) {
        ++m_at;
        add(first == '<' ? Operand::Kind::DictBegin : Operand::Kind::DictEnd);
    } else if (first == '<') {
        readHexString();
    }
}

void ContentLexer::readWord()
{
    const char* start = m_at;
    m_at = std::find_if(m_at, m_end, endsWord);
    const std::string_view word(start, static_cast<std::size_t>(m_at - start));
    if (word == "true" || word == "false" || word == "null")
        add(Operand::Kind::Other, 0, word);
    else
        m_operator = word;
}

// Broken numbers ("--5", "1.2.3", "0.0-35") keep what stands before the break and count as one.
void ContentLexer::readNumber()
{
    bool negative = false;
    for (; m_at < m_end && (*m_at == '-' || *m_at == '+'); ++m_at)
        negative |= *m_at == '-';
    double value = 0;
    for (; m_at < m_end && *m_at >= '0' && *m_at <= '9'; ++m_at)
        value = value * 10 + (*m_at - '0');
    if (m_at < m_end && *m_at == '.') {
        double place = 1;
        for (++m_at; m_at < m_end && *m_at >= '0' && *m_at <= '9'; ++m_at)
            value += (*m_at - '0') * (place *= 0.1);
    }
    while (m_at < m_end && classOf(*m_at) == Numeric)
        ++m_at;
    add(Operand::Kind::Number, negative ? -value : value);
}

void ContentLexer::readName()
{
    char* const start = m_at;
    char* out = start;
    while (m_at < m_end && !endsWord(*m_at)) {
        const int escaped = *m_at == '#' ? hexByte({ m_at + 1, m_end }) : -1;
        *out++ = escaped < 0 ? *m_at : static_cast<char>(escaped);
        m_at += escaped < 0 ? 1 : 3;
    }
    add(Operand::Kind::Name, 0, { start, static_cast<std::size_t>(out - start) });
}

// At the character behind a backslash.
char* ContentLexer::readEscape(char* out)
{
    static constexpr std::string_view letters = "nrtbf";
    static constexpr std::string_view meanings = "\n\r\t\b\f";
    const char escaped = *m_at++;
    if (const auto found = letters.find(escaped); found != letters.npos) {
        *out++ = meanings[found];
    } else if (escaped >= '0' && escaped <= '7') {
        int value = escaped - '0';
        for (int digits = 1; digits < 3 && m_at < m_end && *m_at >= '0' && *m_at <= '7'; ++digits)
            value = value * 8 + (*m_at++ - '0');
        *out++ = static_cast<char>(value);
    } else if (escaped == '\r') {
        m_at += m_at < m_end && *m_at == '\n';
    } else if (escaped != '\n') {
        *out++ = escaped;
    }
    return out;
}

void ContentLexer::readLiteralString()
{
    char* const start = m_at;
    char* out = start;
    for (std::size_t depth = 1; m_at < m_end;) {
        const char byte = *m_at++;
        depth += byte == '(';
        depth -= byte == ')';
        if (depth == 0)
            break;
        if (byte == '\\' && m_at < m_end)
            out = readEscape(out);
        else
            *out++ = byte;
    }
    add(Operand::Kind::String, 0, { start, static_cast<std::size_t>(out - start) });
}

void ContentLexer::readHexString()
{
    char* const start = m_at;
    char* out = start;
    int high = -1;
    for (; m_at < m_end && *m_at != '>'; ++m_at) {
        const int value = hexDigit(static_cast<unsigned char>(*m_at));
        if (value < 0)
            continue;
        if (high >= 0)
            *out++ = static_cast<char>(high * 16 + value);
        high = high < 0 ? value : -1;
    }
    if (high >= 0)
        *out++ = static_cast<char>(high * 16);
    m_at += m_at < m_end;
    add(Operand::Kind::String, 0, { start, static_cast<std::size_t>(out - start) });
}

void ContentLexer::skipInlineImage()
{
    while (m_end - m_at >= 3) {
        auto* const found
            = static_cast<char*>(memchr(m_at + 1, 'E', static_cast<std::size_t>(m_end - m_at - 2)));
        if (!found)
            break;
        m_at = found;
        if (found[1] == 'I' && classOf(found[-1]) == White && (m_end - found == 2 || endsWord(found[2]))
            && looksLikeContent(found + 2, m_end)) {
            m_at = found + 2;
            return;
        }
    }
    m_at = m_end;
}

} // namespace caddis::pdf
