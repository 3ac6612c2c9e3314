#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/TextComparison.h"

// Statements around other statements: tell, considering and ignoring, with timeout, using terms from.
namespace caddis::applescript {

bool Parser::isApplicationName() const
{
    const bool named = at(Symbol::Application) || at(symbolOfPlainName(u"app"));
    return named && !peek(1).is(TokenType::EndOfLine);
}

std::unique_ptr<Statement> Parser::parseTell()
{
    auto statement = std::make_unique<TellStatement>(peek().range);
    expect(Symbol::Tell);
    accept(Symbol::The);
    const unsigned outer = m_applications;
    if (isApplicationName())
        ++m_applications;
    statement->target = parseExpression();
    if (const auto* object = dynamic_cast<ObjectExpression*>(statement->target.get());
        object && object->objectClass == Symbol::Application)
        m_applications = outer + 1;
    if (accept(Symbol::To)) {
        statement->body.statements.push_back(parseStatement());
    } else {
        expectEndOfStatement();
        statement->body = parseBlockUntilEnd();
    }
    m_applications = outer;
    return statement;
}

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

// with timeout of n seconds, with transaction: the deadline of the whole call stands above the former.
std::unique_ptr<Statement> Parser::parseWith()
{
    auto statement = std::make_unique<BlockStatement>(peek().range);
    expect(Symbol::With);
    if (accept(Symbol::Timeout)) {
        accept(Symbol::Of);
        parseExpression();
        if (!accept(Symbol::Seconds))
            accept(symbolOfPlainName(u"second"));
    } else {
        expect(Symbol::Transaction);
        if (!at(TokenType::EndOfLine))
            parseExpression();
    }
    expectEndOfStatement();
    statement->body = parseBlockUntilEnd();
    return statement;
}

std::unique_ptr<Statement> Parser::parseUsingTerms()
{
    auto statement = std::make_unique<BlockStatement>(peek().range);
    expect(Symbol::Using);
    expect(Symbol::TermsWord);
    expect(Symbol::From);
    skipLine();
    ++m_applications;
    statement->body = parseBlockUntilEnd();
    --m_applications;
    return statement;
}

} // namespace caddis::applescript
