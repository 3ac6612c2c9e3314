#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/ParserNesting.h"
#include "platform/script/applescript/Restored.h"

#include <charconv>

namespace caddis::applescript {

bool Parser::followsPossessive() const { return m_at > 0 && m_tokens[m_at - 1].is(TokenType::Possessive); }

ExpressionPointer Parser::variable(Symbol name)
{
    auto made = std::make_unique<Variable>(name);
    m_scopes.handler().addUse(*made);
    return made;
}

// Whether an operand may begin here, so that a class before it names an element of it.
bool Parser::startsOperand() const
{
    switch (peek().type) {
    case TokenType::Integer:
    case TokenType::Real:
    case TokenType::String:
    case TokenType::LeftParenthesis:
    case TokenType::LeftBrace:
    case TokenType::BarredName:
    case TokenType::Raw:
    case TokenType::Ordinal:
        return true;
    case TokenType::Minus:
        return peek().spaceBefore && !peek(1).spaceBefore;
    case TokenType::Word:
        break;
    default:
        return false;
    }
    const Symbol word = peek().symbol;
    if (!(kindsOf(word) & ReservedWord))
        return true;
    switch (word) {
    case Symbol::The:
    case Symbol::My:
    case Symbol::Me:
    case Symbol::It:
    case Symbol::Its:
    case Symbol::Every:
    case Symbol::First:
    case Symbol::Last:
    case Symbol::Some:
    case Symbol::Middle:
    case Symbol::Front:
    case Symbol::True:
    case Symbol::False:
    case Symbol::Result:
    case Symbol::Return:
    case Symbol::Not:
    case Symbol::Ref:
        return true;
    case Symbol::Beginning:
    case Symbol::End:
        return peek(1).is(Symbol::Of);
    default:
        return false;
    }
}

// The same for an index, where terms and commands cannot begin one.
bool Parser::startsIndex() const
{
    if (at(TokenType::LeftBrace) || at(TokenType::Raw) || at(TokenType::Ordinal) || !startsOperand())
        return false;
    if (!at(TokenType::Word))
        return true;
    if (at(Symbol::My) || at(Symbol::Its))
        return true;
    if (kindsOf(peek().symbol) & ReservedWord)
        return false;
    if (m_scopes.isDeclared(peek().symbol))
        return true;
    // A command that goes on behind its name is none of an index.
    return !termHere().words && !at(Symbol::Starts) && !at(Symbol::Ends) && !at(Symbol::Begins)
        && !at(Symbol::Comes) && !at(Symbol::Equal) && !at(Symbol::Less) && !at(Symbol::Greater)
        && !at(Symbol::Exists);
}

ExpressionPointer Parser::attach(ExpressionPointer part, ExpressionPointer container)
{
    const unsigned below = std::max(part->depth, container->depth);
    if (auto* specifier = dynamic_cast<Specifier*>(part.get())) {
        specifier->target = std::move(container);
    } else if (auto* call = dynamic_cast<CallExpression*>(part.get())) {
        call->target = std::move(container);
    } else if (auto* labelled = dynamic_cast<LabelledCallExpression*>(part.get())) {
        labelled->target = std::move(container);
    } else if (const auto* name = dynamic_cast<Variable*>(part.get())) {
        auto property = std::make_unique<PropertyExpression>(name->name);
        property->target = std::move(container);
        part = std::move(property);
    } else {
        failExpected(String(u"property or element"));
    }
    return checked(std::move(part), below);
}

ExpressionPointer Parser::parsePostfix(bool isContainer)
{
    const Nesting nesting(*this);
    ExpressionPointer expression = parsePrimary();
    while (accept(TokenType::Possessive)) {
        ExpressionPointer part = parsePrimary();
        expression = attach(std::move(part), std::move(expression));
    }
    return parsePostfixOf(std::move(expression), isContainer);
}

// What may follow a specifier: the condition it has to fit, and what it is a part of. A condition behind a
// container belongs to the elements before it: every file of folder "x" whose name …
ExpressionPointer Parser::parsePostfixOf(ExpressionPointer expression, bool isContainer)
{
    const auto isSpecifier = [&] { return dynamic_cast<Specifier*>(expression.get()) != nullptr; };
    const auto isPart = [&] {
        const auto* call = dynamic_cast<CallExpression*>(expression.get());
        const auto* specifier = dynamic_cast<Specifier*>(expression.get());
        return (specifier && !specifier->target) || (call && !call->target)
            || dynamic_cast<Variable*>(expression.get());
    };
    const auto parseCondition = [&] {
        auto* element = dynamic_cast<ElementExpression*>(expression.get());
        if (!element || !(at(Symbol::Whose) || at(Symbol::Where) || at(Symbol::That)))
            return;
        if (isContainer && element->form != Selector::Form::Every)
            return;
        next();
        auto target = std::move(element->target);
        (void)expression.release();
        auto filter = std::make_unique<FilterExpression>(
            std::unique_ptr<ElementExpression>(element), parseExpression());
        filter->target = std::move(target);
        expression = std::move(filter);
    };
    parseCondition();
    if (isPart() && (at(Symbol::Of) || (at(Symbol::In) && isSpecifier() && !m_inIsLabel))) {
        next();
        accept(Symbol::The);
        expression = attach(std::move(expression), parsePostfix(true));
        parseCondition();
    }
    return expression;
}

ExpressionPointer Parser::parsePrimary()
{
    const Token& token = peek();
    switch (token.type) {
    case TokenType::Integer:
        next();
        return std::make_unique<Literal>(Datum::integer(static_cast<std::int64_t>(token.number)));
    case TokenType::Real:
        next();
        return std::make_unique<Literal>(Datum::real(token.number));
    case TokenType::String:
        next();
        return std::make_unique<Literal>(Datum::text(token.text));
    case TokenType::LeftParenthesis: {
        next();
        const Restored<bool> label(m_inIsLabel);
        m_inIsLabel = false;
        auto inner = parseExpression();
        expect(TokenType::RightParenthesis, u"“)”");
        // What is in parentheses is whole: (name of x) of y is not name of (x of y).
        return inner;
    }
    case TokenType::LeftBrace:
        return parseList();
    case TokenType::Raw:
        return parseRaw();
    case TokenType::BarredName:
        return parseIdentifier();
    case TokenType::Ordinal:
        return parseOrdinal(Symbol::None);
    case TokenType::Word:
        return parseWord();
    default:
        failExpected(String(u"expression"));
    }
}

// «class utf8», «constant ****yes », «property pnam», «data utxt0041»
ExpressionPointer Parser::parseRaw()
{
    const std::string text = peek().text.utf8();
    const std::size_t blank = std::min(text.find(' '), text.size());
    const std::string kind = text.substr(0, blank);
    std::string code = text.substr(std::min(blank + 1, text.size()));
    next();
    if (kind == "constant" && code.size() > 4)
        code.erase(0, 4);
    if ((kind != "class" && kind != "constant" && kind != "property" && kind != "data") || code.size() < 4)
        failExpected(String(u"class name"));
    const auto byte = [&](std::size_t index) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(code[index]));
    };
    const FourCharCode number = byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3);
    if (kind == "data") {
        std::vector<std::uint8_t> bytes;
        for (std::size_t index = 4; index + 1 < code.size(); index += 2) {
            std::uint8_t value = 0;
            std::from_chars(code.data() + index, code.data() + index + 2, value, 16);
            bytes.push_back(value);
        }
        return std::make_unique<Literal>(make<DataObject>(number, Data::adopt(std::move(bytes))));
    }
    Symbol symbol = termWithCode(number);
    if (symbol == Symbol::None)
        symbol = symbolOfUserName(format(u"«%s %s»", kind, code));
    if (kind == "property" || (kind == "class" && at(Symbol::Of)))
        return std::make_unique<PropertyExpression>(symbol);
    return std::make_unique<Literal>(kind == "class" ? Datum::classNamed(symbol) : Datum::constant(symbol));
}

