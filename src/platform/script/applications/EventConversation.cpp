#include "platform/script/applications/EventConversation.h"

#include "platform/base/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace caddis {

namespace {

using Clock = std::chrono::steady_clock;

// Closed when nobody of this user listens there. A full queue of callers is waited for until the deadline.
Descriptor connectTo(const std::string& path, std::chrono::milliseconds deadline)
{
    sockaddr_un address = { .sun_family = AF_UNIX, .sun_path = {} };
    if (path.size() >= sizeof address.sun_path)
        return {};
    path.copy(address.sun_path, path.size());
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval wait { .tv_sec = deadline.count() / 1000, .tv_usec = deadline.count() % 1000 * 1000 };
    setsockopt(socket.number(), SOL_SOCKET, SO_SNDTIMEO, &wait, sizeof wait);
    if (connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return {};
    ucred peer {};
    socklen_t size = sizeof peer;
    const bool known = getsockopt(socket.number(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
    if (!known || peer.uid != geteuid() || fcntl(socket.number(), F_SETFL, O_NONBLOCK) != 0)
        return {};
    return socket;
}

class Conversation {
public:
    Conversation(const Descriptor& socket, Clock::time_point end)
        : m_socket(socket.number())
        , m_end(end)
    {
    }

    // Nil when all is sent.
    std::optional<ConversationFailure> send(const Data& question)
    {
        for (std::size_t done = 0; done < question.size();) {
            const ssize_t count
                = ::send(m_socket, question.bytes() + done, question.size() - done, MSG_NOSIGNAL);
            if (count >= 0)
                done += static_cast<std::size_t>(count);
            else if (auto failure = waitAfterError(POLLOUT))
                return failure;
        }
        shutdown(m_socket, SHUT_WR);
        return std::nullopt;
    }

    std::variant<Data, ConversationFailure> receive()
    {
        std::vector<std::uint8_t> answer;
        std::array<std::uint8_t, 1 << 14> piece;
        while (true) {
            const ssize_t count = recv(m_socket, piece.data(), piece.size(), 0);
            if (count == 0)
                return Data::adopt(std::move(answer));
            if (count > 0)
                answer.insert(answer.end(), piece.begin(), piece.begin() + count);
            else if (const auto failure = waitAfterError(POLLIN))
                return *failure;
            if (answer.size() > MaximumAnswer)
                return ConversationFailure::Broken;
        }
    }

private:
    // Waits until a call that would have blocked can go on.
    std::optional<ConversationFailure> waitAfterError(short events) const
    {
        if (errno == EINTR)
            return std::nullopt;
        if (errno != EAGAIN)
            return ConversationFailure::Broken;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_end - Clock::now()).count();
        pollfd entry { m_socket, events, 0 };
        if (left <= 0)
            return ConversationFailure::TimedOut;
        poll(&entry, 1, static_cast<int>(std::min<std::int64_t>(left, 1'000'000)));
        return std::nullopt;
    }

    const int m_socket;
    const Clock::time_point m_end;
};

} // namespace

std::variant<Data, ConversationFailure> askOverSocket(
    const std::string& path, const Data& question, std::chrono::milliseconds deadline)
{
    const Clock::time_point end = Clock::now() + deadline;
    const Descriptor socket = connectTo(path, deadline);
    if (!socket.isOpen())
        return ConversationFailure::NotListening;
    Conversation conversation(socket, end);
    if (const auto failure = conversation.send(question))
        return *failure;
    return conversation.receive();
}

bool isListening(const std::string& path) { return connectTo(path, std::chrono::milliseconds(100)).isOpen(); }

} // namespace caddis
