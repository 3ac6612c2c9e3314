#include "platform/script/applescript/RemoteObjects.h"

#include "platform/script/applescript/ApplicationTerms.h"
#include "platform/script/applescript/Bridge.h"
#include "platform/script/applescript/Failure.h"

#include <algorithm>

namespace caddis::applescript {

namespace {

constexpr FourCharCode CoreSuite = "core"_code;

// The application at the outer end of a specifier; not set for other values.
Datum applicationOf(Datum value)
{
    while (const auto* specifier = value.get<SpecifierObject>())
        value = Datum(specifier->container);
    return value.is(Kind::Application) && value.as<ApplicationObject>().terms ? value : Datum();
}

Datum send(Interpreter& interpreter, const Datum& application, const AppleEvent& event)
{
    const auto timeLeft = interpreter.timeLeft();
    const auto wait = std::min(interpreter.eventTimeout, timeLeft);
    const ScriptReply reply = application.as<ApplicationObject>().terms->application().send(event, wait);
    if (!reply.error)
        return reply.result.isNull() ? Datum() : valueFromDescriptor(reply.result, application);
    Failure failure;
    failure.number = reply.error->number;
    failure.message = reply.error->message;
    failure.applicationName = reply.error->applicationName;
    failure.endsScript = failure.is(ScriptErrorNumber::TimedOut) && wait == timeLeft;
    throw Failure(failure);
}

using Parameters = std::vector<std::pair<FourCharCode, Datum>>;

// The values of an event are described in the words of the application that gets it. An application itself
// is the null descriptor.
Datum send(Interpreter& interpreter, const Datum& application, FourCharCode eventClass, FourCharCode eventID,
    const Parameters& parameters)
{
    AppleEvent event;
    event.eventClass = eventClass;
    event.eventID = eventID;
    const ApplicationTerms& terms = *application.as<ApplicationObject>().terms;
    for (const auto& [keyword, value] : parameters)
        event.parameters.push_back({ keyword, descriptorFromValue(interpreter, value, &terms) });
    return send(interpreter, application, event);
}

} // namespace

bool isRemote(const Datum& value)
{
    return value.is(Kind::Specifier)
        || (value.is(Kind::Application) && value.as<ApplicationObject>().terms != nullptr);
}

Datum specifierOf(const Datum& container, const Selector& selector)
{
    return make<SpecifierObject>(container, selector);
}

Datum getRemote(Interpreter& interpreter, const Datum& specifier)
{
    return send(
        interpreter, applicationOf(specifier), CoreSuite, "getd"_code, { { "----"_code, specifier } });
}

void setRemote(Interpreter& interpreter, const Datum& specifier, const Datum& value)
{
    send(interpreter, applicationOf(specifier), CoreSuite, "setd"_code,
        { { "----"_code, specifier }, { "data"_code, value } });
}

Datum countRemote(Interpreter& interpreter, const Datum& specifier, Symbol elementClass)
{
    Datum container = specifier;
    Symbol counted = elementClass;
    const auto* object = specifier.get<SpecifierObject>();
    if (object && object->selector.form == Selector::Form::Every) {
        counted = object->selector.name;
        container = object->container;
    }
    return send(interpreter, applicationOf(specifier), CoreSuite, "cnte"_code,
        { { "----"_code, container }, { "kocl"_code, Datum::classNamed(counted) } });
}

Datum existsRemote(Interpreter& interpreter, const Datum& specifier)
{
    return send(
        interpreter, applicationOf(specifier), CoreSuite, "doex"_code, { { "----"_code, specifier } });
}

Datum sendCommand(CommandCall& call)
{
    const RemoteCommand& command = *call.spec.remote;
    const Datum direct = call.interpreter.value(call.direct);
    Datum application = applicationOf(direct);
    if (!application.isSet())
        application = applicationOf(call.frame.target);
    if (!application.isSet())
        fail(ScriptErrorNumber::NotUnderstood,
            format(u"The script doesn’t understand the “%s” message.", command.name));
    Parameters parameters;
    // What is told to an object of the application is about that object.
    if (direct.isSet() || call.frame.target.is(Kind::Specifier))
        parameters.emplace_back("----"_code, direct.isSet() ? direct : call.frame.target);
    for (std::size_t index = 0; index < command.codes.size(); ++index) {
        if (const Datum& argument = call.argumentAt(index); argument.isSet())
            parameters.emplace_back(command.codes[index], argument);
    }
    return send(call.interpreter, application, command.eventClass, command.eventID, parameters);
}

} // namespace caddis::applescript
