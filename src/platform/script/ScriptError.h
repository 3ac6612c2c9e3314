#pragma once

#include "platform/base/Range.h"
#include "platform/base/String.h"

namespace caddis {

/// Error numbers that scripts see, the platform's own.
enum class ScriptErrorNumber : int {
    UserCancelled = -128,
    OutOfMemory = -108,
    FileNotFound = -43,
    FileNotOpen = -38,
    EndOfFile = -39,
    DuplicateFile = -48,
    FilePermission = -54,
    ApplicationNotRunning = -600,
    ConnectionInvalid = -609,
    CannotCoerce = -1700,
    ParameterMissing = -1701,
    NotUnderstood = -1708,
    TimedOut = -1712,
    NoUserInteraction = -1713,
    InvalidIndex = -1719,
    InvalidRange = -1720,
    ParameterMismatch = -1721,
    AccessNotAllowed = -1723,
    CannotGet = -1728,
    UnknownObject = -30720,
    ComponentError = -1750,
    BadSelector = -1758,
    Unspecified = -2700,
    DivideByZero = -2701,
    NumberTooLarge = -2702,
    StackOverflow = -2706,
    IllegalAssignment = -10006,
    SyntaxError = -2740,
    UnexpectedToken = -2741,
    DuplicateProperty = -2751,
    DuplicateHandler = -2752,
    VariableNotDefined = -2753,
    LocalAndGlobal = -2754,
    ExitOutsideRepeat = -2755,
    NoResult = -2763,
};

/// Why a script did not compile or did not end well.
struct ScriptErrorInfo {
    int number = static_cast<int>(ScriptErrorNumber::Unspecified);
    String message;
    String applicationName; ///< of the application that refused, if one did
    Range range; ///< in units of the source; NotFound when it is not known

    /// The platform's error dictionary in its property-list form, keys sorted, as the log shows it.
    String description() const;
};

/// "NAME got an error: MESSAGE", or the message alone without a name.
String withApplicationName(const String& applicationName, const String& message);

} // namespace caddis
