#include "platform/ipc/Message.h"

#include <dbus/dbus.h>
#include <new>

namespace caddis {

void MessageRelease::operator()(DBusMessage* message) const { dbus_message_unref(message); }

std::string addressOfSocket(const std::string& path)
{
    const std::unique_ptr<char, decltype(&dbus_free)> escaped(
        dbus_address_escape_value(path.c_str()), dbus_free);
    if (!escaped)
        throw std::bad_alloc();
    return std::string("unix:path=") + escaped.get();
}

} // namespace caddis
