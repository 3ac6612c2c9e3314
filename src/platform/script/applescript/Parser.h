#pragma once

#include "platform/script/applescript/Calls.h"
#include "platform/script/applescript/Expressions.h"
#include "platform/script/applescript/Lexer.h"
#include "platform/script/applescript/Scopes.h"
#include "platform/script/applescript/Specifiers.h"
#include "platform/script/applescript/Statements.h"
#include "platform/script/applescript/Terms.h"

namespace caddis::applescript {

class ApplicationTable;
struct CommandMatch;

/// Reads a source into a program, by recursive descent.
///
/// The words after a term decide what it is: `text` is a class in `as text`, an element in `text 1 thru 3`, a
/// property in `text of x`. Words inside a tell block to an application belong to its dictionary; what does
/// not parse there because the dictionary is not known becomes an UnknownExpression, which fails when it is
/// reached.
class Parser {
public:
    Parser(const String& source, ApplicationTable& applications);

    std::shared_ptr<const Program> parse();

private:
    /// How tightly binary operators bind; a level takes its own operators and all tighter ones.
    enum Level { Or, And, Not, Comparison, As, Concatenation, Sum, Product, Power, Unary };

    // Tokens (Parser.cpp).
    const Token& peek(std::size_t ahead = 0) const;
    const Token& next();
    bool at(TokenType type) const { return peek().is(type); }
    bool at(Symbol word) const { return peek().is(word); }
    bool accept(TokenType type);
    bool accept(Symbol word);
    void expect(TokenType type, const char16_t* what);
    void expect(Symbol word);
    void expectEndOfStatement();
    void skipLine();
    void skipNewlines();
    Range rangeFrom(std::size_t firstToken) const;
    std::vector<Symbol> upcomingWords() const;
    [[noreturn]] void failExpected(const String& what) const;
    String describe(const Token& token) const;
    void collectNames();
    /// One level of nesting, given back when it goes.
    class Nesting;

    // Scripts and handlers (ParserScripts.cpp).
    void parseScriptBody(ScriptCode& code);
    void parseScriptLine(ScriptCode& code, std::vector<std::unique_ptr<Statement>>& statements);
    void parseScriptLinesUsingTerms(ScriptCode& code, std::vector<std::unique_ptr<Statement>>& statements);
    void parseUsingTermsHead();
    void parseProperty(ScriptCode& code);
    void parseHandler(ScriptCode& code);
    void parseHandlerHead(HandlerCode& handler);
    void parsePositionalParameters(HandlerCode& handler);
    void parseInterleavedParameters(HandlerCode& handler);
    void parseLabelledParameters(HandlerCode& handler);
    Symbol parseName();
    Symbol parseHandlerName();
    ExpressionPointer parsePattern();
    void addSlot(ScriptCode& code, ScriptCode::Slot slot, ScriptErrorNumber duplicate);
    std::unique_ptr<ScriptCode> parseScriptObject();
    bool startsHandler() const;

    // Statements (ParserStatements.cpp, ParserBlocks.cpp, ParserErrors.cpp, ParserLoops.cpp).
    Block parseBlock();
    Block parseBlockUntilEnd();
    bool endsBlock() const;
    void parseEnd();
    std::unique_ptr<Statement> parseStatement();
    std::unique_ptr<Statement> parseStatementStrictly();
    std::unique_ptr<Statement> skipUnknownStatement(std::size_t first);
    bool isSetCommand() const;
    std::unique_ptr<Statement> parseSetCommand();
    std::unique_ptr<Statement> parseSet();
    std::unique_ptr<Statement> parseCopy();
    std::unique_ptr<Statement> parseIf();
    std::unique_ptr<Statement> parseTell();
    std::unique_ptr<Statement> parseTry();
    template <typename T> void parseErrorParts(T& statement, ExpressionPointer (Parser::*part)());
    std::unique_ptr<Statement> parseError();
    std::unique_ptr<Statement> parseReturn();
    std::unique_ptr<Statement> parseExit();
    std::unique_ptr<Statement> parseAttributes(bool considers);
    unsigned parseAttributeList();
    std::unique_ptr<Statement> parseWith();
    std::unique_ptr<Statement> parseTimeout();
    std::unique_ptr<Statement> parseUsingTerms();
    std::unique_ptr<Statement> parseDeclaration();
    std::unique_ptr<Statement> parseNestedScript();
    std::unique_ptr<Statement> parseContinue();
    std::unique_ptr<Statement> parseExpressionStatement();
    std::unique_ptr<Statement> parseRepeat();
    std::unique_ptr<Statement> parseRepeatWith(std::size_t first);
    template <typename T> void finishLoop(T& statement, std::size_t first);
    ExpressionPointer parsePlace();
    void markAssigned(Expression& place);

