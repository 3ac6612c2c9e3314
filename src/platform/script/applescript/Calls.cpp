#include "platform/script/applescript/Calls.h"

#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Interpreter.h"
#include "platform/script/applescript/SourceText.h"

#include <array>

namespace caddis::applescript {

namespace {

struct Recipient {
    Callee callee;
    ScriptObject* self = nullptr;
};

[[noreturn]] void failNotUnderstood(const Datum& target, Symbol name)
{
    Failure failure;
    failure.number = static_cast<int>(ScriptErrorNumber::NotUnderstood);
    failure.message = format(u"%@ doesn’t understand the “%@” message.", sourceText(target), plainName(name));
    failure.offender = target;
    throw Failure(failure);
}

// The parent's handler of that name, run for the same `me`.
Recipient continuedHandler(Frame& frame, Symbol name)
{
    ScriptObject* parent = frame.home->parentScript();
    const Callee callee = parent ? findHandler(*parent, name) : Callee();
    if (!callee)
        failNotUnderstood(Datum::object(frame.self), name);
    return { callee, frame.self };
}

// An explicit target has to know the handler; else `it` is asked, then `me`.
Recipient recipientOf(Frame& frame, const Datum& target, Symbol name)
{
    if (target.isSet()) {
        auto* script = target.get<ScriptObject>();
        const Callee callee = script ? findHandler(*script, name) : Callee();
        if (!callee)
            failNotUnderstood(target, name);
        return { callee, script };
    }
    if (auto* script = frame.target.get<ScriptObject>()) {
        if (const Callee callee = findHandler(*script, name))
            return { callee, script };
    }
    if (const Callee callee = findHandler(*frame.self, name))
        return { callee, frame.self };
    // Code of a parent or an outer script sees its own surroundings too.
    if (const Callee callee = findHandler(*frame.home, name))
        return { callee, frame.home };
    failNotUnderstood(Datum::object(frame.self), name);
}

} // namespace

Datum CallExpression::evaluate(Frame& frame) const
{
    Interpreter& interpreter = frame.interpreter;
    const Datum receiver = target ? interpreter.value(target->evaluate(frame)) : Datum();
    constexpr std::size_t FewArguments = 4;
    std::array<Datum, FewArguments> few;
    std::vector<Datum> many(arguments.size() > FewArguments ? arguments.size() : 0);
    const std::span<Datum> values(many.empty() ? few.data() : many.data(), arguments.size());
    for (std::size_t index = 0; index < arguments.size(); ++index)
        values[index] = arguments[index]->evaluate(frame);
    const Recipient recipient
        = continues ? continuedHandler(frame, name) : recipientOf(frame, receiver, name);
    return interpreter.call(recipient.callee, *recipient.self, values);
}

Datum LabelledCallExpression::evaluate(Frame& frame) const
{
    Interpreter& interpreter = frame.interpreter;
    const Datum receiver = target ? interpreter.value(target->evaluate(frame)) : Datum();
    Interpreter::LabelledArguments values;
    if (direct)
        values.direct = direct->evaluate(frame);
    for (const auto& [label, value] : labelled)
        values.labelled.emplace_back(label, value->evaluate(frame));
    const Recipient recipient
        = continues ? continuedHandler(frame, name) : recipientOf(frame, receiver, name);
    return interpreter.callLabelled(recipient.callee, *recipient.self, values);
}

Datum CommandExpression::evaluate(Frame& frame) const
{
    CommandCall call(frame, spec);
    const auto argument = [&](const Expression& expression) {
        return spec.takesContainer ? expression.asContainer(frame) : expression.evaluate(frame);
    };
    if (direct)
        call.direct = spec.takesReference ? direct->reference(frame) : argument(*direct);
    else if (frame.target.isSet() && spec.defaultsToTarget)
        call.direct = frame.target;
    for (const auto& [parameter, value] : arguments)
        call.setArgument(parameter, argument(*value));
    return spec.perform(call);
}

} // namespace caddis::applescript
