#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/ParserLineTerms.h"
#include "platform/script/applescript/ParserNesting.h"
#include "platform/script/applescript/Restored.h"

#include <algorithm>

// tell blocks, and which dictionary the words inside belong to.
namespace caddis::applescript {

// The tokens of `application "x"` or `application id "x"` here, or 0.
std::size_t Parser::applicationNameLength() const
{
    const bool named = at(Symbol::Application) || at(symbolOfPlainName(u"app"));
    const std::size_t name = peek(1).is(Symbol::Id) ? 2 : 1;
    return named && peek(name).is(TokenType::String) ? name + 1 : 0;
}

std::shared_ptr<const ApplicationTerms> Parser::termsNamedInLine() const
{
    const auto first = std::ranges::lower_bound(m_applicationNames, m_at);
    if (first == m_applicationNames.end())
        return nullptr;
    for (std::size_t index = m_at; index < *first; ++index) {
        if (m_tokens[index].is(TokenType::EndOfLine))
            return nullptr;
    }
    const std::size_t name = *first + (m_tokens[*first + 1].is(Symbol::Id) ? 2 : 1);
    const bool isLiteral = name < m_tokens.size() && m_tokens[name].is(TokenType::String);
    return isLiteral ? m_applicationTable.named(m_tokens[name].text) : nullptr;
}

// What a block is told to decides about its words, unless it is a part of what is told to around it.
void Parser::useTermsOf(const Expression& target)
{
    const auto* object = dynamic_cast<const ObjectExpression*>(&target);
    if (!object || object->objectClass != Symbol::Application)
        return;
    const auto* name = dynamic_cast<const Literal*>(object->key.get());
    const auto* text = name ? name->value.get<Text>() : nullptr;
    m_terms = text ? m_applicationTable.named(text->value()) : nullptr;
    if (m_terms)
        m_program->applications.push_back(m_terms);
    else
        ++m_unknownWords;
}

std::unique_ptr<Statement> Parser::parseTell()
{
    auto statement = std::make_unique<TellStatement>(peek().range);
    const Restored<unsigned> unknownWords(m_unknownWords);
    const Restored<std::shared_ptr<const ApplicationTerms>> terms(m_terms);
    expect(Symbol::Tell);
    accept(Symbol::The);
    const std::size_t name = applicationNameLength();
    if (!name) {
        if (auto named = termsNamedInLine())
            m_terms = std::move(named);
        else if (at(Symbol::Application) && !peek(1).is(TokenType::EndOfLine))
            ++m_unknownWords;
    }
    statement->target = parseExpression();
    useTermsOf(*statement->target);
    if (accept(Symbol::To)) {
        statement->body.statements.push_back(parseStatement());
    } else {
        expectEndOfStatement();
        statement->body = parseBlockUntilEnd();
    }
    return statement;
}

std::unique_ptr<Statement> Parser::parseUsingTerms()
{
    auto statement = std::make_unique<BlockStatement>(peek().range);
    const Restored<unsigned> unknownWords(m_unknownWords);
    const Restored<std::shared_ptr<const ApplicationTerms>> terms(m_terms);
    parseUsingTermsHead();
    statement->body = parseBlockUntilEnd();
    return statement;
}

// The same around handlers and properties.
void Parser::parseScriptLinesUsingTerms(ScriptCode& code, std::vector<std::unique_ptr<Statement>>& statements)
{
    const Nesting nesting(*this);
    const Restored<unsigned> unknownWords(m_unknownWords);
    const Restored<std::shared_ptr<const ApplicationTerms>> terms(m_terms);
    parseUsingTermsHead();
    for (skipNewlines(); !at(TokenType::EndOfText) && !at(Symbol::End); skipNewlines())
        parseScriptLine(code, statements);
    parseEnd();
}

void Parser::parseUsingTermsHead()
{
    expect(Symbol::Using);
    expect(Symbol::TermsWord);
    expect(Symbol::From);
    m_terms = termsNamedInLine();
    if (m_terms)
        m_program->applications.push_back(m_terms);
    else
        ++m_unknownWords;
    skipLine();
}

Parser::LineTerms::LineTerms(Parser& parser)
    : m_parser(parser)
{
    if (parser.m_terms || parser.m_applicationNames.empty())
        return;
    parser.m_terms = parser.termsNamedInLine();
    m_isUsed = parser.m_terms != nullptr;
    if (m_isUsed)
        parser.m_program->applications.push_back(parser.m_terms);
}

Parser::LineTerms::~LineTerms()
{
    if (m_isUsed)
        m_parser.m_terms = nullptr;
}

TermMatch Parser::termHere() const
{
    const std::vector<Symbol> words = upcomingWords();
    const TermMatch common = matchTerm(words, m_unknownWords != 0);
    const TermMatch own = m_terms ? m_terms->match(words) : TermMatch();
    return own.words && own.words >= common.words ? own : common;
}

CommandMatch Parser::commandHere() const
{
    const std::vector<Symbol> words = upcomingWords();
    const CommandMatch common = matchCommand(words);
    const CommandMatch own = m_terms ? m_terms->matchCommand(words) : CommandMatch();
    return own.words && (own.words >= common.words || common.spec->isOfFiles) ? own : common;
}

// Several words of the dictionary, the first of which is a word of the language elsewhere: `end time`.
bool Parser::beginsDictionaryPhrase() const
{
    if (!m_terms)
        return false;
    const std::vector<Symbol> words = upcomingWords();
    return m_terms->match(words).words > 1 || m_terms->matchCommand(words).words > 1;
}

} // namespace caddis::applescript
