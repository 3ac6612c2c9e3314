#pragma once

#include "platform/base/URL.h"

#include <cstdint>
#include <optional>

namespace caddis {

struct URLRequest {
    URL url;
    double timeoutInterval = 60; ///< seconds that whoever handles the request may take

    friend bool operator==(const URLRequest&, const URLRequest&) = default;
};

/// Is asked before anything is loaded for a page, and again for each redirect.
class WebResourceLoadDelegate {
public:
    virtual ~WebResourceLoadDelegate() = default;

    /// The request to send, or nil to send none. `redirectResponse` is the URL that answered with a redirect
    /// to this request; nil for a first one.
    virtual std::optional<URLRequest> webView(
        const URLRequest& willSendRequest, const std::optional<URL>& redirectResponse)
        = 0;

    /// Whether a connection may be made to an address with these Reachability flags. Asked right before it is
    /// made: a host's name may lead somewhere else by then than when the request was judged.
    virtual bool allowsAddress(std::uint32_t reachabilityFlags) const = 0;
};

} // namespace caddis
