#pragma once

#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/SourceText.h"

#include <string>

namespace caddis::applescript {

/// The result of a whole script as a source writes it, "error NUMBER", or nothing without a result.
inline std::string outcomeOf(std::string_view source, const ScriptLimits& limits = {})
{
    Interpreter interpreter;
    const Interpreter::Call call(interpreter, limits);
    try {
        auto program = parseScript(String::fromUtf8(source), interpreter.applications());
        const ScriptCode& code = program->script;
        const Datum script = instantiate(interpreter, std::move(program), code, nullptr);
        const Datum result = interpreter.run(script.as<ScriptObject>());
        return sourceText(result).utf8();
    } catch (const Failure& failure) {
        return "error " + std::to_string(failure.number);
    }
}

} // namespace caddis::applescript
