#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/ParserLineTerms.h"
#include "platform/script/applescript/ParserNesting.h"

namespace caddis::applescript {

bool Parser::endsBlock() const
{
    return at(TokenType::EndOfText) || at(Symbol::End) || at(Symbol::Else)
        || (at(Symbol::On) && peek(1).is(Symbol::Error));
}

Block Parser::parseBlock()
{
    const Nesting nesting(*this);
    Block block;
    for (skipNewlines(); !endsBlock(); skipNewlines())
        block.statements.push_back(parseStatement());
    return block;
}

Block Parser::parseBlockUntilEnd()
{
    Block block = parseBlock();
    parseEnd();
    return block;
}

// `end`, and whatever names the thing that ends.
void Parser::parseEnd()
{
    expect(Symbol::End);
    skipLine();
}

std::unique_ptr<Statement> Parser::parseStatement()
{
    if (!m_unknownWords)
        return parseStatementStrictly();
    const std::size_t first = m_at;
    const Scopes::Mark mark = m_scopes.mark();
    const unsigned depth = m_depth;
    const unsigned loops = m_loops;
    const unsigned unknownWords = m_unknownWords;
    const auto terms = m_terms;
    const bool inIsLabel = m_inIsLabel;
    try {
        return parseStatementStrictly();
    } catch (const Failure& failure) {
        if (failure.is(ScriptErrorNumber::StackOverflow))
            throw;
        m_at = first;
        m_scopes.restore(mark);
        m_depth = depth;
        m_loops = loops;
        m_unknownWords = unknownWords;
        m_terms = terms;
        m_inIsLabel = inIsLabel;
        return skipUnknownStatement(first);
    }
}

// Words of an unknown dictionary: the line goes as a whole. Where it opens a block, the statements inside are
// read on their own; the `end` that is left over ends it.
std::unique_ptr<Statement> Parser::skipUnknownStatement(std::size_t first)
{
    const bool opensBlock = at(Symbol::Tell) || at(Symbol::Repeat) || at(Symbol::If) || at(Symbol::Try)
        || at(Symbol::Considering) || at(Symbol::Ignoring) || at(Symbol::Using)
        || (at(Symbol::With) && (peek(1).is(Symbol::Timeout) || peek(1).is(Symbol::Transaction)));
    const bool isIf = at(Symbol::If);
    std::size_t last = m_at;
    bool oneLine = false;
    for (; !at(TokenType::EndOfLine) && !at(TokenType::EndOfText); next()) {
        oneLine = oneLine || (isIf ? at(Symbol::Then) && !peek(1).is(TokenType::EndOfLine) : at(Symbol::To));
        last = m_at;
    }
    if (last == first && (at(Symbol::End) || at(Symbol::Else)))
        failExpected(String(u"expression"));
    auto statement
        = std::make_unique<ExpressionStatement>(rangeFrom(first), std::make_unique<UnknownExpression>());
    accept(TokenType::EndOfLine);
    if (opensBlock && !oneLine) {
        const Nesting nesting(*this);
        ++m_loops; // It may be a repeat.
        while (true) {
            parseBlock();
            const bool ends = at(Symbol::End) || at(TokenType::EndOfText);
            skipLine();
            if (ends)
                break;
        }
        --m_loops;
    }
    return statement;
}

std::unique_ptr<Statement> Parser::parseStatementStrictly()
{
    const Nesting nesting(*this);
    const bool isWord = at(TokenType::Word) && !beginsDictionaryPhrase();
    const Symbol word = isWord ? peek().symbol : Symbol::None;
    switch (word) {
    case Symbol::Set:
        return isSetCommand() ? parseSetCommand() : parseSet();
    case Symbol::Copy:
    case Symbol::Put:
        return parseCopy();
    case Symbol::If:
        return parseIf();
    case Symbol::Repeat:
        return parseRepeat();
    case Symbol::Tell:
        return parseTell();
    case Symbol::Try:
        return parseTry();
    case Symbol::Error:
        return parseError();
    case Symbol::Return:
        return parseReturn();
    case Symbol::Exit:
        return parseExit();
    case Symbol::Considering:
    case Symbol::Ignoring:
        return parseAttributes(word == Symbol::Considering);
    case Symbol::With:
        return parseWith();
    case Symbol::Using:
        return parseUsingTerms();
    case Symbol::Local:
    case Symbol::Global:
        return parseDeclaration();
    case Symbol::Continue:
        return parseContinue();
    case Symbol::Script:
        if (peek(1).is(TokenType::EndOfLine) || peek(2).is(TokenType::EndOfLine))
            return parseNestedScript();
        [[fallthrough]];
    default:
        return parseExpressionStatement();
    }
}

std::unique_ptr<Statement> Parser::parseExpressionStatement()
{
    const LineTerms terms(*this);
    const std::size_t first = m_at;
    auto expression = parseExpression();
    auto statement = std::make_unique<ExpressionStatement>(rangeFrom(first), std::move(expression));
    expectEndOfStatement();
    return statement;
}

void Parser::markAssigned(Expression& place)
{
    if (auto* single = dynamic_cast<Variable*>(&place)) {
        m_scopes.handler().noteAssigned(single->name);
    } else if (auto* list = dynamic_cast<ListExpression*>(&place)) {
        for (const auto& item : list->items)
            markAssigned(*item);
    } else if (auto* record = dynamic_cast<RecordExpression*>(&place)) {
        for (const auto& field : record->fields)
            markAssigned(*field.second);
    }
}

ExpressionPointer Parser::parsePlace()
{
    accept(Symbol::The);
    auto place = parsePostfix();
    markAssigned(*place);
    return place;
}

// `set the clipboard to x` and `set eof f to n` are commands that look like assignments.
bool Parser::isSetCommand() const
{
    const std::size_t ahead = peek(1).is(Symbol::The) ? 2 : 1;
    return (peek(ahead).is(symbolOfPlainName(u"clipboard")) && peek(ahead + 1).is(Symbol::To))
        || peek(ahead).is(Symbol::Eof);
}

std::unique_ptr<Statement> Parser::parseSetCommand()
{
    const std::size_t first = m_at;
    next();
    accept(Symbol::The);
    const Symbol name[] = { Symbol::Set, next().symbol };
    auto command = parseCommand(matchCommand(name));
    auto statement = std::make_unique<ExpressionStatement>(rangeFrom(first), std::move(command));
    expectEndOfStatement();
    return statement;
}

std::unique_ptr<Statement> Parser::parseSet()
{
    const LineTerms terms(*this);
    const std::size_t first = m_at;
    next();
    auto statement = std::make_unique<SetStatement>(Range());
    statement->place = parsePlace();
    if (!accept(Symbol::Returning))
        expect(Symbol::To);
    statement->value = parseExpression();
    statement->range = rangeFrom(first);
    expectEndOfStatement();
    return statement;
}

std::unique_ptr<Statement> Parser::parseCopy()
{
    const LineTerms terms(*this);
    const std::size_t first = m_at;
    next();
    auto statement = std::make_unique<SetStatement>(Range());
    statement->copies = true;
    statement->value = parseExpression();
    if (!accept(Symbol::Into))
        expect(Symbol::To);
    statement->place = parsePlace();
    statement->range = rangeFrom(first);
    expectEndOfStatement();
    return statement;
}

std::unique_ptr<Statement> Parser::parseIf()
{
    auto statement = std::make_unique<IfStatement>(peek().range);
    expect(Symbol::If);
    auto condition = parseExpression();
    const bool hasThen = accept(Symbol::Then);
    if (hasThen && !at(TokenType::EndOfLine)) {
        Block body;
        body.statements.push_back(parseStatement());
        statement->branches.push_back({ std::move(condition), std::move(body) });
        return statement;
    }
    expectEndOfStatement();
    statement->branches.push_back({ std::move(condition), parseBlock() });
    while (accept(Symbol::Else)) {
        ExpressionPointer next;
        if (accept(Symbol::If)) {
            next = parseExpression();
            accept(Symbol::Then);
        }
        expectEndOfStatement();
        const bool isLast = !next;
        statement->branches.push_back({ std::move(next), parseBlock() });
        if (isLast)
            break;
    }
    parseEnd();
    return statement;
}

std::unique_ptr<Statement> Parser::parseReturn()
{
    const LineTerms terms(*this);
    const std::size_t first = m_at;
    auto statement = std::make_unique<ReturnStatement>(Range());
    expect(Symbol::Return);
    if (!at(TokenType::EndOfLine))
        statement->value = parseExpression();
    statement->range = rangeFrom(first);
    expectEndOfStatement();
    return statement;
}

// A declaration gives a name its place and does nothing when it is reached.
std::unique_ptr<Statement> Parser::parseDeclaration()
{
    auto statement = std::make_unique<BlockStatement>(peek().range);
    const bool isGlobal = next().is(Symbol::Global);
    do {
        const Symbol name = parseName();
        if (!isGlobal)
            m_scopes.handler().declareLocal(name);
        else if (m_scopes.insideHandler())
            m_scopes.handler().declareGlobal(name);
        else
            m_scopes.script().declareGlobal(name);
    } while (accept(TokenType::Comma));
    expectEndOfStatement();
    return statement;
}

std::unique_ptr<Statement> Parser::parseContinue()
{
    const std::size_t first = m_at;
    expect(Symbol::Continue);
    auto expression = parseExpression();
    if (auto* call = dynamic_cast<CallExpression*>(expression.get()))
        call->continues = true;
    else if (auto* labelled = dynamic_cast<LabelledCallExpression*>(expression.get()))
        labelled->continues = true;
    auto statement = std::make_unique<ExpressionStatement>(rangeFrom(first), std::move(expression));
    expectEndOfStatement();
    return statement;
}

} // namespace caddis::applescript
