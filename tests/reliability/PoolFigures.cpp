// pool_figures standby | requests N FILE… | bare LIST: figures that need the library and not the tool. Exit
// status 1 when a goal is missed.

#include "batch/Operations.h"
#include "batch/Places.h"
#include "client/OstraImExport.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

using namespace caddis;
using namespace caddis::tool;
using Clock = std::chrono::steady_clock;

namespace {

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

HelperPool::Settings settings()
{
    HelperPool::Settings settings;
    settings.helper = helperPath();
    settings.log = "/dev/null";
    settings.warmUp = warmUp;
    return settings;
}

// The helper is told to end in the middle of a job, whose next question is then answered by the standby.
int standby()
{
    constexpr int Deaths = 101;
    HelperPool pool(settings());
    std::vector<double> waits;
    Clock::time_point death;
    const HelperQuestion die { u"die"_s, [&](const HelperProxy& helper) -> std::optional<Value> {
                                  while (pool.statistics().launched < waits.size() + 2)
                                      std::this_thread::sleep_for(std::chrono::milliseconds(10));
                                  helper.terminate();
                                  death = Clock::now();
                                  return true;
                              } };
    const HelperQuestion next { u"next"_s, [&](const HelperProxy& helper) -> std::optional<Value> {
                                   helper.ping();
                                   waits.push_back(secondsSince(death));
                                   return true;
                               } };
    pool.run(
        [&, count = 0]() mutable -> std::optional<HelperJob> {
            if (count++ == Deaths)
                return std::nullopt;
            return HelperJob { u"/dev/../etc/passwd"_s, { die, next } };
        },
        [](const HelperJob&, const HelperRecord&) {});
    std::ranges::sort(waits);
    const double median = waits.at(waits.size() / 2);
    std::printf("  from a death to the next answer: median %.2f ms, 95 %% %.2f ms, most %.2f ms\n",
        median * 1e3, waits.at(waits.size() * 95 / 100) * 1e3, waits.back() * 1e3);
    return median < 0.005 ? 0 : 1;
}

// Kilobytes resident.
long residentMemory(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/statm");
    long all = 0;
    long resident = 0;
    file >> all >> resident;
    return resident * 4;
}

int requests(long count, std::vector<String> files)
{
    const auto task = HelperTask::initWithPath(
        helperPath(), format(u"Figures.%d", getpid()), &OstraImExport, 15, QualityOfService::Default);
    task->setLaunch({ .profile = HelperProfile::Reader, .attached = true, .log = "/dev/null" });
    const auto proxy = task->proxy();
    if (!proxy)
        return 2;
    const HelperProxy helper(*proxy);
    const pid_t process = task->launchedTask()->processIdentifier();
    long early = 0;
    const auto start = Clock::now();
    for (long done = 1; done <= count; ++done) {
        helper.metaDataForFile(files[static_cast<std::size_t>(done) % files.size()]);
        if (done == 1000)
            early = residentMemory(process);
    }
    const long late = residentMemory(process);
    std::printf(
        "  %ld requests over %zu files in %.0f s: %ld kB after a thousand, %ld kB at the end (%.3f times)\n",
        count, files.size(), secondsSince(start), early, late, double(late) / double(early));
    task->killWithChildren();
    return double(late) <= 1.05 * double(early) ? 0 : 1;
}

// Seconds a file for one helper that is asked one after the other, by nothing but the proxy.
int bare(const char* list)
{
    std::vector<String> files;
    std::ifstream stream(list);
    for (std::string line; std::getline(stream, line);)
        files.push_back(String::fromUtf8(line));
    const auto task = HelperTask::initWithPath(
        helperPath(), format(u"Figures.%d", getpid()), &OstraImExport, 15, QualityOfService::Default);
    task->setLaunch({ .profile = HelperProfile::Reader, .attached = true, .log = "/dev/null" });
    const auto proxy = task->proxy();
    if (!proxy || files.empty())
        return 2;
    const HelperProxy helper(*proxy);
    warmUp(helper);
    const auto start = Clock::now();
    for (const String& file : files)
        helper.metaDataForFile(file);
    std::printf("%.9f\n", secondsSince(start) / double(files.size()));
    task->killWithChildren();
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const std::string command = argumentCount > 1 ? arguments[1] : "";
    if (command == "standby")
        return standby();
    if (command == "bare" && argumentCount == 3)
        return bare(arguments[2]);
    if (command == "requests" && argumentCount > 3) {
        std::vector<String> files;
        for (int index = 3; index < argumentCount; ++index)
            files.push_back(absolutePath(arguments[index]));
        return requests(std::atol(arguments[2]), std::move(files));
    }
    std::fputs("pool_figures standby | requests N FILE… | bare LIST\n", stderr);
    return 2;
}
