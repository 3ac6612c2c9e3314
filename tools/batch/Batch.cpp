#include "Batch.h"

#include "Operations.h"
#include "Places.h"
#include "platform/sandbox/Sandbox.h"

#include <csignal>
#include <cstdio>
#include <thread>

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

std::uint64_t RunningInputs::add(Input input)
{
    const std::scoped_lock guard(m_lock);
    m_inputs.emplace(++m_last, std::move(input));
    return m_last;
}

Input RunningInputs::take(std::uint64_t tag)
{
    const std::scoped_lock guard(m_lock);
    return std::move(m_inputs.extract(tag).mapped());
}

bool runInputs(HelperPool& pool, const BatchOptions& options, Progress& progress,
    const std::function<bool(const Input&)>& isWanted,
    const std::function<void(const Input&, const HelperRecord&)>& note)
{
    Inputs inputs(options.arguments, options.operation, InterruptGuard::wasInterrupted);
    RunningInputs running;
    std::jthread counter;
    if (progress.isShown() && !inputs.readsStandardInput())
        counter = std::jthread([&](const std::stop_token& token) {
            progress.expect(Inputs::count(options.arguments, [&] { return token.stop_requested(); }));
        });
    const auto next = [&]() -> std::optional<HelperJob> {
        auto input = inputs.next();
        while (input && !isWanted(*input))
            input = inputs.next();
        if (!input)
            return std::nullopt;
        HelperJob job = jobFor(*input, options, 0);
        job.tag = running.add(std::move(*input));
        return job;
    };
    return pool.run(next, [&](const HelperJob& job, const HelperRecord& record) {
        note(running.take(job.tag), record);
        progress.note(record.outcome);
    });
}

std::string summaryOf(const HelperPool& pool)
{
    const auto statistics = pool.statistics();
    return "helpers: " + std::to_string(statistics.launched) + " launched, "
        + std::to_string(statistics.crashed) + " crashed, " + std::to_string(statistics.timedOut)
        + " timed out, " + std::to_string(statistics.renewed) + " renewed; at most "
        + std::to_string(statistics.mostMemory >> 20) + " MiB";
}

InterruptGuard::InterruptGuard(HelperPool& pool)
{
    runningPool = &pool;
    struct sigaction action = {};
    action.sa_handler = interrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
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
