#include "platform/script/applescript/Parser.h"

#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/ParserNesting.h"

namespace caddis::applescript {

namespace {

// What a unit of a source costs as tokens and tree at most; so that a vast one is refused before it is read.
constexpr std::size_t BytesPerUnit = 128;

const String& affordable(const String& source)
{
    Heap::current().require(source.length() * BytesPerUnit);
    return source;
}

} // namespace

Parser::Parser(const String& source, ApplicationTable& applications)
    : m_source(affordable(source))
    , m_tokens(tokensOf(source))
    , m_applicationTable(applications)
    , m_program(std::make_shared<Program>())
{
}

std::shared_ptr<const Program> Parser::parse()
{
    collectNames();
    m_program->source = m_source;
    parseScriptBody(m_program->script);
    if (!at(TokenType::EndOfText))
        failExpected(String(u"end of script"));
    m_program->script.bodyRange = { 0, m_source.length() };
    m_scopes.resolveAll();
    return std::move(m_program);
}

const Token& Parser::peek(std::size_t ahead) const
{
    return m_tokens[std::min(m_at + ahead, m_tokens.size() - 1)];
}

const Token& Parser::next()
{
    const Token& token = peek();
    if (m_at < m_tokens.size() - 1)
        ++m_at;
    return token;
}

bool Parser::accept(TokenType type)
{
    if (!at(type))
        return false;
    next();
    return true;
}

bool Parser::accept(Symbol word)
{
    if (!at(word))
        return false;
    next();
    return true;
}

void Parser::expect(TokenType type, const char16_t* what)
{
    if (!accept(type))
        failExpected(String(std::u16string_view(what)));
}

void Parser::expect(Symbol word)
{
    if (!accept(word))
        failExpected(format(u"“%@”", sourceName(word)));
}

void Parser::expectEndOfStatement()
{
    if (at(TokenType::EndOfText))
        return;
    expect(TokenType::EndOfLine, u"end of line");
}

void Parser::skipLine()
{
    while (!at(TokenType::EndOfLine) && !at(TokenType::EndOfText))
        next();
    accept(TokenType::EndOfLine);
}

void Parser::skipNewlines()
{
    while (accept(TokenType::EndOfLine)) { }
}

Range Parser::rangeFrom(std::size_t firstToken) const
{
    const std::size_t start = m_tokens[firstToken].range.location;
    const std::size_t last = m_at > firstToken ? m_at - 1 : firstToken;
    return { start, m_tokens[last].range.end() - start };
}

std::vector<Symbol> Parser::upcomingWords() const
{
    std::vector<Symbol> words;
    for (std::size_t ahead = 0; ahead < LongestPhrase && peek(ahead).is(TokenType::Word); ++ahead)
        words.push_back(peek(ahead).symbol);
    return words;
}

String Parser::describe(const Token& token) const
{
    switch (token.type) {
    case TokenType::EndOfLine:
        return String(u"end of line");
    case TokenType::EndOfText:
        return String(u"end of script");
    case TokenType::Integer:
    case TokenType::Real:
        return String(u"number");
    case TokenType::String:
        return String(u"“\"”");
    default:
        return format(u"“%@”", m_source.substring(token.range));
    }
}

void Parser::failExpected(const String& what) const
{
    Failure failure;
    failure.number = static_cast<int>(ScriptErrorNumber::UnexpectedToken);
    failure.message = format(u"Expected %@ but found %@.", what, describe(peek()));
    failure.range = peek().range;
    throw Failure(failure);
}

// A call without parentheses looks like any two words; only the handlers' heads tell. An application that is
// named at the end of a line gives the words before it their meaning.
void Parser::collectNames()
{
    bool startsLine = true;
    const Symbol app = symbolOfPlainName(u"app");
    for (std::size_t index = 0; index + 2 < m_tokens.size(); ++index) {
        const Token& token = m_tokens[index];
        const Token& name = m_tokens[index + 1];
        const bool isHead = startsLine && (token.is(Symbol::On) || token.is(Symbol::To))
            && (name.is(TokenType::Word) || name.is(TokenType::BarredName)) && !name.is(Symbol::Error);
        const TokenType after = m_tokens[index + 2].type;
        const bool isLabelled = after == TokenType::Word || after == TokenType::BarredName
            || after == TokenType::LeftBrace || after == TokenType::EndOfLine;
        if (isHead)
            m_handlerNames.insert(name.symbol);
        if (isHead && isLabelled && !(kindsOf(name.symbol) & ReservedWord) && !name.is(Symbol::Run))
            m_labelledHandlers.insert(name.symbol);
        startsLine = token.is(TokenType::EndOfLine);
        if (token.is(Symbol::Application) || token.is(app))
            m_applicationNames.push_back(index);
    }
}

bool isPreposition(Symbol word)
{
    using enum Symbol;
    switch (word) {
    case About:
    case Above:
    case After:
    case Against:
    case Around:
    case At:
    case Before:
    case Below:
    case Beneath:
    case Beside:
    case Between:
    case By:
    case For:
    case From:
    case Into:
    case On:
    case Onto:
    case Over:
    case Since:
    case Thru:
    case Through:
    case To:
    case Under:
        return true;
    default:
        return false;
    }
}

std::shared_ptr<const Program> parseScript(const String& source, ApplicationTable& applications)
{
    return Parser(source, applications).parse();
}

} // namespace caddis::applescript
