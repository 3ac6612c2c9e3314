#include "platform/base/Log.h"
#include "platform/script/applescript/Access.h"
#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/FileSuite.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/SourceText.h"

#include <iterator>

namespace caddis::applescript {

namespace {

Datum count(CommandCall& call)
{
    const Datum& each = call.argument("each");
    const Datum value = call.requireDirect();
    const Symbol counted = each.is(Kind::Class) ? each.asSymbol() : Symbol::Item;
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

// A source, or a file with one.
Datum compiled(CommandCall& call, bool textIsSource)
{
    const Datum value = call.requireDirect();
    ScriptText text;
    if (textIsSource && value.is(Kind::Text)) {
        text = ScriptText::fromSource(value.as<Text>().value());
    } else {
        const String path = requirePath(call.interpreter, value);
        auto read = ScriptText::fromFile(path);
        if (!read)
            fail(ScriptErrorNumber::FileNotFound, format(u"File %@ wasn’t found.", sourceText(value)));
        if (read->isCompiled())
            fail(ScriptErrorNumber::BadSelector, String(u"The script was compiled by another version."));
        text = *std::move(read);
    }
    auto program = parseScript(text.text);
    const ScriptCode& code = program->script;
    return instantiate(call.interpreter, std::move(program), code, nullptr);
}

Datum runScript(CommandCall& call)
{
    call.interpreter.checkStack();
    if (const Datum value = call.interpreter.value(call.direct); value.is(Kind::Script))
        return call.interpreter.run(value.as<ScriptObject>());
    const Datum script = compiled(call, true);
    auto& object = script.as<ScriptObject>();
    const Datum& parameters = call.argument("with parameters");
    const Callee handler = findHandler(object, Symbol::Run);
    if (!parameters.isSet() || !handler)
        return call.interpreter.run(object);
    Interpreter::LabelledArguments arguments;
    arguments.direct = coerce(call.interpreter, parameters, Symbol::List);
    return call.interpreter.callLabelled(handler, object, arguments);
}

Datum loadScript(CommandCall& call) { return compiled(call, false); }

// Applications outside cannot be started from here.
Datum startApplication(CommandCall& call)
{
    const Datum value = call.direct.isSet() ? call.interpreter.value(call.direct) : Datum();
    const auto* application = value.get<ApplicationObject>();
    requireApplication(value);
    if (application && !application->name.isEmpty() && !isFileApplication(application->name))
        fail(ScriptErrorNumber::ApplicationNotRunning, format(u"%@ isn’t running.", sourceText(value)));
    return {};
}

constexpr CommandParameter countParameters[] = { { "each" } };
constexpr CommandParameter runScriptParameters[] = { { "with parameters" }, { "in" } };

constexpr CommandSpec commands[] = {
    { .name = "count",
        .perform = count,
        .parameters = countParameters,
        .bindsTightly = true,
        .defaultsToTarget = true },
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
    { .name = "run script", .perform = runScript, .parameters = runScriptParameters },
    { .name = "load script", .perform = loadScript, .parameters = {} },
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
