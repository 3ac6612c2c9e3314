#pragma once

#include "platform/base/URL.h"

#include <cstdint>
#include <optional>

namespace caddis {
inline namespace NSURLOstraExtensions {

/// The text of a URL up to its first "#". Same: returns `url` itself when there is none.
String stringURLWithoutAnchor(const String& url);

/// The flags of which a local host has at least one.
inline constexpr std::uint32_t LocalOrDirect = 0x30000;

/// How the network reaches the host: the flags of platform/web/Reachability.h, of all its addresses together.
/// A name that is not resolved after `timeout` seconds has none.
std::uint32_t connectionFlagsForHost(const String& host, double timeout = 5);

/// Whether nothing beyond this machine and its own networks has to be asked: a file URL, one without a host,
/// or one whose host is this machine or reached without a gateway (LocalOrDirect).
bool isLocal(const URL& url, double timeout = 5);

/// What relative references of a page at `url` are resolved against: without an anchor, and a folder with a
/// slash at its end. Nil where no reference can be relative ("mailto:", "data:").
std::optional<URL> baseURLForWebKit(const URL& url);

} // namespace NSURLOstraExtensions
} // namespace caddis
