#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <netinet/in.h>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace caddis {

/// A web server on 127.0.0.1 that keeps a log of what it is asked for. Each path is answered with what the
/// handler says; nil leaves the client waiting until the server ends.
///
///     HTTPServer server([](const std::string& path) { return HTTPServer::answer("image/png", "…"); });
class HTTPServer {
public:
    using Handler = std::function<std::optional<std::string>(const std::string& path)>;

    explicit HTTPServer(Handler handler)
        : m_handler(std::move(handler))
        , m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const place = reinterpret_cast<sockaddr*>(&address);
        if (bind(m_listener, place, size) != 0 || listen(m_listener, 16) != 0
            || getsockname(m_listener, place, &size) != 0)
            throw std::runtime_error("no port of this machine is free");
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { serve(); });
    }
    ~HTTPServer()
    {
        m_ends = true;
        m_thread.join();
        for (const int client : m_waiting)
            close(client);
        close(m_listener);
    }
    HTTPServer(const HTTPServer&) = delete;
    HTTPServer& operator=(const HTTPServer&) = delete;

    std::string url(const std::string& path) const
    {
        return "http://127.0.0.1:" + std::to_string(m_port) + path;
    }
    /// The paths asked for, in order.
    std::vector<std::string> log() const
    {
        const std::lock_guard lock(m_mutex);
        return m_log;
    }

    static std::string answer(const std::string& type, const std::string& body)
    {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: " + type
            + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    }
    static std::string redirect(const std::string& target)
    {
        return "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " + target
            + "\r\n\r\n";
    }

private:
    void serve()
    {
        constexpr int Step = 10; // Milliseconds.
        while (!m_ends) {
            pollfd ready { m_listener, POLLIN, 0 };
            if (poll(&ready, 1, Step) > 0)
                talk(accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC));
        }
    }

    void talk(int client)
    {
        std::string request;
        char bytes[4096];
        while (request.find("\r\n\r\n") == request.npos) {
            const auto count = recv(client, bytes, sizeof bytes, 0);
            if (count <= 0)
                break;
            request.append(bytes, static_cast<std::size_t>(count));
        }
        const std::size_t begin = std::min(request.find(' '), request.size() - 1) + 1;
        const std::string path = request.substr(begin, request.find(' ', begin) - begin);
        {
            const std::lock_guard lock(m_mutex);
            m_log.push_back(path);
        }
        const auto answer = m_handler(path);
        if (!answer) {
            m_waiting.push_back(client);
            return;
        }
        send(client, answer->data(), answer->size(), MSG_NOSIGNAL);
        close(client);
    }

    Handler m_handler;
    int m_listener;
    int m_port = 0;
    std::atomic<bool> m_ends = false;
    std::vector<int> m_waiting;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_log;
    std::thread m_thread;
};

} // namespace caddis
