// The real helper, which scripts make hang and die.

#include "client/HelperPool.h"

#include "client/OstraImExport.h"
#include "platform/ipc/RuntimeDirectory.h"
#include "support/LogCapture.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <thread>

namespace caddis {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

HelperQuestion script(const String& command)
{
    return { u"script"_s, [command](const HelperProxy& helper) -> std::optional<Value> {
                helper.executeSource(
                    format(u"on go()\ndo shell script \"%@\"\nend go\n", command), u"go"_s, std::nullopt);
                return true;
            } };
}

HelperQuestion ping()
{
    return { u"ping"_s, [](const HelperProxy& helper) -> std::optional<Value> {
                helper.ping();
                return true;
            } };
}

bool isRunning(const std::filesystem::path& file)
{
    int process = 0;
    std::ifstream(file) >> process;
    return process != 0 && kill(process, 0) == 0;
}

class HelperPoolTest : public testing::Test {
protected:
    HelperPool::Settings settings(unsigned helpers = 1) const
    {
        HelperPool::Settings settings;
        settings.helper = String::fromLatin1(CADDIS_HELPER_PROGRAM);
        settings.helpers = helpers;
        settings.timeout = 5;
        settings.profile = HelperProfile::Base;
        settings.log = "/dev/null";
        return settings;
    }

    // One record per job, in the order of the jobs.
    static std::vector<HelperRecord> run(HelperPool& pool, std::vector<HelperJob> jobs)
    {
        std::mutex lock;
        std::map<std::uint64_t, HelperRecord> records;
        std::uint64_t next = 0;
        const auto source = [&]() -> std::optional<HelperJob> {
            if (next == jobs.size())
                return std::nullopt;
            jobs[next].tag = next;
            return jobs[next++];
        };
        pool.run(source, [&](const HelperJob& job, const HelperRecord& record) {
            const std::scoped_lock guard(lock);
            EXPECT_TRUE(records.emplace(job.tag, record).second) << "two records for one job";
        });
        std::vector<HelperRecord> result;
        result.reserve(records.size());
        for (auto& [tag, record] : records)
            result.push_back(std::move(record));
        EXPECT_EQ(result.size(), jobs.size());
        return result;
    }

    HelperJob job(HelperQuestion question) const { return { file, { std::move(question) } }; }

    PrivateRuntimeDirectory directory;
    TemporaryFolder folder;
    String file = folder.write("a.txt", "text");
    LogCapture logged;
};

TEST_F(HelperPoolTest, EachJobHasOneRecordWhateverHappensToItsHelper)
{
    HelperPool pool(settings(2));
    std::vector<HelperJob> jobs;
    jobs.reserve(41);
    for (int count = 0; count < 40; ++count)
        jobs.push_back(job(count % 10 == 3 ? script(u"kill -ABRT $PPID"_s) : ping()));
    jobs.push_back({ folder.path("nowhere"), { ping() } });
    const auto records = run(pool, jobs);
    ASSERT_EQ(records.size(), 41U);
    EXPECT_EQ(records[0].outcome, HelperOutcome::Ok);
    EXPECT_EQ(records[0].answers.find(u"ping")->as<bool>() != nullptr, true);
    EXPECT_EQ(records[40].outcome, HelperOutcome::Refused);
    EXPECT_EQ(records[40].attempts, 0U);
    EXPECT_EQ(records[3].outcome, HelperOutcome::Crashed);
    EXPECT_EQ(records[3].signal, SIGABRT);
    EXPECT_EQ(records[3].reason, u"the helper ended with signal 6 (SIGABRT)"_s);
}

TEST_F(HelperPoolTest, AFileThatDidHarmIsAskedTwiceAndThenRemembered)
{
    HelperPool pool(settings());
    const auto records
        = run(pool, { job(script(u"kill -ABRT $PPID"_s)), job(script(u"true"_s)), job(ping()) });
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].attempts, 2U);
    EXPECT_EQ(records[1].outcome, HelperOutcome::Crashed) << "the same question about the same file";
    EXPECT_EQ(records[1].attempts, 0U);
    EXPECT_EQ(records[2].outcome, HelperOutcome::Ok) << "another question";
    folder.write("a.txt", "longer text");
    EXPECT_EQ(run(pool, { job(script(u"true"_s)) }).at(0).outcome, HelperOutcome::Ok);
}

TEST_F(HelperPoolTest, AHelperThatHangsIsKilledWithItsChildren)
{
    auto impatient = settings();
    impatient.timeout = 0.5;
    HelperPool pool(impatient);
    const auto child = folder.path() / "child";
    const String command = format(u"sleep 60 & echo $! > %@; wait", String::fromUtf8(child.string()));
    const auto start = Clock::now();
    const auto records = run(pool, { job(script(command)), job(ping()) });
    EXPECT_LT(Clock::now() - start, milliseconds(3000));
    EXPECT_EQ(records.at(0).outcome, HelperOutcome::TimedOut);
    EXPECT_EQ(records.at(0).attempts, 2U);
    EXPECT_EQ(records.at(1).outcome, HelperOutcome::Ok);
    for (int count = 0; count < 200 && isRunning(child); ++count)
        std::this_thread::sleep_for(milliseconds(10));
    EXPECT_TRUE(std::filesystem::exists(child) && !isRunning(child));
}

TEST_F(HelperPoolTest, WhatWasAnsweredBeforeAFailureIsKept)
{
    HelperPool pool(settings());
    HelperJob both { file, { ping(), script(u"kill -ABRT $PPID"_s) } };
    const auto records = run(pool, { both });
    EXPECT_EQ(records.at(0).outcome, HelperOutcome::Partial);
    EXPECT_EQ(records.at(0).signal, SIGABRT);
    EXPECT_TRUE(records.at(0).answers.find(u"ping"));
}

