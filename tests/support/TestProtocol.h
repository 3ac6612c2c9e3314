#pragma once

#include "platform/ipc/RemoteObject.h"

namespace caddis {

/// What the test server (platform/ipc/TestServer.cpp) serves.
inline constexpr RemoteMember TestMembers[] = {
    { "Echo", "v", "av" }, // the argument
    { "Options", "vxb", "aa{sv}" }, // all three arguments in a dictionary, or nil when the first is nil
    { "Record", "(uay)", "a{sv}" },
    { "Zeros", "x", "av" }, // data of that many bytes
    { "Sleep", "x", "" }, // milliseconds
    { "Throw", "", "b" },
    { "Deny", "", "b" },
    { "StillBusy", "", "b" }, // true for half a second from the start on
    { "LeaveOut", "x", "b" }, // notes so many phrases: "thing 0", "thing 1"
    { "Exit", "", "", true },
};

inline constexpr RemoteProtocol TestProtocol { "/Test", "org.caddis.Test", TestMembers };

} // namespace caddis
