#pragma once

#include "BatchOptions.h"
#include "Inputs.h"
#include "Progress.h"
#include "client/HelperPool.h"

#include <map>
#include <mutex>

namespace caddis::tool {

/// A pool as the options want it; it says on standard error what this kernel lacks for the sandbox.
std::unique_ptr<HelperPool> poolFor(const BatchOptions& options);

/// The job that stands for an input; its tag is `tag`.
HelperJob jobFor(const Input& input, const BatchOptions& options, std::uint64_t tag);

/// The inputs that are being read, by the tags of their jobs: a job knows its file only. For several threads.
class RunningInputs {
public:
    std::uint64_t add(Input input);
    Input take(std::uint64_t tag);

private:
    std::mutex m_lock;
    std::uint64_t m_last = 0;
    std::map<std::uint64_t, Input> m_inputs;
};

/// Puts the inputs of the command line to the pool and shows how far it is. `isWanted` says which are to be
/// read; `note` takes each with its record, from several threads. False when there are no helpers.
bool runInputs(HelperPool& pool, const BatchOptions& options, Progress& progress,
    const std::function<bool(const Input&)>& isWanted,
    const std::function<void(const Input&, const HelperRecord&)>& note);

/// "helpers: 3 launched, 1 crashed …"
std::string summaryOf(const HelperPool& pool);

/// While it lives, the first SIGINT or SIGTERM ends the pool's run after the files that are being read, and
/// the second one the process.
class InterruptGuard {
public:
    explicit InterruptGuard(HelperPool& pool);
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

    static bool wasInterrupted();
};

} // namespace caddis::tool
