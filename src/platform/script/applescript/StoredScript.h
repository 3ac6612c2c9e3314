#pragma once

#include "platform/script/applescript/ScriptObject.h"

/// Scripts as text, with what their properties hold by now: the other way round of compiling one.
namespace caddis::applescript {

/// A source that compiles to a script with the same handlers, and the same values of its properties. What has
/// no form as a source (a script that was not written in this one, a reference, a measure) keeps the first
/// value that the source gives it. Variables of an enclosing handler become properties.
///
/// Nil for a script that inherits from another one of the same source, which would not be there.
std::optional<String> storedSource(const ScriptObject& script);

} // namespace caddis::applescript
