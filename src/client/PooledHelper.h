#pragma once

#include "client/FailureMemory.h"
#include "client/HelperNursery.h"

namespace caddis {

/// The helper of one of a pool's threads: asks, and replaces it when it dies, hangs or has grown. For that
/// one thread.
class PooledHelper {
public:
    /// What all helpers of a pool have gone through.
    struct Counters {
        std::atomic<std::uint64_t> crashed = 0;
        std::atomic<std::uint64_t> timedOut = 0;
        std::atomic<std::uint64_t> renewed = 0;
        std::atomic<std::uint64_t> mostMemory = 0;
    };

    PooledHelper(const HelperPool::Settings& settings, HelperNursery& nursery, Counters& counters,
        FailureMemory& failures);
    ~PooledHelper();
    PooledHelper(const PooledHelper&) = delete;
    PooledHelper& operator=(const PooledHelper&) = delete;

    /// Asks all questions of the job, in their order, and goes on after one that failed. One that is known to
    /// do harm is not asked.
    HelperRecord ask(const HelperJob& job);

    /// False once no helper can be launched.
    bool isAvailable() const { return m_isAvailable; }

private:
    struct Answer {
        std::optional<Value> value {};
        HelperOutcome outcome = HelperOutcome::Ok;
        String reason {};
        String leftOut {}; ///< of the value; empty: nothing
        int signal = 0;
        bool harmedHelper = false;
        bool wasKilledFromOutside = false;
    };

    HelperRecord askAll(const HelperJob& job, const FileState& state);
    Answer answerTo(
        const HelperQuestion& question, const HelperJob& job, const FileState& state, unsigned& attempts);
    Answer ask(const HelperQuestion& question, unsigned& attempts);
    Answer askOnce(const HelperQuestion& question);
    Answer failure(const Exception& exception);
    Answer deathOfHelper();
    std::optional<Proxy> proxy();
    void discard();
    void renewWhenDue();
    pid_t process() const;
    void noteMemory(std::uint64_t bytes);

    const HelperPool::Settings& m_settings;
    HelperNursery& m_nursery;
    Counters& m_counters;
    FailureMemory& m_failures;
    std::uint64_t m_kernelKills; // when they were last counted
    std::unique_ptr<HelperTask> m_helper;
    unsigned m_questions = 0; // that m_helper was asked
    bool m_isAvailable = true;
};

} // namespace caddis
