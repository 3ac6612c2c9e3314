#include "platform/web/Reachability.h"

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <linux/rtnetlink.h>
#include <memory>
#include <mutex>
#include <netdb.h>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace caddis::Reachability {

namespace {

constexpr int AnswerSeconds = 1; // The kernel answers in microseconds, or has lost the question.
constexpr std::size_t AnswerSize = 8192;

class Descriptor {
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }

private:
    int m_number;
};

struct Question {
    nlmsghdr header {};
    rtmsg route {};
    unsigned char attributes[64] {};

    void add(unsigned short type, const void* bytes, std::size_t size)
    {
        rtattr attribute {};
        attribute.rta_type = type;
        attribute.rta_len = static_cast<unsigned short>(RTA_LENGTH(size));
        unsigned char* const place = reinterpret_cast<unsigned char*>(this) + header.nlmsg_len;
        std::memcpy(place, &attribute, sizeof attribute);
        std::memcpy(place + RTA_LENGTH(0), bytes, size);
        header.nlmsg_len += static_cast<std::uint32_t>(RTA_SPACE(size));
    }
};

// Nil for addresses of other families.
std::optional<Question> questionAbout(const sockaddr& address)
{
    Question question;
    question.header.nlmsg_len = NLMSG_LENGTH(sizeof question.route);
    question.header.nlmsg_type = RTM_GETROUTE;
    question.header.nlmsg_flags = NLM_F_REQUEST;
    question.route.rtm_family = static_cast<unsigned char>(address.sa_family);
    if (address.sa_family == AF_INET) {
        const auto& internet = reinterpret_cast<const sockaddr_in&>(address);
        question.route.rtm_dst_len = 8 * sizeof internet.sin_addr;
        question.add(RTA_DST, &internet.sin_addr, sizeof internet.sin_addr);
        return question;
    }
    if (address.sa_family != AF_INET6)
        return std::nullopt;
    const auto& internet = reinterpret_cast<const sockaddr_in6&>(address);
    question.route.rtm_dst_len = 8 * sizeof internet.sin6_addr;
    question.add(RTA_DST, &internet.sin6_addr, sizeof internet.sin6_addr);
    if (internet.sin6_scope_id)
        question.add(RTA_OIF, &internet.sin6_scope_id, sizeof internet.sin6_scope_id);
    return question;
}

std::uint32_t flagsOfRoute(const nlmsghdr* answer)
{
    const auto* const route = static_cast<const rtmsg*>(NLMSG_DATA(answer));
    if (route->rtm_type == RTN_LOCAL)
        return Reachable | IsLocalAddress | IsDirect;
    if (route->rtm_type != RTN_UNICAST)
        return Unreachable;
    auto left = static_cast<int>(RTM_PAYLOAD(answer));
    for (const rtattr* attribute = RTM_RTA(route); RTA_OK(attribute, left);
         attribute = RTA_NEXT(attribute, left)) {
        if (attribute->rta_type == RTA_GATEWAY || attribute->rta_type == RTA_VIA
            || attribute->rta_type == RTA_MULTIPATH)
            return Reachable;
    }
    return Reachable | IsDirect;
}

using Addresses = std::unique_ptr<addrinfo, decltype([](addrinfo* list) { freeaddrinfo(list); })>;

Addresses resolve(const std::string& host, int flags)
{
    addrinfo wanted {};
    wanted.ai_flags = flags;
    wanted.ai_socktype = SOCK_STREAM; // Or each address comes once per kind of socket.
    addrinfo* list = nullptr;
    return Addresses(getaddrinfo(host.c_str(), nullptr, &wanted, &list) == 0 ? list : nullptr);
}

// The system's resolver cannot be stopped, so a thread waits for it, and is left behind when that is too
// long.
Addresses resolveWithin(const std::string& host, double timeout)
{
    struct Resolution {
        std::mutex mutex;
        std::condition_variable changed;
        bool done = false;
        Addresses addresses;
    };
    const auto resolution = std::make_shared<Resolution>();
    std::thread([resolution, host] {
        Addresses addresses = resolve(host, 0);
        const std::lock_guard lock(resolution->mutex);
        resolution->addresses = std::move(addresses);
        resolution->done = true;
        resolution->changed.notify_one();
    }).detach();
    std::unique_lock lock(resolution->mutex);
    resolution->changed.wait_for(
        lock, std::chrono::duration<double>(timeout), [&] { return resolution->done; });
    return std::move(resolution->addresses);
}

} // namespace

std::uint32_t flagsForAddress(const sockaddr& address)
{
    const auto question = questionAbout(address);
    const Descriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
    const timeval limit { AnswerSeconds, 0 };
    if (!question || socket.number() < 0
        || setsockopt(socket.number(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit) != 0
        || send(socket.number(), &*question, question->header.nlmsg_len, 0) < 0)
        return Unreachable;
    alignas(nlmsghdr) unsigned char bytes[AnswerSize];
    const auto size = recv(socket.number(), bytes, sizeof bytes, 0);
    const auto* const answer = reinterpret_cast<const nlmsghdr*>(bytes);
    if (size <= 0 || !NLMSG_OK(answer, static_cast<std::size_t>(size)) || answer->nlmsg_type != RTM_NEWROUTE)
        return Unreachable;
    return flagsOfRoute(answer);
}

std::uint32_t flagsForHost(const std::string& host, double timeout)
{
    const bool isBracketed = host.starts_with('[') && host.ends_with(']');
    const std::string name = isBracketed ? host.substr(1, host.size() - 2) : host;
    Addresses addresses = resolve(name, AI_NUMERICHOST);
    if (!addresses)
        addresses = resolveWithin(name, timeout);
    std::uint32_t flags = Unreachable;
    for (const addrinfo* entry = addresses.get(); entry; entry = entry->ai_next)
        flags |= flagsForAddress(*entry->ai_addr);
    return flags;
}

} // namespace caddis::Reachability
