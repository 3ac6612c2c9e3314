#include "platform/web/Reachability.h"

#include <arpa/inet.h>
#include <chrono>
#include <gtest/gtest.h>
#include <netinet/in.h>

namespace caddis::Reachability {
namespace {

constexpr std::uint32_t Own = Reachable | IsLocalAddress | IsDirect;

TEST(Reachability, ThisMachinesAddressesAreLocalAndDirect)
{
    EXPECT_EQ(flagsForHost("127.0.0.1"), Own);
    EXPECT_EQ(flagsForHost("127.9.9.9"), Own);
    EXPECT_EQ(flagsForHost("localhost") & Own, Own);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(flagsForAddress(reinterpret_cast<const sockaddr&>(address)), Own);
}

TEST(Reachability, BracketsAroundAnIPv6AddressDoNotCount)
{
    EXPECT_EQ(flagsForHost("[::1]"), flagsForHost("::1"));
    EXPECT_EQ(flagsForHost("[::1"), Unreachable);
}

// Documentation addresses (RFC 5737) are nobody's: at best a gateway takes them.
TEST(Reachability, OtherNetworksAreBehindAGatewayOrNotThere)
{
    EXPECT_EQ(flagsForHost("198.51.100.1") & (IsLocalAddress | IsDirect), 0U);
    EXPECT_EQ(flagsForHost("255.255.255.255"), Unreachable) << "a broadcast is no host";
}

TEST(Reachability, WhatIsNoAddressIsUnreachable)
{
    EXPECT_EQ(flagsForHost(""), Unreachable);
    sockaddr address {};
    address.sa_family = AF_UNIX;
    EXPECT_EQ(flagsForAddress(address), Unreachable);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(flagsForHost("no-such-host.invalid", 0.2), Unreachable);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

} // namespace
} // namespace caddis::Reachability
