#pragma once

#include "platform/ipc/Message.h"
#include "platform/ipc/RemoteObject.h"
#include "platform/ipc/Wire.h"

namespace caddis {

/// Who asks: what the answer has to know of a connection.
struct Caller {
    unsigned number; ///< counts the connections of the server, from 1
    wire::Descriptors descriptors; ///< whether it takes them
};

/// Has `object` do what a method call asks for, and returns the answer: a result or an error. Besides the
/// object's own methods it answers Introspect and, for libraries that always say it, Hello.
MessagePointer answerRequest(const RemoteObject& object, DBusMessage* request, const Caller& caller);

/// The signal that goes out before an answer from which something was left out. Null without memory for it.
MessagePointer leftOutSignal(const RemoteObject& object, DBusMessage* request, const String& what);

} // namespace caddis
