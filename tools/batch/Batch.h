#pragma once

#include "BatchOptions.h"
#include "Inputs.h"
#include "client/HelperPool.h"

namespace caddis::tool {

/// A pool as the options want it; it says on standard error what this kernel lacks for the sandbox.
std::unique_ptr<HelperPool> poolFor(const BatchOptions& options);

/// The job that stands for an input; its tag is `tag`.
HelperJob jobFor(const Input& input, const BatchOptions& options, std::uint64_t tag);

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