TEST_F(HelperPoolTest, AnAnswerThatALimitHasCutIsPartial)
{
    HelperPool pool(settings());
    const HelperQuestion info { u"info"_s,
        [this](const HelperProxy& helper) -> std::optional<Value> { return helper.metaDataForFile(file); } };
    EXPECT_EQ(run(pool, { job(info) }).at(0).outcome, HelperOutcome::Ok);
    folder.write("a.txt", std::string(17 << 20, 'a'));
    const auto records = run(pool, { job(info), job(ping()) });
    EXPECT_EQ(records.at(0).outcome, HelperOutcome::Partial);
    EXPECT_EQ(records.at(0).reason, u"left out: text beyond 16 MiB"_s);
    EXPECT_TRUE(records.at(0).answers.find(u"info"));
    EXPECT_EQ(records.at(1).outcome, HelperOutcome::Ok) << "that was the other answer";
}

TEST_F(HelperPoolTest, AStandbyIsUpBeforeItIsNeeded)
{
    HelperPool pool(settings());
    std::uint64_t launched = 0;
    const HelperQuestion die { u"die"_s, [&](const HelperProxy& helper) -> std::optional<Value> {
                                  for (int count = 0; count < 500 && pool.statistics().launched < 2; ++count)
                                      std::this_thread::sleep_for(milliseconds(10));
                                  launched = pool.statistics().launched;
                                  helper.terminate();
                                  return true;
                              } };
    const auto records = run(pool, { { file, { die, ping() } } });
    EXPECT_EQ(launched, 2U);
    EXPECT_EQ(records.at(0).outcome, HelperOutcome::Ok) << "nobody was asking when it ended";
}

TEST_F(HelperPoolTest, HelpersAreRenewedAndLeaveNothingBehind)
{
    {
        auto shortLived = settings();
        shortLived.renewAfter = 5;
        HelperPool pool(shortLived);
        run(pool, std::vector(20, job(ping())));
        EXPECT_GE(pool.statistics().renewed, 3U);
        EXPECT_GE(pool.statistics().launched, 4U);
    }
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST_F(HelperPoolTest, HelpersThatAreKilledWhileTheyStartAreNoFailure)
{
    auto killed = settings();
    // Each launch but every fourth ends before it can register.
    const auto count = folder.path() / "count";
    const auto script = folder.path() / "helper";
    std::ofstream(script) << "#!/bin/sh\necho >> " << count.string() << "\n[ $(($(wc -l < " << count.string()
                          << ") % 4)) = 0 ] || kill -KILL $$\nexec " CADDIS_HELPER_PROGRAM " \"$@\"\n";
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    killed.helper = String::fromUtf8(script.string());
    HelperPool pool(killed);
    const auto start = Clock::now();
    EXPECT_EQ(run(pool, { job(ping()) }).at(0).outcome, HelperOutcome::Ok);
    EXPECT_LT(Clock::now() - start, milliseconds(4000)) << "nobody waits for the dead";
}

TEST_F(HelperPoolTest, AFileIsNotToBlameForWhoeverKillsItsHelpers)
{
    auto patient = settings();
    patient.mostKills = 10;
    HelperPool pool(patient);
    const String count = String::fromUtf8((folder.path() / "count").string());
    const auto killTimes = [&](int times) {
        return job(
            script(format(u"echo >> %@; [ $(wc -l < %@) -gt %d ] || kill -KILL $PPID", count, count, times)));
    };
    const auto records = run(pool, { killTimes(8), killTimes(1000) });
    EXPECT_EQ(records.at(0).outcome, HelperOutcome::Ok);
    EXPECT_EQ(records.at(0).attempts, 9U);
    EXPECT_EQ(records.at(1).outcome, HelperOutcome::Crashed) << "but there is an end to it";
    EXPECT_EQ(records.at(1).signal, SIGKILL);
    EXPECT_EQ(records.at(1).attempts, 12U);
}

TEST_F(HelperPoolTest, WithoutAHelperEveryTakenJobIsRefused)
{
    auto missing = settings();
    missing.helper = u"/nowhere/helper"_s;
    HelperPool pool(missing);
    int taken = 0;
    std::vector<HelperRecord> records;
    EXPECT_FALSE(pool.run([&] { return ++taken, std::optional(job(ping())); },
        [&](const HelperJob&, const HelperRecord& record) { records.push_back(record); }));
    EXPECT_EQ(taken, 1);
    EXPECT_EQ(records.at(0).outcome, HelperOutcome::Refused);
    EXPECT_EQ(records.at(0).reason, u"no helper could be launched"_s);
}

TEST_F(HelperPoolTest, LimitsOfMemoryAndOfFilesAreTold)
{
    auto small = settings();
    small.largestFile = 3;
    HelperPool pool(small);
    EXPECT_EQ(run(pool, { job(ping()) }).at(0).outcome, HelperOutcome::TooBig);
#ifndef __SANITIZE_ADDRESS__ // Whose helpers have no limit of memory.
    small.largestFile = 0;
    small.memory = 64 << 20;
    HelperPool tight(small);
    const HelperQuestion big { u"big"_s, [](const HelperProxy& helper) -> std::optional<Value> {
                                  const Data data = Data::adopt(std::vector<std::uint8_t>(48 << 20, ' '));
                                  helper.RTFDWithHTML(data, {});
                                  const std::string source(40 << 20, ' ');
                                  helper.executeSource(String::fromUtf8(source), u"x"_s, std::nullopt);
                                  return true;
                              } };
    EXPECT_EQ(run(tight, { job(big) }).at(0).outcome, HelperOutcome::TooBig);
#endif
}

} // namespace
} // namespace caddis
