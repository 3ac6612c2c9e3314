#include "client/HelperTask.h"

#include "client/ConnectionCache.h"
#include "support/LogCapture.h"
#include "support/TestServer.h"
#include "support/Text.h"

#include <fstream>
#include <gtest/gtest.h>

namespace caddis {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

class HelperTaskTest : public testing::Test {
protected:
    // The test server under the name that a helper without arguments has to know by itself.
    String script(const char* command)
    {
        const auto path = directory.path() / "helper";
        std::ofstream(path) << "#!/bin/sh\n" << command << '\n';
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return String::fromUtf8(path.native());
    }
    static std::unique_ptr<HelperTask> newTask(const String& path)
    {
        return HelperTask::initWithPath(path, u"Test"_s, &TestProtocol, 2, QualityOfService::Default);
    }
    String helper() { return script("exec " CADDIS_TEST_SERVER " Test"); }

    PrivateRuntimeDirectory directory;
    LogCapture logged;
};

TEST_F(HelperTaskTest, LaunchesOnceAndFindsTheHelperAgain)
{
    const auto task = newTask(helper());
    EXPECT_FALSE(task->launchedProxy());
    const auto proxy = task->proxy();
    ASSERT_TRUE(proxy);
    EXPECT_EQ(proxy->call("Echo", { 5 }), Value(5));
    EXPECT_EQ(task->proxy()->connection(), proxy->connection());
    EXPECT_EQ(proxy->connection()->timeout(), 2);
    task->proxyUsingTimeout(7);
    EXPECT_EQ(proxy->connection()->timeout(), 7);
    task->terminate();
    EXPECT_EQ(connectionRegisteredWithName(u"Test"_s), nullptr);
    EXPECT_TRUE(logged.lines().empty());
}

TEST_F(HelperTaskTest, AHelperThatDiedIsReplaced)
{
    const auto task = newTask(helper());
    const auto first = task->proxy();
    ASSERT_TRUE(first);
    first->call("Exit");
    for (int count = 0; count < 500 && first->connection()->isValid(); ++count)
        std::this_thread::sleep_for(milliseconds(10));
    EXPECT_EQ(connectionRegisteredWithName(u"Test"_s), nullptr);
    const auto second = task->proxy();
    ASSERT_TRUE(second);
    EXPECT_NE(second->connection(), first->connection());
    EXPECT_EQ(second->call("Echo", { 6 }), Value(6));
}

TEST_F(HelperTaskTest, ANewHelperWaitsForTheNameOfTheOld)
{
    const auto task = newTask(helper());
    for (int count = 0; count < 10; ++count) {
        const auto proxy = task->launch();
        ASSERT_TRUE(proxy) << count;
        // Memory to give back keeps the old one from ending at once.
        proxy->call("Zeros", { 20 << 20 });
    }
}

TEST_F(HelperTaskTest, AMissingHelperIsGivenUpAfterTwoLaunches)
{
    const auto task = newTask(u"/nowhere/helper"_s);
    for (int count = 0; count < 3; ++count)
        EXPECT_FALSE(task->launch());
    EXPECT_EQ(logged.lines(),
        std::vector(
            { u"Couldn't launch /nowhere/helper."_s, u"Couldn't launch /nowhere/helper. Giving up."_s }));
    const TestServer other;
    ASSERT_TRUE(other.connect());
    EXPECT_TRUE(task->proxy());
}

TEST_F(HelperTaskTest, AHelperThatNeverRegistersCostsFiveSeconds)
{
    const auto task = newTask(script("exec sleep 60"));
    const auto start = steady_clock::now();
    EXPECT_FALSE(task->launch());
    EXPECT_GE(steady_clock::now() - start, milliseconds(5000));
    EXPECT_EQ(logged.lines(), std::vector({ u"Connection to helper failed."_s }));
    EXPECT_FALSE(waitForTimeInterval(0, u"Test"_s, 1, nullptr));
}

TEST_F(HelperTaskTest, WithoutPathOrNameThereIsNoTask)
{
    EXPECT_EQ(newTask(u""_s), nullptr);
    EXPECT_EQ(HelperTask::initWithPath(u"/x"_s, u""_s, nullptr, 1, QualityOfService::Default), nullptr);
    EXPECT_EQ(logged.lines(), std::vector({ u"Helper missing: Test"_s, u"Helper missing: "_s }));
}

TEST_F(HelperTaskTest, WaitsWhileTheHelperSaysItIsBusy)
{
    const auto task = newTask(helper());
    EXPECT_FALSE(task->stillBusy());
    EXPECT_FALSE(task->launchedProxy()) << "asking launches nothing";
    ASSERT_TRUE(task->launch());
    EXPECT_TRUE(task->stillBusy());
    task->waitUntilDone(0);
    EXPECT_TRUE(task->stillBusy());
    task->waitUntilDone(5);
    EXPECT_FALSE(task->stillBusy());
}

TEST_F(HelperTaskTest, EveryThreadHasItsOwnConnection)
{
    const TestServer server;
    const auto own = server.connect();
    setConnection(own, u"Test"_s);
    EXPECT_EQ(connectionRegisteredWithName(u"Test"_s), own);
    std::thread([&] {
        EXPECT_EQ(connectionRegisteredWithName(u"Test"_s), nullptr);
        EXPECT_NE(rootProxyForConnectionWithRegisteredName(u"Test"_s)->connection(), own);
    }).join();
    removeConnection(own);
    EXPECT_EQ(connectionRegisteredWithName(u"Test"_s), nullptr);
    EXPECT_EQ(connectionRegisteredWithName(u""_s), nullptr);
}

TEST(PortExceptions, AreToldFromOthers)
{
    const Exception late(String(PortExceptions::Timeout), {});
    const Exception gone(String(PortExceptions::Receive), {});
    const Exception other(String(UnknownMethodError), {});
    EXPECT_TRUE(isPortException(late) && isPortTimeoutException(late));
    EXPECT_TRUE(isPortException(gone) && !isPortTimeoutException(gone));
    EXPECT_FALSE(isPortException(other) || isPortTimeoutException(other));
}

} // namespace
} // namespace caddis
