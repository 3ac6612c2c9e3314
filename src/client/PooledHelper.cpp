#include "client/PooledHelper.h"

#include "client/ConnectionCache.h"
#include "client/ProcessFigures.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>

namespace caddis {

namespace {

using Clock = std::chrono::steady_clock;

// A file is given up at its second failure.
constexpr unsigned MostFailures = 2;
// Standbys that are found dead in a row, before it is called a failure.
constexpr int MostDeadStandbys = 20;
constexpr double LongestEnding = 0.25;
constexpr unsigned QuestionsPerMemoryCheck = 16;

std::string_view nameOfSignal(int signal)
{
    const char* const name = sigabbrev_np(signal);
    return name ? name : "";
}

// What an answer says of a file: replies have no place for it but these.
bool tellsOfEncryption(const Dictionary& answers)
{
    return std::any_of(answers.begin(), answers.end(), [](const Dictionary::Entry& entry) {
        const auto* const reply = entry.value.as<Dictionary>();
        return reply
            && (reply->find(u"Locked")
                || reply->stringForKey(u"kMDItemSecurityMethod") == u"Password Encrypted"_s);
    });
}

String joined(const std::vector<String>& phrases)
{
    String text;
    for (const String& phrase : phrases)
        text = text.isEmpty() ? phrase : format(u"%@; %@", text, phrase);
    return text;
}

bool isEmpty(const Value& answer)
{
    const auto* const reply = answer.as<Dictionary>();
    return reply && reply->isEmpty();
}

} // namespace

PooledHelper::PooledHelper(
    const HelperPool::Settings& settings, HelperNursery& nursery, Counters& counters, FailureMemory& failures)
    : m_settings(settings)
    , m_nursery(nursery)
    , m_counters(counters)
    , m_failures(failures)
    , m_kernelKills(kernelKills())
{
}

PooledHelper::~PooledHelper() { discard(); }

HelperRecord PooledHelper::ask(const HelperJob& job)
{
    String whyNot;
    const auto state = stateOfFile(job.file, whyNot);
    if (!state)
        return { .outcome = HelperOutcome::Refused, .reason = whyNot };
    if (m_settings.largestFile && state->size > m_settings.largestFile)
        return { .outcome = HelperOutcome::TooBig,
            .reason = format(u"more than %d bytes long", m_settings.largestFile),
            .state = state };
    const auto start = Clock::now();
    HelperRecord record = askAll(job, *state);
    record.state = state;
    record.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    return record;
}

HelperRecord PooledHelper::askAll(const HelperJob& job, const FileState& state)
{
    HelperRecord record;
    std::optional<Answer> failed;
    String leftOut;
    for (const HelperQuestion& question : job.questions) {
        Answer answer = answerTo(question, job, state, record.attempts);
        if (leftOut.isEmpty())
            leftOut = answer.leftOut;
        if (answer.value && !isEmpty(*answer.value))
            record.answers.set(question.name, std::move(*answer.value));
        else if (answer.outcome != HelperOutcome::Ok && !failed)
            failed = std::move(answer);
    }
    if (failed) {
        record.outcome = record.answers.isEmpty() ? failed->outcome : HelperOutcome::Partial;
        record.reason = failed->reason;
        record.signal = failed->signal;
    } else if (tellsOfEncryption(record.answers)) {
        record.outcome = HelperOutcome::Encrypted;
        record.reason = u"a password is needed"_s;
    } else if (!leftOut.isEmpty()) {
        record.outcome = record.answers.isEmpty() ? HelperOutcome::TooBig : HelperOutcome::Partial;
        record.reason = format(u"left out: %@", leftOut);
    } else if (record.answers.isEmpty()) {
        record.outcome = HelperOutcome::Unsupported;
        record.reason = u"nothing is known of files of this kind, or of this one"_s;
    }
    return record;
}

PooledHelper::Answer PooledHelper::answerTo(
    const HelperQuestion& question, const HelperJob& job, const FileState& state, unsigned& attempts)
{
    if (const auto known = m_failures.find(job.file, state, question.name))
        return { .outcome = known->outcome,
            .reason = format(u"not asked again: %@", known->reason),
            .signal = known->signal };
    Answer answer = ask(question, attempts);
    if (isHarm(answer.outcome))
        m_failures.add(job.file, state, question.name,
            { .outcome = answer.outcome, .reason = answer.reason, .signal = answer.signal });
    return answer;
}

PooledHelper::Answer PooledHelper::ask(const HelperQuestion& question, unsigned& attempts)
{
    unsigned failures = 0;
    unsigned outsideKills = 0;
    for (;;) {
        Answer answer = askOnce(question);
        ++attempts;
        if (!answer.harmedHelper)
            return answer;
        discard();
        const bool counts = !answer.wasKilledFromOutside || ++outsideKills > m_settings.mostKills;
        if (counts && ++failures == MostFailures)
            return answer;
    }
}

PooledHelper::Answer PooledHelper::askOnce(const HelperQuestion& question)
{
    const auto helper = proxy();
    if (!helper)
        return { .outcome = HelperOutcome::Refused, .reason = u"no helper could be launched"_s };
    ++m_questions;
    Answer answer;
    try {
        helper->connection()->takeLeftOut();
        answer.value = question.ask(HelperProxy(*helper));
        answer.leftOut = joined(helper->connection()->takeLeftOut());
    } catch (const Exception& exception) {
        answer = failure(exception);
    } catch (const std::bad_alloc&) {
        answer = { .outcome = HelperOutcome::TooBig, .reason = u"the answer does not fit into memory"_s };
    }
    if (!answer.harmedHelper)
        renewWhenDue();
    return answer;
}

PooledHelper::Answer PooledHelper::failure(const Exception& exception)
{
    if (isPortTimeoutException(exception)) {
        ++m_counters.timedOut;
        return { .outcome = HelperOutcome::TimedOut,
            .reason = format(u"no answer within %d ms", std::int64_t(m_settings.timeout * 1000)),
            .harmedHelper = true };
    }
    if (isPortException(exception))
        return deathOfHelper();
    const bool tooBig = exception.name() == LimitsExceededError;
    return { .outcome = tooBig ? HelperOutcome::TooBig : HelperOutcome::Refused,
        .reason = exception.reason() };
}

PooledHelper::Answer PooledHelper::deathOfHelper()
{
    ++m_counters.crashed;
    Answer answer { .outcome = HelperOutcome::Crashed, .harmedHelper = true };
    const Task* const task = m_helper->launchedTask();
    const auto ending = task ? task->ending(LongestEnding) : std::nullopt;
    if (!ending)
        answer.reason = u"what the helper sent is no answer"_s;
    else if (ending->signal == 0)
        answer.reason = format(u"the helper ended with status %d", ending->status);
    else {
        answer.signal = ending->signal;
        answer.reason = format(
            u"the helper ended with signal %d (SIG%s)", ending->signal, nameOfSignal(ending->signal));
        const auto before = std::exchange(m_kernelKills, kernelKills());
        answer.wasKilledFromOutside
            = ending->signal == SIGTERM || (ending->signal == SIGKILL && m_kernelKills == before);
    }
    return answer;
}

std::optional<Proxy> PooledHelper::proxy()
{
    for (int count = 0; m_isAvailable && count < MostDeadStandbys; ++count) {
        if (!m_helper) {
            m_helper = m_nursery.take();
            m_questions = 0;
            m_isAvailable = m_helper != nullptr;
        }
        if (m_helper) {
            if (auto found = m_helper->launchedProxy())
                return found;
            discard(); // It died while it had nothing to do.
        }
    }
    return std::nullopt;
}

void PooledHelper::discard()
{
    if (!m_helper)
        return;
    noteMemory(mostResidentBytes(process()));
    removeConnectionRegisteredWithName(m_helper->registeredProxyName());
    m_nursery.bury(std::move(m_helper));
}

pid_t PooledHelper::process() const
{
    const Task* const task = m_helper->launchedTask();
    return task ? task->processIdentifier() : 0;
}

void PooledHelper::noteMemory(std::uint64_t bytes)
{
    std::uint64_t most = m_counters.mostMemory;
    while (bytes > most && !m_counters.mostMemory.compare_exchange_weak(most, bytes)) { }
}

void PooledHelper::renewWhenDue()
{
    bool isDue = m_questions >= m_settings.renewAfter;
    if (m_questions % QuestionsPerMemoryCheck == 1) {
        const std::uint64_t resident = residentBytes(process());
        noteMemory(resident);
        isDue = isDue || (m_settings.memory && resident > m_settings.memory / 2);
    }
    if (!isDue)
        return;
    ++m_counters.renewed;
    discard();
}

} // namespace caddis
