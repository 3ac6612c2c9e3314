// caddis-worker: takes jobs for helpers out of a queue that many machines share, or puts them in. A program
// of its own, because the queue's library brings a dozen others along; `caddis worker` and `caddis enqueue`
// are this.

#include "JobQueue.h"
#include "Worker.h"
#include "batch/Batch.h"
#include "caddis/ValuePrinter.h"

#include <csignal>
#include <cstdio>

using namespace caddis;
using namespace caddis::tool;

namespace {

constexpr int Failed = 3;
constexpr int WrongUsage = 2;

std::string jobOf(const Input& input)
{
    std::string job
        = json(Dictionary { { u"file"_s, input.file }, { u"op"_s, String::fromUtf8(input.operation) } });
    if (!input.id.empty()) {
        job.pop_back();
        job += ", \"id\": " + input.id + '}';
    }
    return job;
}

int enqueue(const BatchOptions& options)
{
    JobQueue queue(options.server, options.queue);
    Inputs inputs(options.arguments, options.operation, [] { return false; });
    std::uint64_t count = 0;
    for (; const auto input = inputs.next(); ++count) {
        String ignored;
        queue.publish(jobOf(*input), resultName(*input, stateOfFile(input->file, ignored)));
    }
    queue.flush();
    if (!options.quiet)
        std::fprintf(stderr, "%llu jobs are in the queue\n", static_cast<unsigned long long>(count));
    return 0;
}

int work(const BatchOptions& options)
{
    const auto pool = poolFor(options);
    const InterruptGuard guard(*pool);
    Worker worker(options, *pool);
    const bool hadHelpers = worker.run();
    if (!options.quiet)
        std::fprintf(stderr, "%s\n%s\n", worker.summary().c_str(), summaryOf(*pool).c_str());
    return hadHelpers ? 0 : Failed;
}

int complain(const std::string& mistake)
{
    std::fprintf(stderr, "caddis-worker: %s\n", mistake.c_str());
    return WrongUsage;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const std::string command = argumentCount > 1 ? arguments[1] : "";
    if (command != "worker" && command != "enqueue")
        return complain("worker or enqueue?");
    std::string mistake;
    const auto options = readBatchOptions({ arguments + 2, arguments + argumentCount }, mistake);
    if (!options)
        return complain(mistake);
    if (command == "worker" && !options->out)
        return complain("where do results go? --out FOLDER");
    if (command == "enqueue" && options->arguments.empty())
        return complain("which files? (- reads their names from standard input)");
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return command == "worker" ? work(*options) : enqueue(*options);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "caddis-worker: %s\n", exception.what());
        return Failed;
    }
}
