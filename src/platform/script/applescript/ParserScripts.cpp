#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/ParserNesting.h"

namespace caddis::applescript {

// The lines of a script object, up to its `end`, or of the whole source.
void Parser::parseScriptBody(ScriptCode& code)
{
    const Nesting nesting(*this);
    const std::size_t start = peek().range.location;
    m_scopes.openScript(code);
    code.statements = std::make_unique<HandlerCode>();
    code.statements->name = Symbol::Run;
    m_scopes.openHandler(HandlerScope::Kind::Statements, code.statements.get());
    for (skipNewlines(); !at(TokenType::EndOfText) && !at(Symbol::End); skipNewlines())
        parseScriptLine(code, code.statements->body.statements);
    m_scopes.closeHandler();
    m_scopes.closeScript();
    code.bodyRange = { start, peek().range.location - start };
    if (code.statements->body.statements.empty())
        code.statements.reset();
}

bool Parser::startsHandler() const
{
    return (at(Symbol::On) || at(Symbol::To))
        && (peek(1).is(TokenType::Word) || peek(1).is(TokenType::BarredName));
}

void Parser::parseScriptLine(ScriptCode& code, std::vector<std::unique_ptr<Statement>>& statements)
{
    const bool isProperty = at(Symbol::PropertyWord) || at(Symbol::Prop);
    const bool isUse = at(Symbol::Use) && peek(1).is(TokenType::Word) && !peek(1).is(Symbol::Of);
    const bool isScript = at(Symbol::Script) && !peek(1).is(TokenType::String)
        && (peek(1).is(TokenType::Word) || peek(1).is(TokenType::BarredName));
    if (isProperty)
        parseProperty(code);
    else if (isUse)
        skipLine();
    else if (startsHandler())
        parseHandler(code);
    else if (at(Symbol::Using))
        parseScriptLinesUsingTerms(code, statements);
    else if (isScript) {
        auto script = parseScriptObject();
        const Symbol name = script->name;
        addSlot(code, { name, ScriptCode::SlotKind::Script, nullptr, nullptr, std::move(script) },
            ScriptErrorNumber::DuplicateProperty);
    } else
        statements.push_back(parseStatement());
}

void Parser::addSlot(ScriptCode& code, ScriptCode::Slot slot, ScriptErrorNumber duplicate)
{
    if (!code.slotOfName.try_emplace(slot.name, static_cast<unsigned>(code.slots.size())).second)
        fail(duplicate, format(u"%@ is declared twice.", sourceName(slot.name)));
    code.slots.push_back(std::move(slot));
}

// property name : value. The value belongs to no handler: it is found out when the script is made.
void Parser::parseProperty(ScriptCode& code)
{
    next();
    accept(Symbol::The);
    const Symbol name = parseName();
    const std::size_t afterName = m_tokens[m_at - 1].range.end();
    m_scopes.openHandler(HandlerScope::Kind::Initializers, nullptr);
    ExpressionPointer value;
    if (accept(TokenType::Colon) || accept(Symbol::Of))
        value = parseExpression();
    else
        value = std::make_unique<Literal>(Datum::missing());
    m_scopes.closeHandler();
    const Range range { afterName, m_tokens[m_at - 1].range.end() - afterName };
    if (name == Symbol::Parent)
        code.parent = std::move(value);
    else
        addSlot(code, { name, ScriptCode::SlotKind::Property, std::move(value), nullptr, nullptr, range },
            ScriptErrorNumber::DuplicateProperty);
    expectEndOfStatement();
}

std::unique_ptr<ScriptCode> Parser::parseScriptObject()
{
    expect(Symbol::Script);
    auto code = std::make_unique<ScriptCode>();
    if (!at(TokenType::EndOfLine))
        code->name = parseName();
    expectEndOfStatement();
    parseScriptBody(*code);
    parseEnd();
    return code;
}

// A name of one word, or a term of several.
Symbol Parser::parseName()
{
    if (at(TokenType::BarredName))
        return next().symbol;
    if (!at(TokenType::Word) || at(Symbol::End))
        failExpected(String(u"variable name or property"));
    if (const TermMatch term = termHere(); term.words > 1) {
        m_at += term.words;
        return term.symbol;
    }
    return next().symbol;
}

Symbol Parser::parseHandlerName()
{
    const bool isName = at(TokenType::BarredName) || at(TokenType::Word);
    if (!isName)
        failExpected(String(u"handler name"));
    // Commands that applications send have names of several words.
    const std::vector<Symbol> words = upcomingWords();
    if (const std::size_t count = matchEventHandler(words)) {
        String name = plainName(words[0]);
        for (std::size_t index = 1; index < count; ++index)
            name = format(u"%@ %@", name, plainName(words[index]));
        m_at += count;
        return symbolOfPlainName(name);
    }
    return next().symbol;
}

void Parser::parseHandler(ScriptCode& code)
{
    const Nesting nesting(*this);
    next();
    auto handler = std::make_unique<HandlerCode>();
    m_scopes.openHandler(HandlerScope::Kind::Handler, handler.get());
    const unsigned outerLoops = std::exchange(m_loops, 0);
    parseHandlerHead(*handler);
    handler->body = parseBlockUntilEnd();
    m_loops = outerLoops;
    m_scopes.closeHandler();
    const Symbol name = handler->name;
    addSlot(code, { name, ScriptCode::SlotKind::Handler, nullptr, std::move(handler), nullptr },
        ScriptErrorNumber::DuplicateHandler);
}

void Parser::parseHandlerHead(HandlerCode& handler)
{
    handler.name = parseHandlerName();
    if (at(TokenType::LeftParenthesis))
        parsePositionalParameters(handler);
    else if (at(TokenType::Colon))
        parseInterleavedParameters(handler);
    else
        parseLabelledParameters(handler);
    expectEndOfStatement();
}

void Parser::parsePositionalParameters(HandlerCode& handler)
{
    expect(TokenType::LeftParenthesis, u"“(”");
    while (!accept(TokenType::RightParenthesis)) {
        handler.positional.push_back(parsePattern());
        if (!at(TokenType::RightParenthesis))
            expect(TokenType::Comma, u"“,” or “)”");
    }
}

// on first:a second:b is a handler named `first:second:`.
void Parser::parseInterleavedParameters(HandlerCode& handler)
{
    String name = plainName(handler.name);
    while (true) {
        expect(TokenType::Colon, u"“:”");
        name = format(u"%@:", name);
        handler.positional.push_back(parsePattern());
        if (at(TokenType::EndOfLine))
            break;
        name = format(u"%@%@", name, plainName(parseName()));
    }
    handler.name = symbolOfUserName(name);
}

void Parser::parseLabelledParameters(HandlerCode& handler)
{
    handler.isLabelled = true;
    const auto isLabel
        = [&] { return at(Symbol::Given) || (at(TokenType::Word) && isPreposition(peek().symbol)); };
    const bool marked = accept(Symbol::Of) || accept(Symbol::In);
    if (marked || (!at(TokenType::EndOfLine) && !isLabel()))
        handler.direct = parsePattern();
    while (isLabel()) {
        const Symbol label = next().symbol;
        if (label != Symbol::Given) {
            // "after receiving x": only the last word before the place is not part of the label.
            if (peek(1).is(TokenType::Word) && !isPreposition(peek(1).symbol) && !peek(1).is(Symbol::Given))
                next();
            handler.labelled.push_back({ label, parsePattern(), nullptr });
            continue;
        }
        do {
            const Symbol name = parseName();
            expect(TokenType::Colon, u"“:”");
            handler.labelled.push_back({ name, parsePattern(), nullptr });
        } while (accept(TokenType::Comma));
    }
}

// A place for an argument: a name, or a list or record of places that takes it apart.
ExpressionPointer Parser::parsePattern()
{
    const Nesting nesting(*this);
    if (accept(TokenType::LeftBrace)) {
        auto list = std::make_unique<ListExpression>();
        auto record = std::make_unique<RecordExpression>();
        while (!accept(TokenType::RightBrace)) {
            if (peek(1).is(TokenType::Colon)) {
                const Symbol label = parseName();
                next();
                record->fields.emplace_back(label, parsePattern());
            } else {
                list->items.push_back(parsePattern());
            }
            if (!at(TokenType::RightBrace))
                expect(TokenType::Comma, u"“,” or “}”");
        }
        if (!record->fields.empty())
            return record;
        return list;
    }
    accept(Symbol::The);
    const Symbol name = parseName();
    m_scopes.handler().declareLocal(name);
    ExpressionPointer place = variable(name);
    // A class behind the name is taken as a note.
    if (accept(Symbol::As))
        parseType();
    return place;
}

std::unique_ptr<Statement> Parser::parseNestedScript()
{
    auto statement = std::make_unique<ScriptStatement>(peek().range);
    statement->code = parseScriptObject();
    if (statement->code->name != Symbol::None) {
        m_scopes.handler().noteAssigned(statement->code->name);
        statement->place = variable(statement->code->name);
    }
    return statement;
}

} // namespace caddis::applescript
