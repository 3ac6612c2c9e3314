#include "Worker.h"

#include "batch/Batch.h"
#include "batch/JSONLine.h"
#include "batch/Places.h"
#include "batch/Results.h"

#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <thread>

namespace caddis::tool {

namespace {

namespace fs = std::filesystem;

// Jobs that a worker holds for each of its helpers: the next one is there when a helper is free.
constexpr unsigned JobsPerHelper = 4;

Input inputOf(const std::string& job, const std::string& operation)
{
    const JSONLine line(job);
    return { absolutePath(line.text("file").value_or("")), line.text("op").value_or(operation),
        std::string(line.raw("id").value_or("")) };
}

} // namespace

std::string resultName(const Input& input, const std::optional<FileState>& state)
{
    std::string text = input.operation + '\0' + input.file.utf8() + '\0';
    if (state)
        text += std::to_string(state->size) + ' ' + std::to_string(state->modified);
    // Two hashes of 64 bits (FNV-1a with two beginnings): of a billion results no two meet.
    std::uint64_t hashes[] = { 0xcbf29ce484222325, 0x84222325cbf29ce4 };
    for (const char byte : text) {
        for (std::uint64_t& hash : hashes)
            hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
        hashes[1] = hashes[1] << 13 | hashes[1] >> 51;
    }
    char digits[33] = {};
    std::snprintf(digits, sizeof digits, "%016llx%016llx", static_cast<unsigned long long>(hashes[0]),
        static_cast<unsigned long long>(hashes[1]));
    return digits;
}

Worker::Worker(const BatchOptions& options, HelperPool& pool)
    : m_options(options)
    , m_pool(pool)
    , m_queue(options.server, options.queue)
{
    m_queue.subscribe(options.patience);
}

bool Worker::run()
{
    const std::jthread extender([this](const std::stop_token& token) {
        std::mutex lock;
        std::condition_variable_any wake;
        std::unique_lock guard(lock);
        const auto interval = std::chrono::milliseconds(m_options.patience * 1000) / 3;
        while (!wake.wait_for(guard, token, interval, [&] { return token.stop_requested(); }))
            extendAll();
    });
    return m_pool.run([this] { return next(); },
        [this](const HelperJob& job, const HelperRecord& record) { finish(job.tag, record); });
}

std::optional<HelperJob> Worker::next()
{
    for (;;) {
        if (m_fetched.empty() && !fetchMore())
            return std::nullopt;
        const std::scoped_lock guard(m_lock);
        const DeliveryPointer delivery = std::move(m_fetched.front());
        m_fetched.pop_front();
        Input input = inputOf(delivery->job(), m_options.operation);
        if (delivery->count() > m_options.deliveries) {
            bury(input, delivery);
            continue;
        }
        m_repeated += delivery->count() > 1;
        HelperJob job = jobFor(input, m_options, ++m_lastTag);
        m_running.emplace(m_lastTag, Running { std::move(input), delivery });
        return job;
    }
}

// False at the end.
bool Worker::fetchMore()
{
    while (!InterruptGuard::wasInterrupted()) {
        auto fetched = m_queue.fetch(static_cast<int>(m_options.jobs * JobsPerHelper));
        if (!fetched.empty()) {
            const std::scoped_lock guard(m_lock);
            m_fetched.insert(m_fetched.end(), fetched.begin(), fetched.end());
            return true;
        }
        if (m_options.drain && m_queue.isEmpty().value_or(false))
            return false;
    }
    return false;
}

void Worker::bury(const Input& input, const DeliveryPointer& delivery)
{
    HelperRecord record;
    record.outcome = HelperOutcome::Crashed;
    record.reason = format(u"handed out %d times, and no worker came to its end", delivery->count() - 1);
    store(input, record);
    m_queue.bury(*delivery, lineOfRecord(input, record, m_pool.version()));
    ++m_dead;
}

// Whole or not at all: under another name first.
void Worker::store(const Input& input, const HelperRecord& record)
{
    const std::string name = resultName(input, record.state);
    const fs::path folder = fs::path(*m_options.out) / name.substr(0, 2);
    fs::create_directories(folder);
    const fs::path file = folder / (name + ".json");
    const fs::path fresh = folder / ('.' + name + '.' + std::to_string(getpid()));
    std::ofstream stream(fresh, std::ios::binary | std::ios::trunc);
    stream << lineOfRecord(input, record, m_pool.version());
    stream.close();
    if (!stream)
        throw std::system_error(errno, std::generic_category(), fresh.string());
    fs::rename(fresh, file);
    ++m_records;
}

void Worker::finish(std::uint64_t tag, const HelperRecord& record)
{
    Running running;
    {
        const std::scoped_lock guard(m_lock);
        running = m_running.at(tag);
    }
    store(running.input, record);
    m_queue.acknowledge(*running.delivery);
    const std::scoped_lock guard(m_lock);
    m_running.erase(tag);
}

void Worker::extendAll()
{
    std::vector<DeliveryPointer> held;
    {
        const std::scoped_lock guard(m_lock);
        held.assign(m_fetched.begin(), m_fetched.end());
        for (const auto& [tag, running] : m_running)
            held.push_back(running.delivery);
    }
    for (const DeliveryPointer& delivery : held)
        m_queue.extend(*delivery);
}

std::string Worker::summary() const
{
    return std::to_string(m_records) + " records, " + std::to_string(m_repeated)
        + " of them of jobs that came again, " + std::to_string(m_dead) + " dead";
}

} // namespace caddis::tool
