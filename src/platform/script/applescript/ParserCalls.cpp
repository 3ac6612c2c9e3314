#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/ParserNesting.h"
#include "platform/script/applescript/Restored.h"

#include <algorithm>

namespace caddis::applescript {

ExpressionPointer Parser::parseCall(Symbol name)
{
    auto call = std::make_unique<CallExpression>(name);
    expect(TokenType::LeftParenthesis, u"“(”");
    unsigned below = 1;
    skipNewlines();
    while (!accept(TokenType::RightParenthesis)) {
        call->arguments.push_back(parseExpression());
        below = std::max(below, call->arguments.back()->depth);
        if (!at(TokenType::RightParenthesis))
            expect(TokenType::Comma, u"“,” or “)”");
    }
    return checked(std::move(call), below);
}

// first:a second:b calls `first:second:`.
ExpressionPointer Parser::parseInterleavedCall(Symbol name)
{
    String whole = plainName(name);
    auto call = std::make_unique<CallExpression>(name);
    while (accept(TokenType::Colon)) {
        whole = format(u"%@:", whole);
        call->arguments.push_back(parseBinary(Concatenation));
        const bool goesOn
            = (at(TokenType::Word) || at(TokenType::BarredName)) && peek(1).is(TokenType::Colon);
        if (goesOn)
            whole = format(u"%@%@", whole, plainName(next().symbol));
    }
    call->name = symbolOfUserName(whole);
    return call;
}

// name of direct given a:b, with c without d from e; the name is gone.
ExpressionPointer Parser::parseLabelledCall(Symbol name)
{
    const Nesting nesting(*this);
    auto call = std::make_unique<LabelledCallExpression>(name);
    const auto isLabel
        = [&] { return at(TokenType::Word) && (isPreposition(peek().symbol) || at(Symbol::Given)); };
    const bool marked = accept(Symbol::Of) || accept(Symbol::In);
    if (marked || (!isLabel() && startsOperand()))
        call->direct = parseBinary(As);
    while (true) {
        if (accept(Symbol::Given))
            parseGiven(*call);
        else if (accept(Symbol::With))
            parseFlags(*call, true);
        else if (accept(Symbol::Without))
            parseFlags(*call, false);
        else if (isLabel()) {
            const Symbol label = next().symbol;
            call->labelled.emplace_back(label, parseBinary(As));
        } else
            return call;
        if (at(TokenType::Comma)
            && (peek(1).is(Symbol::With) || peek(1).is(Symbol::Without) || peek(1).is(Symbol::Given)))
            next();
    }
}

void Parser::parseGiven(LabelledCallExpression& call)
{
    do {
        const Symbol label = parseName();
        expect(TokenType::Colon, u"“:”");
        call.labelled.emplace_back(label, parseBinary(As));
    } while (accept(TokenType::Comma));
}

void Parser::parseFlags(LabelledCallExpression& call, bool value)
{
    do {
        call.labelled.emplace_back(parseName(), std::make_unique<Literal>(Datum::boolean(value)));
        if (at(TokenType::Comma) && (peek(1).is(Symbol::With) || peek(1).is(Symbol::Without)))
            return;
    } while (accept(TokenType::Comma) || accept(Symbol::And));
}

// The command's name is gone.
ExpressionPointer Parser::parseCommand(const CommandMatch& match)
{
    const Nesting nesting(*this);
    auto command = std::make_unique<CommandExpression>(*match.spec);
    const CommandSpec& spec = *match.spec;
    const bool beginsParameter = matchParameter(spec, upcomingWords()).has_value();
    const Restored<bool> label(m_inIsLabel);
    m_inIsLabel = std::ranges::any_of(
        spec.parameters, [](const CommandParameter& parameter) { return parameter.label == "in"; });
    if (!beginsParameter) {
        accept(Symbol::Of);
        if (startsOperand() || (at(Symbol::Script) && spec.needsDirect)) {
            const bool hasAs = std::ranges::any_of(
                spec.parameters, [](const CommandParameter& parameter) { return parameter.label == "as"; });
            command->direct = spec.bindsTightly ? parsePostfix()
                : spec.takesWholeExpression     ? parseExpression()
                                                : parseBinary(hasAs ? Concatenation : As);
        }
    }
    while (parseCommandParameter(*command)) { }
    return command;
}

bool Parser::parseCommandParameter(CommandExpression& command)
{
    const auto parameter = matchParameter(command.spec, upcomingWords());
    if (parameter) {
        m_at += parameter->second;
        const bool isType = command.spec.parameters[parameter->first].label == "as";
        command.arguments.emplace_back(parameter->first, isType ? parseType() : parseBinary(Concatenation));
        return true;
    }
    const std::size_t start = m_at;
    const std::size_t count = command.arguments.size();
    const bool value = at(Symbol::With);
    if (!accept(Symbol::With) && !accept(Symbol::Without))
        return false;
    parseCommandFlags(command, value);
    if (command.arguments.size() == count) {
        m_at = start;
        return false;
    }
    return true;
}

void Parser::parseCommandFlags(CommandExpression& command, bool value)
{
    while (true) {
        const auto parameter = matchParameter(command.spec, upcomingWords());
        if (!parameter || !command.spec.parameters[parameter->first].isFlag)
            return;
        m_at += parameter->second;
        command.arguments.emplace_back(parameter->first, std::make_unique<Literal>(Datum::boolean(value)));
        if (!at(TokenType::Comma) && !at(Symbol::And))
            return;
        const std::size_t separator = m_at;
        next();
        accept(Symbol::And);
        if (!matchParameter(command.spec, upcomingWords())) {
            m_at = separator;
            return;
        }
    }
}

} // namespace caddis::applescript
