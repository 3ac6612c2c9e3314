#include "ReportCommand.h"

#include "Output.h"
#include "batch/Batch.h"
#include "batch/ReportPage.h"

#include <cstdio>
#include <filesystem>

namespace caddis::tool {

namespace {

ExitCode complain(const std::string& mistake)
{
    std::fprintf(stderr, "caddis report: %s\n", mistake.c_str());
    return Usage;
}

ExitCode runReport(const BatchOptions& options)
{
    const auto pool = poolFor(options);
    const InterruptGuard guard(*pool);
    Progress progress(!options.quiet);
    ReportPage page(absolutePath(options.arguments.front() + '/').utf8());
    const bool hadHelpers = runInputs(
        *pool, options, progress, [](const Input&) { return true; },
        [&](const Input& input, const HelperRecord& record) { page.add(input, record); });
    progress.end();
    if (!hadHelpers) {
        std::fputs("caddis report: no helper could be launched\n", stderr);
        return HelperFailed;
    }
    if (!writeData(Data::adopt(page.html(progress.summary())), options.out))
        return Usage;
    if (!options.quiet)
        std::fprintf(stderr, "%s\n%s\n", progress.summary().c_str(), summaryOf(*pool).c_str());
    return InterruptGuard::wasInterrupted() ? Interrupted : Success;
}

} // namespace

ExitCode report(const Invocation& invocation)
{
    std::string mistake;
    auto options = readBatchOptions(invocation.arguments, mistake);
    if (!options)
        return complain(mistake);
    if (options->arguments.size() != 1)
        return complain("it is about one folder");
    std::error_code error;
    if (!std::filesystem::is_directory(options->arguments.front(), error))
        return complain(options->arguments.front() + ": there is no such folder");
    options->operation = "info+preview";
    return runReport(*options);
}

} // namespace caddis::tool
