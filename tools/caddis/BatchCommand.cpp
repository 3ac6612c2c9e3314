#include "BatchCommand.h"

#include "batch/Batch.h"
#include "batch/Progress.h"
#include "batch/Results.h"

#include <csignal>
#include <cstdio>
#include <map>
#include <mutex>

namespace caddis::tool {

namespace {

ExitCode complain(const std::string& mistake)
{
    std::fprintf(stderr, "caddis batch: %s\n", mistake.c_str());
    return Usage;
}

// The inputs that are being read, by the tags of their jobs: a job knows its file only.
class Running {
public:
    std::uint64_t add(Input input)
    {
        const std::scoped_lock guard(m_lock);
        m_inputs.emplace(++m_last, std::move(input));
        return m_last;
    }
    Input take(std::uint64_t tag)
    {
        const std::scoped_lock guard(m_lock);
        return std::move(m_inputs.extract(tag).mapped());
    }

private:
    std::mutex m_lock;
    std::uint64_t m_last = 0;
    std::map<std::uint64_t, Input> m_inputs;
};

ExitCode exitCodeOf(const Progress& progress)
{
    using enum HelperOutcome;
    if (InterruptGuard::wasInterrupted())
        return Interrupted;
    if (progress.count(Crashed) + progress.count(TimedOut) + progress.count(TooBig) > 0)
        return HelperFailed;
    return progress.count(Ok) + progress.count(Partial) == progress.count() ? Success : NothingFound;
}

bool runAll(HelperPool& pool, const BatchOptions& options, Results& results, Progress& progress)
{
    Inputs inputs(options.arguments, options.operation);
    Running running;
    const auto next = [&]() -> std::optional<HelperJob> {
        auto input = inputs.next();
        while (input && results.has(*input))
            input = inputs.next();
        if (!input)
            return std::nullopt;
        HelperJob job = jobFor(*input, options, 0);
        job.tag = running.add(std::move(*input));
        return job;
    };
    const auto note = [&](const HelperJob& job, const HelperRecord& record) {
        results.add(running.take(job.tag), record);
        progress.note(record.outcome);
    };
    return pool.run(next, note);
}

void summarize(const HelperPool& pool, const Progress& progress, const Results& results)
{
    const auto statistics = pool.statistics();
    std::fprintf(stderr, "%s\n", progress.summary().c_str());
    if (results.countOfKept())
        std::fprintf(stderr, "%zu records were there already\n", results.countOfKept());
    std::fprintf(stderr,
        "helpers: %llu launched, %llu crashed, %llu timed out, %llu renewed; at most %llu MiB\n",
        static_cast<unsigned long long>(statistics.launched),
        static_cast<unsigned long long>(statistics.crashed),
        static_cast<unsigned long long>(statistics.timedOut),
        static_cast<unsigned long long>(statistics.renewed),
        static_cast<unsigned long long>(statistics.mostMemory >> 20));
}

ExitCode runBatch(const BatchOptions& options)
{
    const auto pool = poolFor(options);
    std::string mistake;
    const auto results = Results::open(options.out, options.resume, pool->version(), mistake);
    if (!results)
        return complain(mistake);
    const InterruptGuard guard(*pool);
    Progress progress(!options.quiet);
    std::thread counter;
    if (progress.isShown() && !Inputs(options.arguments, "").readsStandardInput())
        counter = std::thread(
            [&] { progress.expect(Inputs::count(options.arguments, InterruptGuard::wasInterrupted)); });
    const bool hadHelpers = runAll(*pool, options, *results, progress);
    if (counter.joinable())
        counter.join();
    if (!options.quiet)
        summarize(*pool, progress, *results);
    if (!hadHelpers)
        std::fputs("caddis batch: no helper could be launched\n", stderr);
    return hadHelpers ? exitCodeOf(progress) : HelperFailed;
}

} // namespace

ExitCode batch(const Invocation& invocation)
{
    std::string mistake;
    const auto options = readBatchOptions(invocation.arguments, mistake);
    if (!options)
        return complain(mistake);
    if (options->arguments.empty())
        return complain("which files? (- reads their names from standard input)");
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return runBatch(*options);
    } catch (const std::exception& exception) {
        return complain(exception.what());
    }
}

} // namespace caddis::tool
