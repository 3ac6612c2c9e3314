#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/ParserNesting.h"

namespace caddis::applescript {

// A chain of operators is one node deeper with each of them.
ExpressionPointer Parser::checked(ExpressionPointer expression, unsigned below)
{
    expression->depth = below + 1;
    if (expression->depth > MaximumTreeDepth)
        fail(ScriptErrorNumber::StackOverflow, String(u"The expression is too long."));
    return expression;
}

ExpressionPointer Parser::combine(Operator operation, ExpressionPointer left, ExpressionPointer right)
{
    const unsigned below = std::max(left->depth, right->depth);
    return checked(std::make_unique<BinaryExpression>(operation, std::move(left), std::move(right)), below);
}

ExpressionPointer Parser::parseBinary(Level level)
{
    if (level == Unary)
        return parseUnary();
    if (level == Not) {
        if (!accept(Symbol::Not))
            return parseBinary(Comparison);
        const Nesting nesting(*this);
        return std::make_unique<NotExpression>(parseBinary(Not));
    }
    const auto tighter = static_cast<Level>(level + 1);
    ExpressionPointer left = parseBinary(tighter);
    while (true) {
        const unsigned depth = left->depth;
        if (level == Or || level == And) {
            if (!accept(level == Or ? Symbol::Or : Symbol::And))
                return left;
            auto right = parseBinary(tighter);
            const unsigned below = std::max(depth, right->depth);
            left = checked(
                std::make_unique<LogicExpression>(level == Or, std::move(left), std::move(right)), below);
        } else if (level == As) {
            if (!accept(Symbol::As))
                return left;
            left = checked(std::make_unique<CoerceExpression>(std::move(left), parseType()), depth);
        } else if (level == Comparison && acceptIsRunning()) {
            left = attach(std::make_unique<PropertyExpression>(Symbol::Running), std::move(left));
        } else if (level == Comparison) {
            const auto operation = acceptComparison();
            if (!operation)
                return left;
            left = combine(*operation, std::move(left), parseBinary(tighter));
        } else {
            const auto operation = acceptArithmetic(level);
            if (!operation)
                return left;
            const Nesting nesting(*this);
            // Powers group from the right.
            left = combine(*operation, std::move(left), parseBinary(level == Power ? Power : tighter));
        }
    }
}

std::optional<Operator> Parser::acceptArithmetic(Level level)
{
    struct Row {
        Symbol word;
        Level level;
        TokenType token;
        Operator operation;
    };
    static constexpr Row rows[] = {
        { Symbol::None, Concatenation, TokenType::Ampersand, Operator::Concatenate },
        { Symbol::None, Sum, TokenType::Plus, Operator::Add },
        { Symbol::None, Sum, TokenType::Minus, Operator::Subtract },
        { Symbol::None, Product, TokenType::Times, Operator::Multiply },
        { Symbol::None, Product, TokenType::Divide, Operator::Divide },
        { Symbol::Div, Product, TokenType::Word, Operator::IntegerDivide },
        { Symbol::Mod, Product, TokenType::Word, Operator::Remainder },
        { Symbol::None, Power, TokenType::Power, Operator::Power },
    };
    for (const Row& row : rows) {
        if (row.level == level && at(row.token) && (row.word == Symbol::None || at(row.word))) {
            next();
            return row.operation;
        }
    }
    return std::nullopt;
}

// application "x" is running
bool Parser::acceptIsRunning()
{
    if (!at(Symbol::Is) || !peek(1).is(Symbol::Running) || m_scopes.isDeclared(Symbol::Running))
        return false;
    m_at += 2;
    return true;
}

std::optional<Operator> Parser::acceptComparison()
{
    struct Row {
        TokenType token;
        Operator operation;
    };
    static constexpr Row rows[] = {
        { TokenType::Equal, Operator::Equal },
        { TokenType::NotEqual, Operator::NotEqual },
        { TokenType::Less, Operator::Less },
        { TokenType::LessOrEqual, Operator::LessOrEqual },
        { TokenType::Greater, Operator::Greater },
        { TokenType::GreaterOrEqual, Operator::GreaterOrEqual },
    };
    for (const Row& row : rows) {
        if (accept(row.token))
            return row.operation;
    }
    if (accept(Symbol::Is))
        return acceptIs();
    if (at(Symbol::Isnt))
        return acceptIs();
    if (at(Symbol::Does) || at(Symbol::Doesnt) || at(symbolOfPlainName(u"do"))
        || at(symbolOfPlainName(u"don't")))
        return acceptDoesNot();
    return acceptRelation();
}

namespace {

Operator opposite(Operator operation)
{
    switch (operation) {
    case Operator::Equal:
        return Operator::NotEqual;
    case Operator::Less:
        return Operator::GreaterOrEqual;
    case Operator::LessOrEqual:
        return Operator::Greater;
    case Operator::Greater:
        return Operator::LessOrEqual;
    case Operator::GreaterOrEqual:
        return Operator::Less;
    case Operator::Contains:
        return Operator::DoesNotContain;
    case Operator::IsIn:
        return Operator::IsNotIn;
    case Operator::StartsWith:
        return Operator::DoesNotStartWith;
    case Operator::EndsWith:
        return Operator::DoesNotEndWith;
    default:
        return operation;
    }
}

} // namespace

// What follows `is`: nothing, not, equal to, in, greater than or equal to…; or isn't and the same.
std::optional<Operator> Parser::acceptIs()
{
    const bool negated = accept(Symbol::Not) || accept(Symbol::Isnt);
    std::optional<Operator> operation;
    if (accept(Symbol::In)) {
        operation = Operator::IsIn;
    } else if (at(Symbol::Contained)) {
        next();
        expect(Symbol::By);
        operation = Operator::IsIn;
    } else {
        operation = acceptRelation();
    }
    if (!operation)
        operation = Operator::Equal;
    return negated ? opposite(*operation) : *operation;
}

// does not contain, doesn't equal, does not come before…
std::optional<Operator> Parser::acceptDoesNot()
{
    const bool contracted = at(Symbol::Doesnt) || at(symbolOfPlainName(u"don't"));
    next();
    if (!contracted)
        expect(Symbol::Not);
    auto operation = acceptRelation();
    if (!operation)
        failExpected(String(u"“contain” or another comparison"));
    return opposite(*operation);
}

std::optional<Operator> Parser::acceptRelation()
{
    if (accept(Symbol::Contains) || accept(Symbol::Contain))
        return Operator::Contains;
    if (accept(Symbol::Equals))
        return Operator::Equal;
    if (at(Symbol::Equal)) {
        next();
        accept(Symbol::To);
        return Operator::Equal;
    }
    const bool starts = at(Symbol::Starts) || at(Symbol::Begins) || at(Symbol::Start);
    if ((starts || at(Symbol::Ends) || at(Symbol::End)) && peek(1).is(Symbol::With)) {
        m_at += 2;
        return starts ? Operator::StartsWith : Operator::EndsWith;
    }
    if (at(Symbol::Less) || at(Symbol::Greater)) {
        const bool less = next().is(Symbol::Less);
        expect(Symbol::Than);
        if (!(at(Symbol::Or) && peek(1).is(Symbol::Equal)))
            return less ? Operator::Less : Operator::Greater;
        m_at += 2;
        accept(Symbol::To);
        return less ? Operator::LessOrEqual : Operator::GreaterOrEqual;
    }
    if ((at(Symbol::Comes) || at(Symbol::Come))
        && (peek(1).is(Symbol::Before) || peek(1).is(Symbol::After))) {
        next();
        return next().is(Symbol::Before) ? Operator::Less : Operator::Greater;
    }
    return std::nullopt;
}

ExpressionPointer Parser::parseUnary()
{
    const Nesting nesting(*this);
    accept(Symbol::The);
    if (accept(TokenType::Plus))
        return parseUnary();
    if (accept(TokenType::Minus)) {
        // A literal is negative itself, so that it may stand as a pattern or an index.
        if (at(TokenType::Integer) || at(TokenType::Real)) {
            const Token& token = peek();
            const bool whole = token.is(TokenType::Integer);
            const double number = -token.number;
            next();
            auto value = whole ? Datum::integer(static_cast<std::int64_t>(number)) : Datum::real(number);
            return std::make_unique<Literal>(std::move(value));
        }
        return std::make_unique<NegateExpression>(parseUnary());
    }
    return parsePostfix();
}

// {a, b}, {a:b}
ExpressionPointer Parser::parseList()
{
    const Nesting nesting(*this);
    expect(TokenType::LeftBrace, u"“{”");
    auto list = std::make_unique<ListExpression>();
    auto record = std::make_unique<RecordExpression>();
    skipNewlines();
    while (!accept(TokenType::RightBrace)) {
        const std::size_t start = m_at;
        const bool isName = at(TokenType::Word) || at(TokenType::BarredName);
        const Symbol label = isName ? parseName() : Symbol::None;
        if (isName && accept(TokenType::Colon)) {
            record->fields.emplace_back(label, parseExpression());
        } else {
            m_at = start;
            list->items.push_back(parseExpression());
        }
        skipNewlines();
        if (!at(TokenType::RightBrace))
            expect(TokenType::Comma, u"“,” or “}”");
        skipNewlines();
    }
    if (record->fields.empty())
        return list;
    if (!list->items.empty())
        failExpected(String(u"record"));
    return record;
}

// The class behind `as`: a name, even one that means something else elsewhere.
ExpressionPointer Parser::parseType()
{
    accept(Symbol::The);
    if (at(TokenType::Raw))
        return parseRaw();
    const TermMatch term = termHere();
    const bool isClass = term.words && ((term.kinds & ClassName) || term.symbol == Symbol::MissingValue);
    if (isClass && !m_scopes.isDeclared(peek().symbol)) {
        m_at += term.words;
        if (accept(Symbol::Of)) // as list of text
            parseType();
        return std::make_unique<Literal>(Datum::classNamed(term.symbol));
    }
    return parsePostfix();
}

} // namespace caddis::applescript
