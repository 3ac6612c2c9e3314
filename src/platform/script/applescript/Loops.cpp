#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/Expressions.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Statements.h"

namespace caddis::applescript {

Flow RepeatStatement::execute(Frame& frame) const
{
    std::int64_t rounds = 0;
    if (form == Form::Times)
        rounds = requireInteger(frame.interpreter, condition->evaluate(frame));
    while (true) {
        if (form == Form::Times && rounds-- <= 0)
            return Flow::Next;
        if (form == Form::While && !truth(frame, *condition))
            return Flow::Next;
        if (form == Form::Until && truth(frame, *condition))
            return Flow::Next;
        frame.interpreter.step();
        const Flow flow = body.execute(frame);
        if (flow != Flow::Next)
            return flow == Flow::Exit ? Flow::Next : flow;
    }
}

// The ends and the step are looked at once; what the body does to the variable does not change the rounds.
Flow RepeatFromStatement::execute(Frame& frame) const
{
    Interpreter& interpreter = frame.interpreter;
    const std::int64_t start = requireInteger(interpreter, first->evaluate(frame));
    const std::int64_t end = requireInteger(interpreter, last->evaluate(frame));
    const std::int64_t by = step ? requireInteger(interpreter, step->evaluate(frame)) : 1;
    if (by == 0)
        fail(ScriptErrorNumber::InvalidRange, String(u"The step of a repeat cannot be zero."));
    for (std::int64_t counter = start; by > 0 ? counter <= end : counter >= end; counter += by) {
        interpreter.step();
        place->assign(frame, Datum::number(counter));
        const Flow flow = body.execute(frame);
        if (flow != Flow::Next)
            return flow == Flow::Exit ? Flow::Next : flow;
    }
    return Flow::Next;
}

Flow RepeatInStatement::execute(Frame& frame) const
{
    Interpreter& interpreter = frame.interpreter;
    Datum items = interpreter.value(list->evaluate(frame));
    if (items.is(Kind::Text))
        items = get(interpreter, items, { Selector::Form::Every, Symbol::Character });
    if (!items.is(Kind::List))
        items = coerce(interpreter, items, Symbol::List);
    // The list may grow on the way; the rounds are those that it had items at the start.
    const std::size_t count = items.as<List>().count();
    for (std::size_t index = 0; index < count && index < items.as<List>().count(); ++index) {
        interpreter.step();
        const Datum& item = items.as<List>().items()[index];
        const bool isItself = item.is(Kind::File) || item.is(Kind::Reference) || item.is(Kind::Specifier);
        Selector selector { Selector::Form::Index, Symbol::Item };
        selector.key = Datum::integer(static_cast<std::int64_t>(index) + 1);
        place->assign(frame, isItself ? item : make<ReferenceObject>(items, std::move(selector)));
        const Flow flow = body.execute(frame);
        if (flow != Flow::Next)
            return flow == Flow::Exit ? Flow::Next : flow;
    }
    return Flow::Next;
}

} // namespace caddis::applescript