    // Applications and their words (ParserApplications.cpp).
    std::size_t applicationNameLength() const;
    std::shared_ptr<const ApplicationTerms> termsNamedInLine() const;
    void useTermsOf(const Expression& target);
    TermMatch termHere() const;
    CommandMatch commandHere() const;
    bool beginsDictionaryPhrase() const;
    /// Words of the application that the rest of the line names, where no tell block gives any.
    class LineTerms;

    // Expressions (ParserExpressions.cpp).
    ExpressionPointer parseExpression() { return parseBinary(Or); }
    ExpressionPointer parseBinary(Level level);
    ExpressionPointer parseUnary();
    ExpressionPointer combine(Operator operation, ExpressionPointer left, ExpressionPointer right);
    bool acceptIsRunning();
    std::optional<Operator> acceptComparison();
    std::optional<Operator> acceptIs();
    std::optional<Operator> acceptDoesNot();
    std::optional<Operator> acceptRelation();
    std::optional<Operator> acceptArithmetic(Level level);
    ExpressionPointer parseList();
    ExpressionPointer parseType();
    ExpressionPointer parseRaw();
    ExpressionPointer checked(ExpressionPointer expression, unsigned below);

    // Operands and what they are parts of (ParserOperands.cpp, ParserSpecifiers.cpp).
    ExpressionPointer parsePostfix(bool isContainer = false);
    ExpressionPointer parsePostfixOf(ExpressionPointer expression, bool isContainer);
    ExpressionPointer parsePrimary();
    ExpressionPointer parseWord();
    ExpressionPointer parseReservedWord();
    ExpressionPointer parseTerm(const TermMatch& term);
    ExpressionPointer parseConstant(Symbol name);
    ExpressionPointer parseClass(const TermMatch& term);
    ExpressionPointer parseElement(Symbol elementClass);
    ExpressionPointer parseOrdinal(Symbol word);
    ExpressionPointer parseEvery();
    void parseRangeEnd(ExpressionPointer& key, Symbol& keyClass);
    ExpressionPointer parseIndex();
    ExpressionPointer parseIdentifier();
    ExpressionPointer parseCall(Symbol name);
    ExpressionPointer parseInterleavedCall(Symbol name);
    ExpressionPointer parseLabelledCall(Symbol name);
    void parseGiven(LabelledCallExpression& call);
    void parseFlags(LabelledCallExpression& call, bool value);
    ExpressionPointer parseCommand(const CommandMatch& match);
    bool parseCommandParameter(CommandExpression& command);
    void parseCommandFlags(CommandExpression& command, bool value);
    ExpressionPointer attach(ExpressionPointer part, ExpressionPointer container);
    ExpressionPointer variable(Symbol name);
    bool startsOperand() const;
    bool startsIndex() const;
    bool followsPossessive() const;

    const String m_source;
    std::vector<Token> m_tokens;
    std::size_t m_at = 0;
    unsigned m_depth = 0;
    unsigned m_loops = 0;
    unsigned m_unknownWords = 0; ///< tell blocks around this place whose words are not all known
    bool m_inIsLabel = false; ///< of the command being read, so that it is no `of`
    ApplicationTable& m_applicationTable;
    std::shared_ptr<const ApplicationTerms> m_terms; ///< the dictionary at this place, if there is one
    std::vector<std::size_t> m_applicationNames; ///< tokens at which an application is named by a literal
    Scopes m_scopes;
    std::unordered_set<Symbol> m_handlerNames; ///< of the whole source, found before all else
    std::unordered_set<Symbol> m_labelledHandlers; ///< those of them that are called without parentheses
    std::shared_ptr<Program> m_program; ///< goes before the scopes, which its variables know
};

/// Whether the word may stand before a labelled parameter.
bool isPreposition(Symbol word);

/// Compiles a source on the current heap, which the applications belong to. Fails with a syntax error and its
/// range.
std::shared_ptr<const Program> parseScript(const String& source, ApplicationTable& applications);

} // namespace caddis::applescript
