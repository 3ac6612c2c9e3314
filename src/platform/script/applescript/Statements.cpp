#include "platform/script/applescript/Statements.h"

#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/Expressions.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/FileSuite.h"
#include "platform/script/applescript/Restored.h"
#include "platform/script/applescript/TextComparison.h"

#include <algorithm>

namespace caddis::applescript {

namespace {

void assignIfWanted(const ExpressionPointer& place, Frame& frame, const Datum& value)
{
    if (place)
        place->assign(frame, value.isSet() ? value : Datum::missing());
}

Datum evaluated(const ExpressionPointer& expression, Frame& frame)
{
    return expression ? expression->evaluate(frame) : Datum();
}

} // namespace

Flow Block::execute(Frame& frame) const
{
    for (const auto& statement : statements) {
        frame.interpreter.step();
        frame.interpreter.position = statement->range;
        const Flow flow = statement->execute(frame);
        if (flow != Flow::Next)
            return flow;
    }
    return Flow::Next;
}

Flow ExpressionStatement::execute(Frame& frame) const
{
    frame.result = expression->evaluate(frame);
    return Flow::Next;
}

Flow SetStatement::execute(Frame& frame) const
{
    Datum result = value->evaluate(frame);
    if (!result.isSet())
        fail(ScriptErrorNumber::NoResult,
            String(u"No result was returned from some part of this expression."));
    if (copies)
        result = deepCopy(frame.interpreter, frame.interpreter.value(result));
    place->assign(frame, result);
    frame.result = std::move(result);
    return Flow::Next;
}

Flow IfStatement::execute(Frame& frame) const
{
    for (const Branch& branch : branches) {
        if (!branch.condition || truth(frame, *branch.condition))
            return branch.body.execute(frame);
    }
    return Flow::Next;
}

Flow TellStatement::execute(Frame& frame) const
{
    Datum told = frame.interpreter.value(target->asContainer(frame));
    requireApplication(told);
    const Restored<Datum> outer(frame.target);
    frame.target = std::move(told);
    return body.execute(frame);
}

Flow TryStatement::execute(Frame& frame) const
{
    Failure caught;
    try {
        return body.execute(frame);
    } catch (const Failure& failure) {
        if (failure.endsScript)
            throw;
        caught = failure;
    }
    frame.result = Datum();
    assignIfWanted(message, frame, Datum::text(caught.fullMessage()));
    assignIfWanted(number, frame, Datum::number(caught.number));
    assignIfWanted(offender, frame, caught.offender);
    assignIfWanted(expected, frame, caught.expected);
    assignIfWanted(partialResult, frame, caught.partialResult);
    return handler.execute(frame);
}

Flow ErrorStatement::execute(Frame& frame) const
{
    Interpreter& interpreter = frame.interpreter;
    Failure failure;
    if (message)
        failure.message = requireText(interpreter, message->evaluate(frame));
    if (number)
        failure.number = static_cast<int>(requireInteger(interpreter, number->evaluate(frame)));
    if (!message)
        failure.message = number ? format(u"An error of type %d has occurred.", failure.number)
                                 : String(u"An unknown error has occurred.");
    failure.offender = evaluated(offender, frame);
    failure.expected = evaluated(expected, frame);
    failure.partialResult = evaluated(partialResult, frame);
    throw Failure(failure);
}

Flow ReturnStatement::execute(Frame& frame) const
{
    frame.returned = evaluated(value, frame);
    return Flow::Return;
}

Flow AttributesStatement::execute(Frame& frame) const
{
    const Restored<unsigned> outer(currentAttributes());
    currentAttributes() = (currentAttributes() | considered) & ~ignored;
    return body.execute(frame);
}

Flow TimeoutStatement::execute(Frame& frame) const
{
    constexpr double Longest = 1e6;
    Interpreter& interpreter = frame.interpreter;
    const double wanted = requireNumber(interpreter, seconds->evaluate(frame)).asReal();
    const Restored<std::chrono::milliseconds> outer(interpreter.eventTimeout);
    interpreter.eventTimeout
        = std::chrono::milliseconds(static_cast<std::int64_t>(std::clamp(wanted, 0.0, Longest) * 1000));
    return body.execute(frame);
}

Flow ScriptStatement::execute(Frame& frame) const
{
    frame.result = instantiate(frame.interpreter, frame.home->program, *code, &frame);
    if (place)
        place->assign(frame, frame.result);
    return Flow::Next;
}

} // namespace caddis::applescript
