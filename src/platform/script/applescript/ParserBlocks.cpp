#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/TextComparison.h"

// Statements around other statements: considering and ignoring, with timeout.
namespace caddis::applescript {

namespace {

// Nothing for a term that is no attribute; applications' responses are an attribute that changes nothing
// here.
std::optional<unsigned> attributeNamed(Symbol name)
{
    static constexpr std::pair<Symbol, unsigned> attributes[] = {
        { Symbol::Case, ConsiderCase },
        { Symbol::Diacriticals, ConsiderDiacriticals },
        { Symbol::Expansion, ConsiderExpansion },
        { Symbol::Hyphens, ConsiderHyphens },
        { Symbol::Punctuation, ConsiderPunctuation },
        { Symbol::WhiteSpace, ConsiderWhiteSpace },
        { Symbol::NumericStrings, ConsiderNumericStrings },
        { Symbol::ApplicationResponses, 0 },
    };
    for (const auto& [term, attribute] : attributes) {
        if (term == name)
            return attribute;
    }
    return std::nullopt;
}

} // namespace

unsigned Parser::parseAttributeList()
{
    unsigned attributes = 0;
    while (true) {
        const TermMatch term = termHere();
        const auto attribute = attributeNamed(term.symbol);
        if (!attribute)
            failExpected(String(u"“case” or another attribute"));
        attributes |= *attribute;
        m_at += term.words;
        accept(TokenType::Comma);
        accept(Symbol::And);
        if (at(TokenType::EndOfLine) || at(Symbol::But))
            return attributes;
    }
}

std::unique_ptr<Statement> Parser::parseAttributes(bool considers)
{
    auto statement = std::make_unique<AttributesStatement>(peek().range);
    next();
    (considers ? statement->considered : statement->ignored) = parseAttributeList();
    if (accept(Symbol::But)) {
        expect(considers ? Symbol::Ignoring : Symbol::Considering);
        (considers ? statement->ignored : statement->considered) = parseAttributeList();
    }
    expectEndOfStatement();
    statement->body = parseBlockUntilEnd();
    return statement;
}

std::unique_ptr<Statement> Parser::parseTimeout()
{
    auto statement = std::make_unique<TimeoutStatement>(peek().range);
    expect(Symbol::Timeout);
    accept(Symbol::Of);
    statement->seconds = parseExpression();
    if (!accept(Symbol::Seconds))
        accept(symbolOfPlainName(u"second"));
    expectEndOfStatement();
    statement->body = parseBlockUntilEnd();
    return statement;
}

std::unique_ptr<Statement> Parser::parseWith()
{
    expect(Symbol::With);
    if (at(Symbol::Timeout))
        return parseTimeout();
    auto statement = std::make_unique<BlockStatement>(peek().range);
    expect(Symbol::Transaction);
    if (!at(TokenType::EndOfLine))
        parseExpression();
    expectEndOfStatement();
    statement->body = parseBlockUntilEnd();
    return statement;
}

} // namespace caddis::applescript
