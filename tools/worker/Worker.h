#pragma once

#include "JobQueue.h"
#include "batch/BatchOptions.h"
#include "batch/Inputs.h"
#include "client/HelperPool.h"

#include <deque>
#include <map>
#include <mutex>

namespace caddis::tool {

/// The name of a result: of the operation, the path and the file as it is now. A job that is done twice has
/// one result.
std::string resultName(const Input& input, const std::optional<FileState>& state);

/// Takes jobs out of the queue, puts them to the pool's helpers and stores each record in a file of its own,
/// OUT/ab/abcdef….json, before the job is acknowledged. A job that was handed out too often, because the
/// workers that had it ended, is put among the dead, with a record.
class Worker {
public:
    Worker(const BatchOptions& options, HelperPool& pool);

    /// Works until the pool is stopped or, with --drain, the queue is empty. False when there are no helpers.
    bool run();

    /// "1,234 records, 5 of them of jobs that came again, 1 dead"
    std::string summary() const;

private:
    struct Running {
        Input input;
        DeliveryPointer delivery;
    };

    std::optional<HelperJob> next();
    bool fetchMore();
    void bury(const Input& input, const DeliveryPointer& delivery);
    void store(const Input& input, const HelperRecord& record);
    void finish(std::uint64_t tag, const HelperRecord& record);
    void extendAll();

    const BatchOptions& m_options;
    HelperPool& m_pool;
    JobQueue m_queue;
    std::deque<DeliveryPointer> m_fetched; // For the source, which is one thread at a time; under m_lock.
    std::mutex m_lock;
    std::map<std::uint64_t, Running> m_running;
    std::uint64_t m_lastTag = 0;
    std::atomic<std::uint64_t> m_records = 0;
    std::atomic<std::uint64_t> m_repeated = 0;
    std::atomic<std::uint64_t> m_dead = 0;
};

} // namespace caddis::tool
