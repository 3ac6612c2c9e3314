#pragma once

#include "platform/script/AppleEvent.h"
#include "platform/script/ScriptError.h"
#include "platform/script/ScriptText.h"

#include <chrono>
#include <memory>
#include <variant>
#include <vector>

/// The languages that scripts are written in, behind one interface.
namespace caddis {

/// What a script may use up in one call from outside.
struct ScriptLimits {
    std::chrono::milliseconds deadline { 60'000 }; ///< the call then ends with error -1712
    std::size_t memory = std::size_t { 512 }
        << 20; ///< bytes of values alive at a time; beyond it, error -108
    std::uint64_t steps = 0; ///< statements and loop rounds; 0: as many as the deadline allows

    /// The defaults, with the deadline in seconds from CADDIS_SCRIPT_DEADLINE when that is set.
    static ScriptLimits fromEnvironment();
};

/// The outcome of a call: a descriptor, or why there is none.
struct ScriptReply {
    EventDescriptor result; ///< null when the call gave no value
    std::optional<ScriptErrorInfo> error;
};

/// A compiled script. It keeps its state (properties, globals) from call to call.
class Script {
public:
    Script() = default;
    virtual ~Script() = default;
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    /// Runs the script as a whole.
    virtual ScriptReply run(const ScriptLimits& limits) = 0;
    /// Sends an event; 'ascr'/'psbr' calls the handler named in 'snam' with the parameters in '----'.
    virtual ScriptReply send(const AppleEvent& event, const ScriptLimits& limits) = 0;
    /// The names of the handlers that can be called, in the order of the source.
    virtual std::vector<String> handlerNames() const = 0;
    /// The names of the top-level properties.
    virtual std::vector<String> propertyNames() const { return {}; }
};

using CompiledScript = std::variant<std::unique_ptr<Script>, ScriptErrorInfo>;

/// One language.
class ScriptingComponent {
public:
    ScriptingComponent() = default;
    virtual ~ScriptingComponent() = default;
    ScriptingComponent(const ScriptingComponent&) = delete;
    ScriptingComponent& operator=(const ScriptingComponent&) = delete;

    virtual String name() const = 0;
    /// 'ascr' for AppleScript, 'scpt' for programs.
    virtual FourCharCode subtype() const = 0;
    virtual bool accepts(const ScriptText& script) const = 0;
    virtual CompiledScript compile(const ScriptText& script) const = 0;
};

} // namespace caddis
