#pragma once

#include "platform/base/Value.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What two processes have to know of each other: the methods of an object, and how they are called.
namespace caddis {

/// The arguments of one call, in order; nil where the caller passed nil.
using Arguments = std::vector<std::optional<Value>>;

/// A method as its callers know it. The signatures are D-Bus type signatures; Wire.h says which value stands
/// for which type. A result is none (""), one type, or nil-able ("av", "aa{sv}").
struct RemoteMember {
    const char* member;
    const char* arguments;
    const char* result;
    /// The caller does not wait, and is never told whether it was done.
    bool oneWay = false;
};

/// An object of the other process: its path, its interface and the members of that.
struct RemoteProtocol {
    const char* path;
    const char* interface;
    std::span<const RemoteMember> members;

    /// Null pointer when there is none of this name.
    const RemoteMember* find(std::string_view member) const;
};

/// A method as its owner serves it: one row of the table that is the object.
///
/// What `invoke` throws becomes the caller's error: a caddis::Exception whose name is a D-Bus error name
/// under that name, everything else as org.freedesktop.DBus.Error.Failed.
struct RemoteMethod {
    const char* member;
    const char* arguments;
    const char* result;
    std::function<std::optional<Value>(const Arguments&)> invoke;
};

/// The object that a server serves.
struct RemoteObject {
    std::string path;
    std::string interface;
    /// The answer to org.freedesktop.DBus.Introspectable.Introspect, as it stands.
    std::string introspection;
    std::vector<RemoteMethod> methods;
};

/// Before the result of a call from which a limit has left something out comes a signal of the object's for
/// each such thing: the serial number of the call, and a phrase that says what (LeftOut.h). Results have no
/// place for it, and who does not know the signal loses nothing.
struct RemoteSignal {
    const char* interface;
    const char* member;
};
inline constexpr RemoteSignal LeftOutSignal { "org.caddis.Answer", "LeftOut" };

/// The error of an operation that this process does not do for anybody.
inline constexpr std::u16string_view AccessDeniedError = u"org.freedesktop.DBus.Error.AccessDenied";
inline constexpr std::u16string_view InvalidArgsError = u"org.freedesktop.DBus.Error.InvalidArgs";
inline constexpr std::u16string_view LimitsExceededError = u"org.freedesktop.DBus.Error.LimitsExceeded";
inline constexpr std::u16string_view UnknownMethodError = u"org.freedesktop.DBus.Error.UnknownMethod";

} // namespace caddis
