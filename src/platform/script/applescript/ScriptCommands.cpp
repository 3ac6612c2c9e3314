#include "platform/script/applescript/Commands.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/SourceText.h"
#include "platform/script/applescript/StoredScript.h"

#include <filesystem>
#include <fstream>

namespace caddis::applescript {

namespace {

namespace fs = std::filesystem;

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
    auto program = parseScript(text.text, call.interpreter.applications());
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

// Where the text of a script goes: a bundle is a folder with its script inside. Whether a file may be
// replaced cannot be asked.
fs::path placeOfScript(CommandCall& call)
{
    const Datum& in = call.argument("in");
    const Datum& replacing = call.argument("replacing");
    const Symbol answer = replacing.is(Kind::Constant) ? replacing.asSymbol() : Symbol::Ask;
    if (!in.isSet())
        fail(ScriptErrorNumber::NoUserInteraction, String(u"No user interaction allowed."));
    fs::path path = requirePath(call.interpreter, call.interpreter.value(in)).utf8();
    std::error_code ignored;
    if (fs::exists(path, ignored) && answer == Symbol::Ask)
        fail(ScriptErrorNumber::NoUserInteraction, String(u"No user interaction allowed."));
    if (fs::exists(path, ignored) && answer == Symbol::No)
        fail(ScriptErrorNumber::DuplicateFile, String(u"There is a file of that name."));
    if (path.extension() != ".scptd")
        return path;
    const fs::path folder = path / "Contents/Resources/Scripts";
    fs::create_directories(folder, ignored);
    return folder / "main.scpt";
}

Datum storeScript(CommandCall& call)
{
    const Datum value = call.requireDirect();
    if (!value.is(Kind::Script))
        failCoercion(value, Symbol::Script);
    const auto source = storedSource(value.as<ScriptObject>());
    if (!source)
        fail(ScriptErrorNumber::ComponentError,
            String(u"A script cannot be stored without the script that it inherits from."));
    const std::string bytes = source->utf8();
    std::ofstream file(placeOfScript(call), std::ios::binary | std::ios::trunc);
    if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush())
        fail(ScriptErrorNumber::FilePermission, String(u"The script could not be written."));
    return {};
}

constexpr CommandParameter runParameters[] = { { "with parameters" }, { "in" } };
constexpr CommandParameter storeParameters[] = { { "in" }, { "replacing" } };

constexpr CommandSpec commands[] = {
    { .name = "run script", .perform = runScript, .parameters = runParameters },
    { .name = "load script", .perform = loadScript, .parameters = {} },
    { .name = "store script", .perform = storeScript, .parameters = storeParameters },
};

} // namespace

std::span<const CommandSpec> scriptCommands() { return commands; }

} // namespace caddis::applescript
