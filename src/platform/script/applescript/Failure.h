#pragma once

#include "platform/base/Format.h"
#include "platform/script/ScriptError.h"
#include "platform/script/applescript/Datum.h"

namespace caddis::applescript {

/// A script's error on its way to the `try` that handles it, or out of the script. It never leaves the
/// component: there it becomes a ScriptErrorInfo.
struct Failure {
    int number = static_cast<int>(ScriptErrorNumber::Unspecified);
    String message;
    Datum offender; ///< what the error is about: `from`
    Datum expected; ///< the class that was wanted: `to`
    Datum partialResult;
    Range range; ///< in the source; NotFound until a statement is known
    String applicationName; ///< of the application that refused
    bool endsScript = false; ///< the deadline: no `try` handles it

    /// With the application's name before it.
    String fullMessage() const;
    bool is(ScriptErrorNumber wanted) const { return number == static_cast<int>(wanted); }
};

[[noreturn]] void fail(ScriptErrorNumber number, const String& message);
/// "Can’t make VALUE into type CLASS."
[[noreturn]] void failCoercion(const Datum& value, Symbol wanted);
/// "Can’t get WHAT of CONTAINER."
[[noreturn]] void failGet(
    const String& what, const Datum& container, ScriptErrorNumber number = ScriptErrorNumber::CannotGet);

} // namespace caddis::applescript
