#include "platform/script/applescript/AppleScriptComponent.h"

#include "platform/script/ProgramComponent.h"
#include "platform/script/applescript/Bridge.h"
#include "platform/script/applescript/Failure.h"
#include "platform/script/applescript/Parser.h"
#include "platform/script/applescript/SourceText.h"

namespace caddis {

namespace {

using namespace applescript;

ScriptErrorInfo errorFrom(const Failure& failure, Range position)
{
    ScriptErrorInfo info;
    info.number = failure.number;
    info.message = failure.message;
    info.applicationName = failure.applicationName;
    info.range = failure.range.isFound() ? failure.range : position;
    return info;
}

class CompiledAppleScript final : public Script {
public:
    CompiledAppleScript() = default;
    ~CompiledAppleScript() override
    {
        const Heap::Scope scope(m_heap);
        m_script = Datum();
    }

    /// The error of the first token that does not fit, or of a property's first value. A failure holds values
    /// of this script's heap, so it must not leave: nil when all is well.
    std::optional<ScriptErrorInfo> load(const ScriptText& text, const ScriptLimits& limits)
    {
        const Interpreter::Call call(m_interpreter, limits);
        m_interpreter.scriptPath = text.path;
        try {
            auto program = parseScript(text.text, m_interpreter.applications());
            const ScriptCode& code = program->script;
            m_script = instantiate(m_interpreter, std::move(program), code, nullptr);
        } catch (const Failure& failure) {
            return errorFrom(failure, {});
        }
        return std::nullopt;
    }

    ScriptReply run(const ScriptLimits& limits) override
    {
        return perform(limits, [&] { return m_interpreter.run(script()); });
    }

    ScriptReply send(const AppleEvent& event, const ScriptLimits& limits) override
    {
        return perform(limits, [&] {
            if (event.eventClass != "ascr"_code || event.eventID != "psbr"_code)
                fail(ScriptErrorNumber::NotUnderstood, String(u"The script doesn’t understand the event."));
            return callHandler(event);
        });
    }

    std::vector<String> handlerNames() const override { return slotNames(ScriptCode::SlotKind::Handler); }
    std::vector<String> propertyNames() const override { return slotNames(ScriptCode::SlotKind::Property); }

private:
    ScriptObject& script() const { return m_script.as<ScriptObject>(); }

    template <typename Work> ScriptReply perform(const ScriptLimits& limits, Work work)
    {
        const Interpreter::Call call(m_interpreter, limits);
        ScriptReply reply;
        try {
            reply.result = descriptorFromValue(m_interpreter, work());
        } catch (const Failure& failure) {
            reply.error = errorFrom(failure, m_interpreter.position);
        }
        return reply;
    }

    // Plain names are lower case and so is the name in the event; a name between bars has to be.
    Datum callHandler(const AppleEvent& event)
    {
        const String name = event.parameter("snam"_code).stringValue().value_or(String());
        const auto symbol = existingSymbol(name);
        Callee callee = symbol ? findHandler(script(), *symbol) : Callee();
        if (!callee)
            callee = findHandler(script(), symbolOfUserName(name));
        if (!callee)
            fail(ScriptErrorNumber::NotUnderstood,
                format(u"The script doesn’t understand the “%@” message.", name));
        std::vector<Datum> arguments;
        for (const auto& field : event.parameter("----"_code).fields())
            arguments.push_back(valueFromDescriptor(field.value));
        return m_interpreter.call(callee, script(), arguments);
    }

    std::vector<String> slotNames(ScriptCode::SlotKind kind) const
    {
        const Heap::Scope scope(m_heap);
        std::vector<String> names;
        for (const ScriptCode::Slot& slot : script().code.slots) {
            if (slot.kind == kind)
                names.push_back(plainName(slot.name));
        }
        return names;
    }

    Interpreter m_interpreter;
    Heap& m_heap = m_interpreter.heap();
    Datum m_script;
};

} // namespace

CompiledScript AppleScriptComponent::compile(const ScriptText& script) const
{
    if (script.isCompiled()) {
        ScriptErrorInfo info;
        info.number = static_cast<int>(ScriptErrorNumber::BadSelector);
        info.message = String(u"The script was compiled by another version.");
        return info;
    }
    auto compiled = std::make_unique<CompiledAppleScript>();
    if (auto error = compiled->load(script, ScriptLimits::fromEnvironment()))
        return *std::move(error);
    return compiled;
}

CompiledScript compileScript(const ScriptText& script)
{
    const ProgramComponent programs;
    return programs.accepts(script) ? programs.compile(script) : AppleScriptComponent().compile(script);
}

String sourceOfDescriptor(const EventDescriptor& descriptor)
{
    Interpreter interpreter;
    const Heap::Scope scope(interpreter.heap());
    return sourceText(valueFromDescriptor(descriptor));
}

} // namespace caddis
