#include "platform/script/applescript/Variables.h"

#include "platform/script/applescript/Failure.h"

namespace caddis::applescript {

void Expression::assign(Frame&, const Datum&) const
{
    fail(ScriptErrorNumber::IllegalAssignment, String(u"Can’t set this expression to another value."));
}

void Variable::failUndefined() const
{
    fail(ScriptErrorNumber::VariableNotDefined, format(u"The variable %@ is not defined.", sourceName(name)));
}

Datum Variable::unsetLocal(Frame& frame) const
{
    if (fallsBack) {
        const Datum& captured = frame.home->ancestor(fallbackDepth).captures[fallbackSlot];
        if (captured.isSet())
            return captured;
    }
    failUndefined();
}

Datum Variable::evaluate(Frame& frame) const
{
    switch (place) {
    case Place::Local: {
        const Datum& value = frame.locals[slot];
        return value.isSet() ? value : unsetLocal(frame);
    }
    case Place::Slot:
        return slotValue(frame.home->ancestor(scriptDepth), slot);
    case Place::Global: {
        const Datum& value = frame.home->top().globals[slot];
        if (!value.isSet())
            failUndefined();
        return value;
    }
    case Place::Capture: {
        const Datum& value = frame.home->ancestor(scriptDepth).captures[slot];
        if (!value.isSet())
            failUndefined();
        return value;
    }
    case Place::Script:
        return Datum::object(&frame.home->ancestor(scriptDepth));
    case Place::Unknown:
        break;
    }
    failUndefined();
}

Datum Variable::reference(Frame& frame) const
{
    if (place != Place::Slot && place != Place::Global)
        return evaluate(frame);
    ScriptObject& script = place == Place::Slot ? frame.home->ancestor(scriptDepth) : frame.home->top();
    return make<ReferenceObject>(Datum::object(&script), Selector { Selector::Form::Variable, name });
}

void Variable::assign(Frame& frame, const Datum& value) const
{
    switch (place) {
    case Place::Local:
        frame.locals[slot] = value;
        break;
    case Place::Slot:
        frame.home->ancestor(scriptDepth).slots[slot] = value;
        break;
    case Place::Global:
        frame.home->top().globals[slot] = value;
        break;
    case Place::Capture:
        frame.home->ancestor(scriptDepth).captures[slot] = value;
        break;
    default:
        Expression::assign(frame, value);
    }
}

Datum ResultExpression::evaluate(Frame& frame) const
{
    if (!frame.result.isSet())
        fail(ScriptErrorNumber::VariableNotDefined, String(u"The variable result is not defined."));
    return frame.result;
}

} // namespace caddis::applescript
