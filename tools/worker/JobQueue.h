#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace caddis::tool {

/// What the queue's server says is wrong.
struct QueueError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A job that has been handed out to us and that nobody else gets as long as we say that we are at it.
class Delivery;
using DeliveryPointer = std::shared_ptr<Delivery>;

/// A durable queue of jobs on a NATS server with JetStream: streams NAME, for subject NAME.jobs, and
/// NAME_dead for NAME.dead, with the jobs that nobody could finish. Both are made when they are missing. The
/// connection outlives the server: it comes back when the server does.
///
/// For several threads, but for `fetch`.
class JobQueue {
public:
    /// Throws QueueError.
    JobQueue(const std::string& server, const std::string& name);
    ~JobQueue();
    JobQueue(const JobQueue&) = delete;
    JobQueue& operator=(const JobQueue&) = delete;

    /// Appends a job; one under an identifier that was used within two minutes is dropped. Throws QueueError
    /// at once or from flush().
    void publish(const std::string& job, const std::string& identifier);
    /// Waits until all that was published is stored.
    void flush();

    /// From here on jobs can be fetched. `patience`: seconds for which a worker may say nothing about a job
    /// before another one gets it; the same for all workers of a queue. Throws QueueError.
    void subscribe(unsigned patience);

    /// Up to `most` jobs, waiting for the first a second at most; none while the server is away.
    std::vector<DeliveryPointer> fetch(int most);
    /// Whether no job is left, handed out or not; nil while the server is away.
    std::optional<bool> isEmpty();

    /// The job is done and goes for good.
    void acknowledge(const Delivery& delivery);
    /// We are still at it.
    void extend(const Delivery& delivery);
    /// Puts the job, with the text, among the dead.
    void bury(const Delivery& delivery, const std::string& text);

private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

class Delivery {
public:
    struct Message; // the library's
    Delivery(std::shared_ptr<Message> message, std::string job, std::uint64_t count)
        : m_message(std::move(message))
        , m_job(std::move(job))
        , m_count(count)
    {
    }

    const std::string& job() const { return m_job; }
    /// How often it has been handed out, this time included.
    std::uint64_t count() const { return m_count; }

private:
    friend class JobQueue;

    std::shared_ptr<Message> m_message;
    std::string m_job;
    std::uint64_t m_count;
};

} // namespace caddis::tool
