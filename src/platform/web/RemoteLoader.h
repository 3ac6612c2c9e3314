#pragma once

#include "platform/base/Data.h"
#include "platform/web/WebResourceLoadDelegate.h"

#include <chrono>
#include <span>

namespace caddis {

/// Something to be had over the network: what is asked for, and what came.
struct RemoteTransfer {
    explicit RemoteTransfer(URL wanted)
        : url(std::move(wanted))
    {
    }

    URL url; ///< "http" or "https"; afterwards where redirects led
    bool hasArrived = false; ///< with success, though perhaps not to its end
    Data data;
    String contentType; ///< as the server has it; empty when it says nothing
};

struct RemoteRules {
    std::chrono::steady_clock::time_point deadline;
    WebResourceLoadDelegate* delegate = nullptr; ///< asked for redirects and addresses; nil: all may be
    std::size_t mostBytesEach = 0; ///< a transfer that is longer ends there, and counts as missing
    std::size_t mostBytes = 0; ///< of all of them
};

/// Fetches all of them at the same time. Comes back when they are there or have failed, and at the deadline
/// with what there is: a transfer that is cut off then keeps the bytes that had come.
///
/// At most ten redirects each, each of which the delegate must allow, to "http" and "https" alone. With a
/// delegate no proxy is used, and before a connection is made the delegate must allow the very address. No
/// cookies, no credentials, nothing stored.
void loadRemote(std::span<RemoteTransfer> transfers, const RemoteRules& rules);

namespace web {
/// The entry `caddisLoadRemote` of the shared module `caddis-web`, which holds the library.
using LoadRemote = void(std::span<RemoteTransfer>& transfers, const RemoteRules& rules);
} // namespace web

} // namespace caddis
