#include "client/HelperTask.h"

#include "client/ConnectionCache.h"
#include "platform/base/Log.h"

#include <chrono>
#include <thread>

namespace caddis {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr std::u16string_view ClassName = u"HelperTask";
constexpr Seconds BusyPollInterval(0.05);
constexpr double LongestEnding = 1.0;
constexpr double AttachedStep = 0.01;
constexpr int AttachedSteps = 500;
constexpr RemoteMember StillBusy { "StillBusy", "", "b" };

} // namespace

std::unique_ptr<HelperTask> HelperTask::initWithPath(const String& path, const String& registeredProxyName,
    const RemoteProtocol* protocol, double timeout, QualityOfService quality)
{
    if (path.isEmpty() || registeredProxyName.isEmpty()) {
        log(u"Helper missing: %@", registeredProxyName);
        return nullptr;
    }
    return std::unique_ptr<HelperTask>(new HelperTask(path, registeredProxyName, protocol, timeout, quality));
}

HelperTask::HelperTask(String path, String registeredProxyName, const RemoteProtocol* protocol,
    double timeout, QualityOfService quality)
    : m_proxyName(std::move(registeredProxyName))
    , m_path(std::move(path))
    , m_timeout(timeout)
    , m_protocol(protocol)
    , m_qualityOfService(quality)
{
}

HelperTask::~HelperTask() { terminate(); }

std::optional<Proxy> HelperTask::launchUsingTimeout(double timeout)
{
    interrupt();
    if (hasGivenUp())
        return std::nullopt;
    try {
        if (m_ending)
            m_ending->waitUntilExit(LongestEnding);
        return startAndConnect(timeout);
    } catch (const Exception& exception) {
        logException(u"launchUsingTimeout:", ClassName, exception);
        interrupt();
        return std::nullopt;
    }
}

std::optional<Proxy> HelperTask::startAndConnect(double timeout)
{
    m_task = std::make_unique<Task>(m_path, m_arguments);
    if (m_isAttached)
        m_task->setOwnSession();
    m_task->setStandardErrorToFile(m_log);
    m_task->setQualityOfService(m_qualityOfService);
    m_task->launch();
    if (m_task->isRunning()) {
        if (auto proxy = waitForProxy(timeout))
            return proxy;
        ++m_failedAttempts;
        const String program = m_path.substringFrom(m_path.view().rfind(u'/') + 1);
        if (hasGivenUp())
            log(u"Connection to %@ failed. Giving up.", program);
        else
            log(u"Connection to %@ failed.", program);
        return std::nullopt;
    }
    ++m_failedAttempts;
    if (hasGivenUp())
        log(u"Couldn't launch %@. Giving up.", m_path);
    else
        log(u"Couldn't launch %@.", m_path);
    m_ending = std::move(m_task);
    return std::nullopt;
}

// An attached helper is the launched process itself: when that has ended, nobody will register the name.
std::optional<Proxy> HelperTask::waitForProxy(double timeout)
{
    if (!m_isAttached)
        return waitForRootProxyForConnectionWithRegisteredName(m_proxyName, timeout, m_protocol);
    for (int step = 0; step < AttachedSteps && m_task->isRunning(); ++step) {
        if (auto proxy = waitForTimeInterval(AttachedStep, m_proxyName, timeout, m_protocol))
            return proxy;
    }
    return std::nullopt;
}

std::optional<Proxy> HelperTask::launchedProxyUsingTimeout(double timeout)
{
    return guarded(u"launchedProxyUsingTimeout:", ClassName,
        [&] { return rootProxyForConnectionWithRegisteredName(m_proxyName, timeout, m_protocol); });
}

std::optional<Proxy> HelperTask::proxyUsingTimeout(double timeout)
{
    if (auto proxy = launchedProxyUsingTimeout(timeout))
        return proxy;
    return launchUsingTimeout(timeout);
}

bool HelperTask::stillBusy()
{
    const auto proxy = launchedProxy();
    return proxy && guarded(u"stillBusy", ClassName, [&] {
        try {
            return proxy->call(StillBusy) == Value(true);
        } catch (const Exception& exception) {
            // The question is optional for a helper.
            if (exception.name() == UnknownMethodError)
                return false;
            throw;
        }
    });
}

void HelperTask::waitUntilDone(double seconds)
{
    const auto end = std::chrono::steady_clock::now() + Seconds(seconds);
    while (stillBusy() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(BusyPollInterval);
}

void HelperTask::interrupt()
{
    if (m_task) {
        m_task->interrupt();
        m_ending = std::move(m_task);
    }
    invalidate();
}

void HelperTask::terminate()
{
    if (m_task) {
        m_task->terminate();
        m_ending = std::move(m_task);
    }
    invalidate();
}

void HelperTask::setLaunch(const HelperLaunch& launch)
{
    m_isAttached = launch.attached;
    m_log = launch.log;
    m_arguments = { format(u"--name=%@", m_proxyName) };
    if (launch.profile == HelperProfile::Reader)
        m_arguments.push_back(u"--profile=reader"_s);
    if (launch.memory)
        m_arguments.push_back(format(u"--memory=%d", launch.memory));
    if (launch.attached)
        m_arguments.push_back(format(u"--attached=%d", getpid()));
}

void HelperTask::killWithChildren()
{
    if (m_task)
        m_task->killSession();
    invalidate();
}

void HelperTask::invalidate()
{
    removeConnectionRegisteredWithName(m_proxyName);
    m_task.reset();
}

} // namespace caddis