ExpressionPointer Parser::parseWord()
{
    const Symbol word = peek().symbol;
    if (kindsOf(word) & ReservedWord && !beginsDictionaryPhrase())
        return parseReservedWord();
    if (word == Symbol::A && (peek(1).is(Symbol::Reference) || peek(1).is(Symbol::Ref))
        && peek(2).is(Symbol::To)) {
        m_at += 3;
        accept(Symbol::The);
        return std::make_unique<ReferenceExpression>(parsePostfix());
    }
    const bool declared = m_scopes.isDeclared(word);
    if (m_labelledHandlers.contains(word) && !peek(1).is(TokenType::LeftParenthesis)
        && !m_scopes.isLocal(word))
        return parseLabelledCall(next().symbol);
    const bool isCall = peek(1).is(TokenType::LeftParenthesis) && !peek(1).spaceBefore;
    const TermMatch term = termHere();
    const CommandMatch command = commandHere();
    if (command.spec && command.words >= term.words && !declared && !followsPossessive()) {
        const std::size_t start = m_at;
        m_at += command.words;
        const bool fits
            = !command.spec->needsDirect || startsOperand() || at(Symbol::Of) || at(Symbol::Script);
        if (fits
            && !(isCall && command.words == 1 && command.spec->needsDirect && m_handlerNames.contains(word)))
            return parseCommand(command);
        m_at = start;
    }
    const bool isTerm
        = term.words && (term.words > 1 || (!declared && !(isCall && m_handlerNames.contains(word))));
    return isTerm ? parseTerm(term) : parseIdentifier();
}

