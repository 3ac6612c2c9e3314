#include "client/HelperNursery.h"

#include "client/ConnectionCache.h"
#include "client/OstraImExport.h"
#include "platform/ipc/RuntimeDirectory.h"

#include <csignal>

namespace caddis {

namespace {

constexpr unsigned MostFailedLaunches = 2;
// Helpers that somebody kills while they start; each costs milliseconds.
constexpr unsigned MostKilledLaunches = 100;
constexpr double LongestEnding = 0.1; // Seconds from a signal to the end of its process.

bool wasKilledFromOutside(const HelperTask& helper)
{
    constexpr int Signalled = 128; // A task's status adds it to the signal.
    Task* const task = helper.lastTask();
    if (!task || !task->waitUntilExit(LongestEnding))
        return false;
    const int signal = task->terminationStatus().value_or(0) - Signalled;
    return signal == SIGKILL || signal == SIGTERM;
}

String nextName()
{
    static std::atomic<unsigned> count = 0;
    return format(u"%@.%d.%d", HelperServiceName, getpid(), ++count);
}

} // namespace

HelperNursery::HelperNursery(const HelperPool::Settings& settings)
    : m_settings(settings)
    , m_thread([this] { live(); })
{
}

HelperNursery::~HelperNursery()
{
    {
        const std::scoped_lock guard(m_lock);
        m_ending = true;
    }
    m_work.notify_one();
    m_thread.join();
}

std::unique_ptr<HelperTask> HelperNursery::take()
{
    std::unique_lock guard(m_lock);
    m_ready.wait(guard, [this] { return m_standby || m_failedLaunches >= MostFailedLaunches; });
    auto helper = std::move(m_standby);
    m_work.notify_one();
    return helper;
}

void HelperNursery::bury(std::unique_ptr<HelperTask> helper)
{
    {
        const std::scoped_lock guard(m_lock);
        m_dead.push_back(std::move(helper));
    }
    m_work.notify_one();
}

// A standby comes before a burial: somebody may be waiting for it.
void HelperNursery::live()
{
    std::unique_lock guard(m_lock);
    for (;;) {
        const auto wantsStandby
            = [this] { return !m_ending && !m_standby && m_failedLaunches < MostFailedLaunches; };
        m_work.wait(guard, [&] { return wantsStandby() || !m_dead.empty() || m_ending; });
        if (wantsStandby()) {
            guard.unlock();
            auto helper = raise();
            for (unsigned count = 0; !helper && m_wasKilled && count < MostKilledLaunches; ++count)
                helper = raise();
            guard.lock();
            m_failedLaunches = helper ? 0 : m_failedLaunches + 1;
            m_standby = std::move(helper);
            m_ready.notify_all();
        } else if (!m_dead.empty() || m_standby) {
            auto helper = std::move(m_dead.empty() ? m_standby : m_dead.front());
            if (!m_dead.empty())
                m_dead.pop_front();
            guard.unlock();
            end(*helper);
            helper.reset();
            guard.lock();
        } else
            return;
    }
}

std::unique_ptr<HelperTask> HelperNursery::raise()
{
    auto helper = HelperTask::initWithPath(
        m_settings.helper, nextName(), &OstraImExport, m_settings.timeout, m_settings.quality);
    if (!helper)
        return nullptr;
    helper->setLaunch({ .profile = m_settings.profile,
        .memory = m_settings.memory,
        .attached = true,
        .log = m_settings.log });
    const auto proxy = helper->launch();
    m_wasKilled = !proxy && wasKilledFromOutside(*helper);
    if (!proxy) {
        end(*helper);
        return nullptr;
    }
    if (m_settings.warmUp) {
        try {
            m_settings.warmUp(HelperProxy(*proxy));
        } catch (const Exception&) { // NOLINT(bugprone-empty-catch): the first question will show it
        }
    }
    removeConnectionRegisteredWithName(helper->registeredProxyName());
    ++m_launched;
    return helper;
}

void HelperNursery::end(HelperTask& helper)
{
    helper.killWithChildren();
    removeFilesOfName(helper.registeredProxyName());
}

} // namespace caddis
