#include "platform/base/Log.h"
#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/FileSuite.h"
#include "platform/script/applescript/RemoteObjects.h"
#include "platform/script/applescript/SourceText.h"

namespace caddis::applescript {

namespace {

Datum count(CommandCall& call)
{
    const Datum& each = call.argument("each");
    const Datum value = call.requireDirect();
    const Symbol counted = each.is(Kind::Class) ? each.asSymbol() : Symbol::Item;
    if (isRemote(value))
        return countRemote(call.interpreter, value, counted);
    return Datum::number(countElements(call.interpreter, value, counted));
}

Datum logValue(CommandCall& call)
{
    const Datum value = call.direct.isSet() ? call.interpreter.value(call.direct) : Datum();
    const auto text = value.isSet() ? textOf(call.interpreter, value) : std::nullopt;
    log(u"(*%@*)", text && !value.is(Kind::List) ? *text : sourceText(value));
    return {};
}

// Whether what is named can be had at all.
Datum exists(CommandCall& call)
{
    if (call.direct.is(Kind::Specifier))
        return existsRemote(call.interpreter, call.direct);
    try {
        const Datum value = call.interpreter.value(call.direct);
        if (const auto* file = value.get<FileObject>())
            return fileProperty(call.interpreter, value, Symbol::Exists)
                .value_or(Datum::boolean(!file->path.isEmpty()));
        return Datum::boolean(value.isSet());
    } catch (const Failure& failure) {
        if (failure.endsScript)
            throw;
        return Datum::boolean(false);
    }
}

Datum runScriptObject(CommandCall& call)
{
    const Datum value = call.direct.isSet() ? call.interpreter.value(call.direct) : Datum();
    if (auto* script = value.get<ScriptObject>())
        return call.interpreter.run(*script);
    requireApplication(value);
    return {};
}

// Applications outside cannot be started from here.
Datum startApplication(CommandCall& call)
{
    const Datum value = call.direct.isSet() ? call.interpreter.value(call.direct) : Datum();
    requireApplication(value);
    if (value.is(Kind::Application)
        && !requireBoolean(call.interpreter, getProperty(call.interpreter, value, Symbol::Running)))
        fail(ScriptErrorNumber::ApplicationNotRunning, format(u"%@ isn’t running.", sourceText(value)));
    return {};
}

constexpr CommandParameter countParameters[] = { { "each" } };

constexpr CommandSpec commands[] = {
    { .name = "count",
        .perform = count,
        .parameters = countParameters,
        .bindsTightly = true,
        .defaultsToTarget = true,
        .takesContainer = true },
    { .name = "log", .perform = logValue, .parameters = {}, .takesWholeExpression = true },
    { .name = "exists",
        .perform = exists,
        .parameters = {},
        .bindsTightly = true,
        .takesReference = true,
        .defaultsToTarget = true },
    { .name = "run",
        .perform = runScriptObject,
        .parameters = {},
        .bindsTightly = true,
        .defaultsToTarget = true },
    { .name = "activate",
        .perform = startApplication,
        .parameters = {},
        .bindsTightly = true,
        .defaultsToTarget = true },
    { .name = "launch",
        .perform = startApplication,
        .parameters = {},
        .bindsTightly = true,
        .defaultsToTarget = true },
};

} // namespace

std::span<const CommandSpec> coreCommands() { return commands; }

} // namespace caddis::applescript
