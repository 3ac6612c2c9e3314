#include "Batch.h"

#include "Operations.h"
#include "Places.h"
#include "platform/sandbox/Sandbox.h"

#include <csignal>
#include <cstdio>

namespace caddis::tool {

namespace {

std::atomic<HelperPool*> runningPool = nullptr;
std::atomic<bool> interrupted = false;

void interrupt(int)
{
    interrupted = true;
    if (HelperPool* const pool = runningPool)
        pool->stop();
}

} // namespace

std::unique_ptr<HelperPool> poolFor(const BatchOptions& options)
{
    if (options.sandbox) {
        const Sandbox sandbox = Sandbox::forReader("");
        for (const std::string& line : sandbox.whatIsMissing())
            std::fprintf(stderr, "caddis: %s\n", line.c_str());
    }
    HelperPool::Settings settings;
    settings.helper = helperPath();
    settings.helpers = options.jobs;
    settings.timeout = options.timeout;
    settings.memory = options.memory;
    settings.largestFile = options.largest;
    settings.profile = options.sandbox ? HelperProfile::Reader : HelperProfile::Base;
    settings.log = options.log;
    settings.failureFile = options.failures;
    settings.warmUp = warmUp;
    return std::make_unique<HelperPool>(std::move(settings));
}

HelperJob jobFor(const Input& input, const BatchOptions& options, std::uint64_t tag)
{
    HelperJob job { input.file, questionsFor(input.operation, input.file, options.size), tag };
    if (!isOperation(input.operation))
        job.questions = { { u"?"_s, [](const HelperProxy&) -> std::optional<Value> {
                               throw Exception(String(InvalidArgsError), u"there is no such operation"_s);
                           } } };
    return job;
}

InterruptGuard::InterruptGuard(HelperPool& pool)
{
    runningPool = &pool;
    struct sigaction action = {};
    action.sa_handler = interrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND); // And not SA_RESTART: reading inputs ends too.
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

InterruptGuard::~InterruptGuard()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    runningPool = nullptr;
}

bool InterruptGuard::wasInterrupted() { return interrupted; }

} // namespace caddis::tool