namespace {

bool isOrdinal(Symbol word)
{
    return word == Symbol::First || (word >= Symbol::Second && word <= Symbol::Tenth) || word == Symbol::Last
        || word == Symbol::Front || word == Symbol::Back || word == Symbol::Some || word == Symbol::Middle;
}

} // namespace

ExpressionPointer Parser::parseReservedWord()
{
    const Symbol word = peek().symbol;
    if (isOrdinal(word)) {
        next();
        return parseOrdinal(word);
    }
    switch (word) {
    case Symbol::The:
        next();
        return parsePrimary();
    case Symbol::True:
    case Symbol::False:
        next();
        return std::make_unique<Literal>(Datum::boolean(word == Symbol::True));
    case Symbol::Me:
        next();
        return std::make_unique<MeExpression>();
    case Symbol::It:
        next();
        return std::make_unique<ItExpression>();
    case Symbol::My:
        next();
        return attach(parsePrimary(), std::make_unique<MeExpression>());
    case Symbol::Its:
        next();
        return attach(parsePrimary(), std::make_unique<ItExpression>());
    case Symbol::Result:
        next();
        return std::make_unique<ResultExpression>();
    case Symbol::Return:
        next();
        return std::make_unique<Literal>(Datum::text(u"\r"));
    case Symbol::Not:
        return parseBinary(Not);
    case Symbol::Ref:
        next();
        accept(Symbol::To);
        return std::make_unique<ReferenceExpression>(parsePostfix());
    case Symbol::Get:
        if (const CommandMatch command = commandHere(); command.spec) {
            m_at += command.words;
            return parseCommand(command);
        }
        next();
        return std::make_unique<GetExpression>(parsePostfix());
    case Symbol::As: // as taught in school
        if (const TermMatch term = termHere(); term.words)
            return parseTerm(term);
        failExpected(String(u"expression"));
    case Symbol::Every:
        return parseEvery();
    case Symbol::Beginning:
    case Symbol::End:
        next();
        return std::make_unique<ElementExpression>(
            Symbol::Item, word == Symbol::End ? Selector::Form::End : Selector::Form::Beginning);
    default:
        failExpected(String(u"expression"));
    }
}

ExpressionPointer Parser::parseIdentifier()
{
    if (m_labelledHandlers.contains(peek().symbol) && at(TokenType::BarredName)
        && !peek(1).is(TokenType::LeftParenthesis))
        return parseLabelledCall(next().symbol);
    const Token& token = next();
    const Symbol name = token.symbol;
    if (at(TokenType::LeftParenthesis))
        return parseCall(name);
    const bool isInterleaved = at(TokenType::Colon) && !peek().spaceBefore && m_at >= 2
        && (m_tokens[m_at - 2].is(TokenType::Possessive) || m_tokens[m_at - 2].is(Symbol::My)
            || m_tokens[m_at - 2].is(Symbol::Its) || m_tokens[m_at - 2].is(TokenType::EndOfLine)
            || m_tokens[m_at - 2].is(TokenType::LeftParenthesis));
    if (isInterleaved)
        return parseInterleavedCall(name);
    return variable(name);
}

} // namespace caddis::applescript
