#pragma once

#include <cstdint>
#include <string>

struct sockaddr;

/// How this machine reaches an address: what its routing table says, without sending anything.
namespace caddis::Reachability {

/// The platform's public constants.
enum Flags : std::uint32_t {
    Unreachable = 0,
    Reachable = 0x2,
    IsLocalAddress = 0x10000, ///< of an interface of this machine
    IsDirect = 0x20000, ///< without a gateway; local addresses too
};

/// Of an IPv4 or IPv6 address; any other is unreachable. The kernel is asked (rtnetlink(7), RTM_GETROUTE).
std::uint32_t flagsForAddress(const sockaddr& address);

/// The flags of all the host's addresses together. `host` is a name or a numeric address, an IPv6 one in
/// brackets or without. A name that is not resolved after `timeout` seconds is unreachable.
std::uint32_t flagsForHost(const std::string& host, double timeout = 5);

} // namespace caddis::Reachability
