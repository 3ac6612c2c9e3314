#pragma once

#include "platform/script/ScriptingComponent.h"

namespace caddis {

/// The AppleScript language. It takes every text that no other component claims.
class AppleScriptComponent final : public ScriptingComponent {
public:
    String name() const override { return String(u"AppleScript"); }
    FourCharCode subtype() const override { return "ascr"_code; }
    bool accepts(const ScriptText&) const override { return true; }
    /// A compiled script (FasdUAS) is refused with error -1758.
    CompiledScript compile(const ScriptText& script) const override;
};

/// Compiles a script by the component that accepts it: a program by its first line, else AppleScript.
CompiledScript compileScript(const ScriptText& script);

/// What a descriptor stands for, as a script would write it: {1, "two", «data abcd00»}.
String sourceOfDescriptor(const EventDescriptor& descriptor);

} // namespace caddis
