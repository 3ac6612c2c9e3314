#pragma once

#include "client/HelperProxy.h"
#include "client/HelperRecord.h"
#include "client/HelperTask.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace caddis {

/// One request about a file; its answer stands in the record under `name`. What it throws is understood as
/// HelperProxy's functions throw it.
struct HelperQuestion {
    String name;
    std::function<std::optional<Value>(const HelperProxy&)> ask;
};

struct HelperJob {
    String file;
    std::vector<HelperQuestion> questions;
    std::uint64_t tag = 0; ///< the caller's own
};

/// Many files, several helpers, and none of what a file does to a helper reaches the caller.
///
///     HelperPool pool({ .helper = path, .helpers = 4 });
///     pool.run(nextJob, [](const HelperJob& job, const HelperRecord& record) { … });
///
/// Each job that was taken gets exactly one record. A helper that dies or does not answer in time is killed
/// with all that it has started; the question is asked once more of a fresh helper, and failing that too the
/// file is recorded as failed, and remembered. The fresh helper is a standby that is up already.
class HelperPool {
public:
    struct Settings {
        String helper; ///< the program's path
        unsigned helpers = 1;
        double timeout = 15; ///< seconds for one question
        std::size_t memory = std::size_t(1) << 30; ///< bytes of its own that a helper can have; 0: no limit
        std::uint64_t largestFile = 0; ///< bytes; larger ones are not asked about; 0: no limit
        unsigned renewAfter = 20'000; ///< questions after which a helper is replaced
        /// How often a question is asked again because somebody has sent SIGKILL or SIGTERM to the helper,
        /// which is not the file's fault. The kernel's SIGKILL for want of memory may be.
        unsigned mostKills = 100;
        HelperProfile profile = HelperProfile::Reader;
        QualityOfService quality = QualityOfService::Default;
        std::string log; ///< the file to which helpers' logs are appended; empty: standard error
        std::string failureFile; ///< where failures are remembered; empty: only while the pool lives
        /// Asked of each helper before it is needed, for what it loads only once. Its answer is dropped.
        std::function<void(const HelperProxy&)> warmUp;
    };

    struct Statistics {
        std::uint64_t launched = 0;
        std::uint64_t crashed = 0; ///< helpers that ended in a request
        std::uint64_t timedOut = 0;
        std::uint64_t renewed = 0;
        std::uint64_t mostMemory = 0; ///< bytes resident that any helper has had, but for crashed ones
    };

    /// Gives the next job, or nil at the end. Called by one thread at a time.
    using Source = std::function<std::optional<HelperJob>()>;
    /// Takes a record. Called by several threads at a time.
    using Sink = std::function<void(const HelperJob&, const HelperRecord&)>;

    explicit HelperPool(Settings settings);
    ~HelperPool();
    HelperPool(const HelperPool&) = delete;
    HelperPool& operator=(const HelperPool&) = delete;

    /// Works through the source. False when no helper can be launched (any more): the jobs that were taken
    /// have their records, "refused", and the rest was not taken. What source or sink throws ends the run and
    /// is thrown on.
    bool run(const Source& source, const Sink& sink);

    /// Ends the run after the jobs that have been taken. May be called from a signal handler.
    void stop() { m_stopped = true; }

    Statistics statistics() const;

    /// Changes when one of the programs and modules that answer has changed.
    const String& version() const { return m_version; }

private:
    struct Run;
    struct Members;
    void work(Run& run);

    const Settings m_settings;
    const String m_version;
    std::atomic<bool> m_stopped = false;
    std::unique_ptr<Members> m_members;
};

} // namespace caddis
