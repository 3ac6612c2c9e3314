#pragma once

#include "platform/web/RemoteLoader.h"

#include <curl/curl.h>
#include <deque>
#include <memory>
#include <string>

/// Inside this module: libcurl's multi interface, driven until all transfers have ended or the time is up.
namespace caddis::web {

class Transfers {
public:
    Transfers(std::span<RemoteTransfer> transfers, const RemoteRules& rules);
    ~Transfers();
    Transfers(const Transfers&) = delete;
    Transfers& operator=(const Transfers&) = delete;

    void run();

private:
    struct FreeHandle {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };
    struct Job {
        Transfers* owner;
        RemoteTransfer* transfer;
        std::unique_ptr<CURL, FreeHandle> handle;
        std::string url;
        std::string bytes;
        int redirects = 0;
        bool isTooLong = false;
        bool isRunning = false;
    };

    static std::size_t receive(char* bytes, std::size_t size, std::size_t count, void* job);
    static curl_socket_t openSocket(void* job, curlsocktype purpose, curl_sockaddr* address);

    void start(Job& job);
    void stop(Job& job);
    void finish(Job& job);
    void finishEnded();
    bool followRedirect(Job& job);
    void setOptions(Job& job);
    int millisecondsLeft() const;

    const RemoteRules& m_rules;
    CURLM* m_multi;
    std::deque<Job> m_jobs; // Deque: the library keeps their addresses.
    std::size_t m_bytes = 0;
};

} // namespace caddis::web
