#pragma once

#include "platform/ipc/RemoteObject.h"
#include "service/CaddisHelper.h"

namespace caddis {

/// The name under which the helper registers: the name of its socket.
inline constexpr std::u16string_view ServiceName = u"CaddisHelper64.4";

/// The service object as other processes see it: interface org.caddis.OstraImExport at /CaddisHelper, one row
/// per operation. `helper` has to outlive it.
RemoteObject ostraImExport(CaddisHelper& helper);

/// The same object for the reader's profile: the operations that write files and run scripts are refused with
/// AccessDenied.
RemoteObject withoutWriting(RemoteObject object);

} // namespace caddis
