#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/ParserNesting.h"
#include "platform/script/applescript/Properties.h"

namespace caddis::applescript {

ExpressionPointer Parser::parseTerm(const TermMatch& term)
{
    const unsigned kinds = term.kinds;
    const bool isPart = followsPossessive()
        || (m_at > 0 && (m_tokens[m_at - 1].is(Symbol::My) || m_tokens[m_at - 1].is(Symbol::Its)));
    const bool hasOf = peek(term.words).is(Symbol::Of) || peek(term.words).is(Symbol::In);
    if (kinds & PropertyName && (isPart || hasOf || !(kinds & (ClassName | ConstantName)))) {
        m_at += term.words;
        return std::make_unique<PropertyExpression>(term.symbol);
    }
    if (term.symbol == Symbol::Number && !term.isPlural && (isPart || hasOf)) {
        m_at += term.words;
        return std::make_unique<PropertyExpression>(Symbol::Length);
    }
    if (kinds & ClassName)
        return parseClass(term);
    m_at += term.words;
    if (kinds & FileApplicationProperty && !(kinds & ConstantName))
        return std::make_unique<PropertyExpression>(term.symbol);
    // `pi of me`, `AppleScript's tab`: the container of a constant says nothing.
    return parseConstant(term.symbol);
}

ExpressionPointer Parser::parseConstant(Symbol name)
{
    const bool isPart = m_at >= 2 && m_tokens[m_at - 2].is(TokenType::Possessive);
    if (isPart)
        return std::make_unique<PropertyExpression>(name);
    if (name == Symbol::MissingValue)
        return std::make_unique<Literal>(Datum::missing());
    if (name == Symbol::CurrentApplication)
        return std::make_unique<Literal>(make<ApplicationObject>(String()));
    if (m_unknownWords && name == Symbol::Desktop)
        return std::make_unique<PropertyExpression>(name);
    if (auto value = name == Symbol::Version || name == Symbol::Name ? std::nullopt : languageConstant(name))
        return std::make_unique<Literal>(*std::move(value));
    return std::make_unique<Literal>(Datum::constant(name));
}

// A class by itself, an object made from what follows, or elements.
ExpressionPointer Parser::parseClass(const TermMatch& term)
{
    const Symbol name = term.symbol;
    const bool isPart = followsPossessive();
    m_at += term.words;
    const bool makesObject = name == Symbol::Application || name == Symbol::PosixFile || name == Symbol::Alias
        || name == Symbol::Date || name == Symbol::FileUrl;
    if (makesObject && !term.isPlural) {
        if (name == Symbol::Application)
            accept(Symbol::Id);
        if (startsIndex())
            return std::make_unique<ObjectExpression>(canonicalClass(name), parsePostfix());
    }
    // The text of code points.
    const bool isText = canonicalClass(name) == Symbol::Text || name == Symbol::Character;
    if (isText && at(Symbol::Id) && !peek(1).is(Symbol::Of)) {
        next();
        return std::make_unique<ObjectExpression>(
            Symbol::Id, at(TokenType::LeftBrace) ? parseList() : parseIndex());
    }
    const bool hasElements = (term.kinds & ElementClass) != 0;
    const bool hasOf = at(Symbol::Of) || at(Symbol::In);
    const bool selects = startsIndex() || at(Symbol::From) || at(Symbol::Named)
        || (at(Symbol::Id) && !peek(1).is(Symbol::Of))
        || (at(Symbol::Index) && peek(1).is(TokenType::Integer));
    if (hasElements
        && (selects || hasOf || term.isPlural || at(Symbol::Whose) || at(Symbol::Where) || isPart))
        return parseElement(name);
    return std::make_unique<Literal>(Datum::classNamed(canonicalClass(name)));
}

// The class is gone: an index, a range, a name, or all elements.
ExpressionPointer Parser::parseElement(Symbol elementClass)
{
    using Form = Selector::Form;
    auto element = std::make_unique<ElementExpression>(canonicalClass(elementClass), Form::Every);
    if (accept(Symbol::Named)) {
        element->form = Form::Named;
        element->key = parseIndex();
        return element;
    }
    if (at(Symbol::Id) && !peek(1).is(Symbol::Of)) {
        next();
        element->form = Form::WithId;
        element->key = parseIndex();
        return element;
    }
    accept(Symbol::Index);
    // text from word 1 to word 3
    if (at(Symbol::From)) {
        next();
        element->form = Form::Range;
        parseRangeEnd(element->key, element->keyClass);
        if (!accept(Symbol::To) && !accept(Symbol::Thru))
            expect(Symbol::Through);
        parseRangeEnd(element->lastKey, element->lastKeyClass);
        return element;
    }
    if (!startsIndex())
        return element;
    element->form = Form::Index;
    parseRangeEnd(element->key, element->keyClass);
    if (accept(Symbol::Thru) || accept(Symbol::Through)) {
        element->form = Form::Range;
        parseRangeEnd(element->lastKey, element->lastKeyClass);
    }
    return element;
}

// An end of a range: a number, or an element of another class by its number.
void Parser::parseRangeEnd(ExpressionPointer& key, Symbol& keyClass)
{
    if (at(Symbol::Beginning) || at(Symbol::End)) {
        key = std::make_unique<Literal>(Datum::integer(at(Symbol::End) ? -1 : 1));
        next();
        return;
    }
    const TermMatch term = termHere();
    if (term.words && (term.kinds & ElementClass) && !m_scopes.isDeclared(peek().symbol)) {
        m_at += term.words;
        keyClass = term.symbol;
    }
    key = parseIndex();
}

// Nothing that goes on behind it: item i of x is (item i) of x.
ExpressionPointer Parser::parseIndex()
{
    const Nesting nesting(*this);
    if (accept(TokenType::Minus))
        return std::make_unique<NegateExpression>(parseIndex());
    accept(Symbol::The);
    if (at(Symbol::My) || at(Symbol::Its) || !at(TokenType::Word))
        return parsePrimary();
    if (termHere().words && !m_scopes.isDeclared(peek().symbol))
        return parsePrimary();
    return parseIdentifier();
}

// first item, last word, 2nd paragraph, some character; the ordinal word is gone.
ExpressionPointer Parser::parseOrdinal(Symbol word)
{
    using Form = Selector::Form;
    std::int64_t index = 1;
    if (word == Symbol::None)
        index = static_cast<std::int64_t>(next().number);
    else if (word == Symbol::Last || word == Symbol::Back)
        index = -1;
    else if (word >= Symbol::Second && word <= Symbol::Tenth)
        index = 2 + static_cast<int>(word) - static_cast<int>(Symbol::Second);
    const TermMatch term = termHere();
    if (!term.words || !(term.kinds & ElementClass))
        failExpected(String(u"class name"));
    m_at += term.words;
    const Form form = word == Symbol::Some ? Form::Some : word == Symbol::Middle ? Form::Middle : Form::Index;
    auto element = std::make_unique<ElementExpression>(canonicalClass(term.symbol), form);
    if (form == Form::Index)
        element->key = std::make_unique<Literal>(Datum::integer(index));
    return element;
}

ExpressionPointer Parser::parseEvery()
{
    expect(Symbol::Every);
    const TermMatch term = termHere();
    if (!term.words || !(term.kinds & ElementClass))
        failExpected(String(u"class name"));
    m_at += term.words;
    return std::make_unique<ElementExpression>(canonicalClass(term.symbol), Selector::Form::Every);
}

} // namespace caddis::applescript
