#include "BatchCommand.h"

#include "batch/Batch.h"
#include "batch/Results.h"

#include <csignal>
#include <cstdio>
#include <system_error>

namespace caddis::tool {

namespace {

ExitCode complain(const std::string& mistake)
{
    std::fprintf(stderr, "caddis batch: %s\n", mistake.c_str());
    return Usage;
}

ExitCode exitCodeOf(const Progress& progress)
{
    using enum HelperOutcome;
    if (InterruptGuard::wasInterrupted())
        return Interrupted;
    if (progress.count(Crashed) + progress.count(TimedOut) + progress.count(TooBig) > 0)
        return HelperFailed;
    return progress.count(Ok) + progress.count(Partial) == progress.count() ? Success : NothingFound;
}

void summarize(const HelperPool& pool, const Progress& progress, const Results& results)
{
    std::fprintf(stderr, "%s\n", progress.summary().c_str());
    if (results.countOfKept())
        std::fprintf(stderr, "%zu records were there already\n", results.countOfKept());
    std::fprintf(stderr, "%s\n", summaryOf(pool).c_str());
    if (InterruptGuard::wasInterrupted() && results.isKept())
        std::fputs("interrupted; with --resume it goes on from here\n", stderr);
}

// As any program does whose reader has had enough; but only here, when the helpers have gone.
void endByBrokenPipe()
{
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
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
    const bool hadHelpers = runInputs(
        *pool, options, progress,
        [&](const Input& input) { return !results->has(input) && !results->isOwn(input.file); },
        [&](const Input& input, const HelperRecord& record) { results->add(input, record); });
    progress.end();
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
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::broken_pipe)
            endByBrokenPipe();
        return complain(error.what());
    } catch (const std::exception& exception) {
        return complain(exception.what());
    }
}

} // namespace caddis::tool
