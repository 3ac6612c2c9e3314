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

} // namespace caddis
