#pragma once

#include <memory>
#include <string>

struct DBusMessage;

namespace caddis {

struct MessageRelease {
    void operator()(DBusMessage* message) const;
};

/// A D-Bus message and one reference to it.
using MessagePointer = std::unique_ptr<DBusMessage, MessageRelease>;

/// The address that libdbus listens on or connects to for a socket.
std::string addressOfSocket(const std::string& path);

} // namespace caddis
