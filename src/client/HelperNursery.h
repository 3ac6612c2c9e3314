#pragma once

#include "client/HelperPool.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace caddis {

/// Raises helpers before they are needed and buries the dead, on a thread of its own: neither costs those who
/// wait for an answer any time. Each helper has a name that no other one gets.
class HelperNursery {
public:
    explicit HelperNursery(const HelperPool::Settings& settings);
    ~HelperNursery();
    HelperNursery(const HelperNursery&) = delete;
    HelperNursery& operator=(const HelperNursery&) = delete;

    /// A helper that has answered already; it is the caller's, who makes his own connection to it. Null when
    /// none can be launched; nobody tries again.
    std::unique_ptr<HelperTask> take();
    /// Takes a helper back, dead or alive, to end it with all that it has started.
    void bury(std::unique_ptr<HelperTask> helper);

    std::uint64_t launched() const { return m_launched; }

private:
    void live();
    std::unique_ptr<HelperTask> raise();
    static void end(HelperTask& helper);

    const HelperPool::Settings& m_settings;
    std::atomic<std::uint64_t> m_launched = 0;
    mutable std::mutex m_lock;
    std::condition_variable m_work; // for the nursery: something to do
    std::condition_variable m_ready; // for those who take
    std::unique_ptr<HelperTask> m_standby;
    std::deque<std::unique_ptr<HelperTask>> m_dead;
    unsigned m_failedLaunches = 0;
    bool m_wasKilled = false; // the last launched one, before it could answer; the nursery's thread's own
    bool m_ending = false;
    std::thread m_thread; // The last member: it uses all others.
};

} // namespace caddis
