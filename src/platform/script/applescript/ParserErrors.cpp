#include "platform/script/applescript/Parser.h"

// try and error.
namespace caddis::applescript {

std::unique_ptr<Statement> Parser::parseTry()
{
    auto statement = std::make_unique<TryStatement>(peek().range);
    expect(Symbol::Try);
    expectEndOfStatement();
    statement->body = parseBlock();
    if (accept(Symbol::On)) {
        expect(Symbol::Error);
        parseErrorParts(*statement, &Parser::parsePlace);
        expectEndOfStatement();
        statement->handler = parseBlock();
    }
    parseEnd();
    return statement;
}

std::unique_ptr<Statement> Parser::parseError()
{
    const std::size_t first = m_at;
    auto statement = std::make_unique<ErrorStatement>(Range());
    expect(Symbol::Error);
    parseErrorParts(*statement, &Parser::parseExpression);
    statement->range = rangeFrom(first);
    expectEndOfStatement();
    return statement;
}

// The message, and then the rest of an error behind its labels: places in `on error`, values in `error`.
template <typename T> void Parser::parseErrorParts(T& statement, ExpressionPointer (Parser::*part)())
{
    const bool isLabel = at(Symbol::Number) || at(Symbol::Partial) || at(Symbol::From) || at(Symbol::To);
    if (!at(TokenType::EndOfLine) && !isLabel)
        statement.message = (this->*part)();
    while (!at(TokenType::EndOfLine)) {
        if (accept(Symbol::Number))
            statement.number = (this->*part)();
        else if (accept(Symbol::From))
            statement.offender = (this->*part)();
        else if (accept(Symbol::To))
            statement.expected = (this->*part)();
        else {
            expect(Symbol::Partial);
            expect(Symbol::Result);
            statement.partialResult = (this->*part)();
        }
    }
}

} // namespace caddis::applescript
