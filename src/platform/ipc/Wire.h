#pragma once

#include "platform/ipc/RemoteObject.h"
#include "platform/ipc/SharedBytes.h"

struct DBusMessage;

/// The value codec: how values stand in a D-Bus message.
///
///     nil argument            (sv) ("nil", false)       nil result      an array of none: av, aa{sv}
///     boolean, integer        b, x; t above 2^63-1      float, double   d
///     string                  s                         data            ay
///       longer than 128 KiB   (sv) ("utf8", h)            longer        h
///       lone surrogate, NUL   (sv) ("utf16", ay or h), little-endian units
///     date                    (sv) ("date", d), seconds since 1970
///     URL                     (sv) ("url", s)
///     null in a collection    (sv) ("nil", false)
///     array, dictionary       av, a{sv}
///
/// `h` is the descriptor of a sealed memory file. The reader also takes y n q i u o g, arrays of any of these
/// types, dictionaries of any of them under string keys, and variants in variants.
///
/// Both directions are driven by a signature of complete types, one for each value:
///
///     v x t d b ...  a value, nil where the type can say it     av, aa{sv}  nil, or the one element
///     a{sv}          a Dictionary
///     (uay)          Array { code, Data }; nil is the code 'null' without data
///
/// Errors: both throw Exception named InvalidArgsError or LimitsExceededError; nothing was read or sent then.
namespace caddis::wire {

/// Data and UTF-8 text above this many bytes travel as a descriptor.
inline constexpr std::size_t InlineBytes = 128 << 10;
/// Descriptors that the writer attaches to one message; what comes after them stands inline.
inline constexpr int DescriptorsPerMessage = 16;
/// Descriptors that either side takes with one message before it hangs up.
inline constexpr int MaximumDescriptors = 32;
/// All that stands inline in one written message, in bytes; one D-Bus array can hold no more.
inline constexpr std::size_t MaximumWritten = 64 << 20;
/// The same for a message that is read: the longest that D-Bus allows.
inline constexpr std::size_t MaximumRead = 128 << 20;
/// Text that came by descriptor, in bytes a message: unlike data it is copied.
inline constexpr std::size_t MaximumAttachedText = 512 << 20;
/// Collections inside each other. D-Bus itself stops at 64 containers, and a level of dictionaries is three.
inline constexpr int MaximumNesting = 20;

enum class Descriptors { None, Attached };

/// Appends one value per complete type of `signature`. With Descriptors::None everything stands inline.
void write(DBusMessage* message, const char* signature, const Arguments& values, Descriptors descriptors);

/// The body of a message, which must have exactly `signature`.
Arguments read(DBusMessage* message, const char* signature, DescriptorTrust trust);

} // namespace caddis::wire
