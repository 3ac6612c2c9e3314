#pragma once

#include "platform/script/ScriptingComponent.h"

namespace caddis {

/// Scripts whose first line names their interpreter: "#!/usr/bin/env python3".
///
/// A handler call runs the program with the handler's name as its only argument and the parameters as one
/// JSON array on standard input; a run has no argument. Standard output is the result, as JSON or else as
/// text without its last line end; standard error goes to the log. An exit status other than 0 is the error's
/// number.
class ProgramComponent final : public ScriptingComponent {
public:
    String name() const override { return String(u"Program"); }
    FourCharCode subtype() const override { return "scpt"_code; }
    /// Not for the language's own interpreter line (osascript), which is AppleScript.
    bool accepts(const ScriptText& script) const override;
    CompiledScript compile(const ScriptText& script) const override;
};

} // namespace caddis
