#include "client/HelperPool.h"

#include "client/FailureMemory.h"
#include "client/PooledHelper.h"

#include <cstdio>
#include <exception>
#include <filesystem>

namespace caddis {

namespace {

// Size and time of each program and module that takes part in an answer.
String versionOf(const String& helper)
{
    const std::filesystem::path program = helper.utf8();
    std::vector<std::filesystem::path> parts { program };
    std::error_code error;
    for (const char* const folder : { ".", "../lib/caddis" }) {
        for (const auto& entry : std::filesystem::directory_iterator(program.parent_path() / folder, error)) {
            if (entry.path().extension() == ".so")
                parts.push_back(entry.path());
        }
    }
    std::uint64_t hash = 0xcbf29ce484222325; // FNV-1a over the numbers, in no particular order of the files.
    std::uint64_t sum = 0;
    for (const auto& part : parts) {
        String ignored;
        const auto state = stateOfFile(String::fromUtf8(part.string()), ignored).value_or(FileState {});
        for (const std::uint64_t number : { state.size, static_cast<std::uint64_t>(state.modified) })
            hash = (hash ^ number) * 0x100000001b3;
        sum += std::exchange(hash, 0xcbf29ce484222325);
    }
    char digits[17] = {};
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(sum));
    return String::fromLatin1(digits);
}

} // namespace

// One run: what its threads share.
struct HelperPool::Run {
    const Source& source;
    const Sink& sink;
    std::mutex sourceLock {};
    std::atomic<bool> isAtEnd = false;
    std::atomic<bool> hasNoHelper = false;
    std::exception_ptr failure {}; // under sourceLock

    void fail()
    {
        const std::scoped_lock guard(sourceLock);
        if (!failure)
            failure = std::current_exception();
        isAtEnd = true;
    }
    std::optional<HelperJob> next()
    {
        const std::scoped_lock guard(sourceLock);
        if (isAtEnd)
            return std::nullopt;
        auto job = source();
        if (!job)
            isAtEnd = true;
        return job;
    }
};

struct HelperPool::Members {
    Members(const Settings& settings, const String& version)
        : failures(settings.failureFile, version)
        , nursery(settings)
    {
    }

    PooledHelper::Counters counters;
    FailureMemory failures;
    HelperNursery nursery;
};

HelperPool::HelperPool(Settings settings)
    : m_settings(std::move(settings))
    , m_version(versionOf(m_settings.helper))
    , m_members(std::make_unique<Members>(m_settings, m_version))
{
}

HelperPool::~HelperPool() = default;

bool HelperPool::run(const Source& source, const Sink& sink)
{
    Run run { source, sink };
    std::vector<std::thread> threads;
    for (unsigned count = 0; count < m_settings.helpers; ++count)
        threads.emplace_back([&] { work(run); });
    for (std::thread& thread : threads)
        thread.join();
    if (run.failure)
        std::rethrow_exception(run.failure);
    return !run.hasNoHelper;
}

void HelperPool::work(Run& run)
{
    PooledHelper helper(m_settings, m_members->nursery, m_members->counters, m_members->failures);
    try {
        while (!m_stopped && !run.hasNoHelper) {
            const auto job = run.next();
            if (!job)
                return;
            run.sink(*job, helper.ask(*job));
            if (!helper.isAvailable())
                run.hasNoHelper = true;
        }
    } catch (...) {
        run.fail();
    }
}

HelperPool::Statistics HelperPool::statistics() const
{
    const auto& counters = m_members->counters;
    return { .launched = m_members->nursery.launched(),
        .crashed = counters.crashed,
        .timedOut = counters.timedOut,
        .renewed = counters.renewed,
        .mostMemory = counters.mostMemory };
}

} // namespace caddis
