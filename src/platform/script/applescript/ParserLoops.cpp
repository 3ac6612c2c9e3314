#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"

namespace caddis::applescript {

std::unique_ptr<Statement> Parser::parseExit()
{
    auto statement = std::make_unique<ExitStatement>(peek().range);
    expect(Symbol::Exit);
    accept(Symbol::Repeat);
    if (!m_loops)
        fail(ScriptErrorNumber::ExitOutsideRepeat, String(u"An exit stands outside of every repeat."));
    expectEndOfStatement();
    return statement;
}

template <typename T> void Parser::finishLoop(T& statement, std::size_t first)
{
    statement.range = rangeFrom(first);
    expectEndOfStatement();
    ++m_loops;
    statement.body = parseBlock();
    --m_loops;
    parseEnd();
}

std::unique_ptr<Statement> Parser::parseRepeat()
{
    const std::size_t first = m_at;
    expect(Symbol::Repeat);
    if (accept(Symbol::With))
        return parseRepeatWith(first);
    auto statement = std::make_unique<RepeatStatement>(Range());
    if (accept(Symbol::While)) {
        statement->form = RepeatStatement::Form::While;
        statement->condition = parseExpression();
    } else if (accept(Symbol::Until)) {
        statement->form = RepeatStatement::Form::Until;
        statement->condition = parseExpression();
    } else if (!at(TokenType::EndOfLine)) {
        statement->form = RepeatStatement::Form::Times;
        statement->condition = parseExpression();
        accept(Symbol::Times);
    }
    finishLoop(*statement, first);
    return statement;
}

std::unique_ptr<Statement> Parser::parseRepeatWith(std::size_t first)
{
    accept(Symbol::The);
    const Symbol name = parseName();
    m_scopes.handler().noteAssigned(name);
    ExpressionPointer place = variable(name);
    if (accept(Symbol::From)) {
        auto statement = std::make_unique<RepeatFromStatement>(Range());
        statement->place = std::move(place);
        statement->first = parseExpression();
        expect(Symbol::To);
        statement->last = parseExpression();
        if (accept(Symbol::By))
            statement->step = parseExpression();
        finishLoop(*statement, first);
        return statement;
    }
    auto statement = std::make_unique<RepeatInStatement>(Range());
    statement->place = std::move(place);
    if (!accept(Symbol::In))
        expect(Symbol::Of);
    statement->list = parseExpression();
    finishLoop(*statement, first);
    return statement;
}

} // namespace caddis::applescript
