#include "ScriptCommands.h"

#include "Output.h"
#include "ValuePrinter.h"
#include "platform/script/DescriptorJSON.h"
#include "platform/script/applescript/AppleScriptComponent.h"
#include "platform/script/applescript/CompiledOutline.h"
#include "service/ScriptCache.h"

#include <cstdio>

namespace caddis::tool {

namespace {

struct Job {
    std::string action;
    ScriptText text;
    std::span<const std::string> rest; ///< behind the action and the file
    bool json = false;
};

ExitCode complain(const ScriptErrorInfo& error)
{
    std::string place;
    if (error.range.isFound())
        place = " (at " + std::to_string(error.range.location) + ")";
    std::fprintf(stderr, "error %d%s: %s\n", error.number, place.c_str(), error.message.utf8().c_str());
    return NothingFound;
}

EventDescriptor argumentFrom(const std::string& text)
{
    const auto value = descriptorFromJson(text);
    return value ? *value : EventDescriptor::withString(String::fromUtf8(text));
}

ExitCode run(Script& script, const Job& job)
{
    ScriptReply reply;
    if (job.rest.empty()) {
        reply = script.run(ScriptLimits::fromEnvironment());
    } else {
        Parameters parameters;
        for (const std::string& argument : job.rest.subspan(1))
            parameters.push_back(argumentFrom(argument));
        reply = executeFunction(script, String::fromUtf8(job.rest.front()), parameters);
    }
    if (reply.error)
        return complain(*reply.error);
    if (job.json)
        print(jsonFromDescriptor(reply.result) + '\n');
    else if (!reply.result.isNull())
        print(sourceOfDescriptor(reply.result).utf8() + '\n');
    return Success;
}

void printNames(const std::vector<String>& handlers, const std::vector<String>& properties, bool asJson)
{
    if (asJson) {
        const auto array = [](const std::vector<String>& names) { return Array(names.begin(), names.end()); };
        print(json(Dictionary {
                  { String(u"handlers"), array(handlers) }, { String(u"properties"), array(properties) } })
            + '\n');
        return;
    }
    for (const String& name : handlers)
        print("on " + name.utf8() + '\n');
    for (const String& name : properties)
        print("property " + name.utf8() + '\n');
}

ExitCode perform(const Job& job)
{
    if (const auto outline = compiledOutline(job.text.bytes.span()); outline && job.action == "handlers") {
        printNames(outline->handlers, outline->properties, job.json);
        return Success;
    }
    CompiledScript compiled = compileScript(job.text);
    if (const auto* error = std::get_if<ScriptErrorInfo>(&compiled))
        return complain(*error);
    Script& script = *std::get<std::unique_ptr<Script>>(compiled);
    if (job.action == "run")
        return run(script, job);
    if (job.action == "handlers")
        printNames(script.handlerNames(), script.propertyNames(), job.json);
    return Success;
}

} // namespace

ExitCode script(const Invocation& invocation)
{
    const std::span<const std::string> words = invocation.arguments;
    Job job { words.front(), {}, words.subspan(1), invocation.json };
    const bool isKnown = job.action == "run" || job.action == "check" || job.action == "handlers";
    if (!isKnown || (!invocation.scriptSource && job.rest.empty())) {
        std::fputs("caddis: script run, script check or script handlers, and a file or --source\n", stderr);
        return Usage;
    }
    if (invocation.scriptSource) {
        job.text = ScriptText::fromSource(String::fromUtf8(*invocation.scriptSource));
        return perform(job);
    }
    auto text = ScriptText::fromFile(absolutePath(job.rest.front()));
    if (!text) {
        std::fprintf(stderr, "%s: cannot be read\n", job.rest.front().c_str());
        return NothingFound;
    }
    job.text = *std::move(text);
    job.rest = job.rest.subspan(1);
    return perform(job);
}

} // namespace caddis::tool
