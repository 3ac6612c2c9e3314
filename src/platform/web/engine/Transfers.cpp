#include "platform/web/engine/Transfers.h"

#include "platform/web/Reachability.h"

#include <algorithm>
#include <sys/socket.h>
#include <unistd.h>

namespace caddis::web {

namespace {

constexpr long MostConnections = 16;
constexpr long MostConnectionsPerHost = 6;
constexpr int MostRedirects = 10;
constexpr int LongestWait = 1000; // Milliseconds between looks at the clock.

void initializeLibrary()
{
    static const CURLcode done = curl_global_init(CURL_GLOBAL_DEFAULT);
    static_cast<void>(done);
}

} // namespace

Transfers::Transfers(std::span<RemoteTransfer> transfers, const RemoteRules& rules)
    : m_rules(rules)
{
    initializeLibrary();
    m_multi = curl_multi_init();
    curl_multi_setopt(m_multi, CURLMOPT_MAX_TOTAL_CONNECTIONS, MostConnections);
    curl_multi_setopt(m_multi, CURLMOPT_MAX_HOST_CONNECTIONS, MostConnectionsPerHost);
    for (RemoteTransfer& transfer : transfers)
        m_jobs.push_back({ this, &transfer, nullptr, transfer.url.absoluteString().utf8(), {} });
}

Transfers::~Transfers()
{
    for (Job& job : m_jobs)
        stop(job);
    curl_multi_cleanup(m_multi);
}

int Transfers::millisecondsLeft() const
{
    const auto left
        = std::chrono::ceil<std::chrono::milliseconds>(m_rules.deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, LongestWait));
}

void Transfers::run()
{
    for (Job& job : m_jobs)
        start(job);
    const auto isRunning = [](const Job& job) { return job.isRunning; };
    while (std::ranges::any_of(m_jobs, isRunning) && millisecondsLeft() > 0) {
        int running = 0;
        curl_multi_perform(m_multi, &running);
        finishEnded();
        if (std::ranges::any_of(m_jobs, isRunning))
            curl_multi_poll(m_multi, nullptr, 0, millisecondsLeft(), nullptr);
    }
    for (Job& job : m_jobs) {
        if (job.isRunning)
            finish(job);
    }
}

void Transfers::start(Job& job)
{
    if (!job.handle)
        job.handle.reset(curl_easy_init());
    if (!job.handle)
        return;
    setOptions(job);
    job.isRunning = curl_multi_add_handle(m_multi, job.handle.get()) == CURLM_OK;
}

void Transfers::stop(Job& job)
{
    if (std::exchange(job.isRunning, false))
        curl_multi_remove_handle(m_multi, job.handle.get());
}

void Transfers::setOptions(Job& job)
{
    CURL* const handle = job.handle.get();
    curl_easy_setopt(handle, CURLOPT_URL, job.url.c_str());
    curl_easy_setopt(handle, CURLOPT_PRIVATE, &job);
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L); // Or the end waits for names that are being resolved.
    curl_easy_setopt(handle, CURLOPT_USERAGENT, "Mozilla/5.0 (Linux) Caddis");
    curl_easy_setopt(handle, CURLOPT_ACCEPT_ENCODING, ""); // All that the library can decode.
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &Transfers::receive);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &job);
    if (m_rules.delegate) {
        curl_easy_setopt(handle, CURLOPT_NOPROXY, "*");
        curl_easy_setopt(handle, CURLOPT_OPENSOCKETFUNCTION, &Transfers::openSocket);
        curl_easy_setopt(handle, CURLOPT_OPENSOCKETDATA, &job);
    }
}

// Less than what was handed over makes the library end the transfer.
std::size_t Transfers::receive(char* bytes, std::size_t size, std::size_t count, void* data)
{
    Job& job = *static_cast<Job*>(data);
    const RemoteRules& rules = job.owner->m_rules;
    const std::size_t length = size * count;
    job.isTooLong
        = job.bytes.size() + length > rules.mostBytesEach || job.owner->m_bytes + length > rules.mostBytes;
    if (job.isTooLong)
        return 0;
    job.owner->m_bytes += length;
    job.bytes.append(bytes, length);
    return length;
}

curl_socket_t Transfers::openSocket(void* data, curlsocktype, curl_sockaddr* address)
{
    const Job& job = *static_cast<const Job*>(data);
    if (!job.owner->m_rules.delegate->allowsAddress(Reachability::flagsForAddress(address->addr)))
        return CURL_SOCKET_BAD;
    return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

void Transfers::finishEnded()
{
    int queued = 0;
    while (const CURLMsg* const message = curl_multi_info_read(m_multi, &queued)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        const bool hasSucceeded = message->data.result == CURLE_OK;
        void* data = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &data);
        Job& job = *static_cast<Job*>(data);
        stop(job);
        if (hasSucceeded && !followRedirect(job))
            finish(job);
    }
}

// The library doesn't follow redirects itself: each is a request that the delegate must see.
bool Transfers::followRedirect(Job& job)
{
    const char* target = nullptr;
    curl_easy_getinfo(job.handle.get(), CURLINFO_REDIRECT_URL, &target);
    if (!target)
        return false;
    const auto url = URL::fromString(String::fromUtf8(target));
    if (!url || ++job.redirects > MostRedirects)
        return true;
    URLRequest request { *url,
        std::chrono::duration<double>(m_rules.deadline - std::chrono::steady_clock::now()).count() };
    if (m_rules.delegate) {
        const auto allowed = m_rules.delegate->webView(request, job.transfer->url);
        if (!allowed)
            return true;
        request = *allowed;
    }
    job.transfer->url = request.url;
    job.url = request.url.absoluteString().utf8();
    m_bytes -= job.bytes.size();
    job.bytes.clear();
    start(job);
    return true;
}

void Transfers::finish(Job& job)
{
    constexpr long Success = 200;
    constexpr long Redirection = 300;
    long status = 0;
    curl_easy_getinfo(job.handle.get(), CURLINFO_RESPONSE_CODE, &status);
    const char* type = nullptr;
    curl_easy_getinfo(job.handle.get(), CURLINFO_CONTENT_TYPE, &type);
    job.transfer->hasArrived = status >= Success && status < Redirection && !job.isTooLong;
    job.transfer->contentType = String::fromUtf8(type ? type : "");
    job.transfer->data = Data::adopt(std::move(job.bytes));
}

} // namespace caddis::web
