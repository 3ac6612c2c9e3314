#include "platform/ipc/Connection.h"

#include "support/RawSocket.h"
#include "support/TestServer.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

class ConnectionTest : public testing::Test {
protected:
    std::optional<Value> call(const char* member, const Arguments& arguments = {})
    {
        return Proxy(connection, &TestProtocol).call(member, arguments);
    }
    // The name of the exception that the call throws; empty when it throws none.
    String errorOf(const char* member, const Arguments& arguments = {})
    {
        try {
            call(member, arguments);
            return {};
        } catch (const Exception& exception) {
            return exception.name();
        }
    }

    PrivateRuntimeDirectory directory;
    TestServer server;
    std::shared_ptr<Connection> connection = server.connect();
};

TEST_F(ConnectionTest, NilResultsAndErrorsAreDifferentThings)
{
    EXPECT_EQ(call("Echo", { std::nullopt }), std::nullopt);
    EXPECT_EQ(call("Echo", { u"text"_s }), Value(u"text"_s));
    EXPECT_EQ(call("Options", { std::nullopt, 1, true }), std::nullopt);
    EXPECT_EQ(call("Options", { u"x"_s, -1, true }),
        Value(Dictionary { { u"value"_s, u"x"_s }, { u"count"_s, -1 }, { u"flag"_s, true } }));
    EXPECT_EQ(errorOf("Throw"), u"org.freedesktop.DBus.Error.Failed");
    EXPECT_EQ(errorOf("Deny"), AccessDeniedError);
    EXPECT_EQ(errorOf("NoSuchMember"), UnknownMethodError);
}

TEST_F(ConnectionTest, WhatLimitsHaveLeftOutComesBesideTheResult)
{
    EXPECT_EQ(call("LeaveOut", { 2 }), Value(true));
    EXPECT_EQ(connection->takeLeftOut(), (std::vector { u"thing 0"_s, u"thing 1"_s }));
    EXPECT_TRUE(connection->takeLeftOut().empty()) << "taken is taken";
    call("Echo", { 1 });
    EXPECT_TRUE(connection->takeLeftOut().empty()) << "each answer has its own";
    call("LeaveOut", { 1000 });
    EXPECT_EQ(connection->takeLeftOut().size(), 8U);
}

TEST_F(ConnectionTest, WhatTheServerDoesNotServeIsNamed)
{
    const auto errorOfCall = [&](const char* path, const char* interface, const RemoteMember& member) {
        try {
            connection->call(path, interface, member, {});
            return String();
        } catch (const Exception& exception) {
            return exception.name();
        }
    };
    EXPECT_EQ(errorOfCall("/Test", "org.caddis.Test", { "Missing", "", "" }), UnknownMethodError);
    EXPECT_EQ(errorOfCall("/Test", "org.caddis.Other", { "Throw", "", "" }),
        u"org.freedesktop.DBus.Error.UnknownInterface");
    EXPECT_EQ(errorOfCall("/Other", "org.caddis.Test", { "Throw", "", "" }),
        u"org.freedesktop.DBus.Error.UnknownObject");
    EXPECT_EQ(errorOfCall("/Test", "org.caddis.Test", { "Echo", "", "av" }), InvalidArgsError);
    EXPECT_EQ(errorOfCall("/Test", nullptr, { "StillBusy", "", "b" }), u"");
}

TEST_F(ConnectionTest, DataOfEverySizeArrives)
{
    const std::size_t open = openDescriptors();
    for (const std::size_t size : { 0U, 1U, 128U << 10, (128U << 10) + 1, 70U << 20 }) {
        std::vector<std::uint8_t> bytes(size, 0x5A);
        const Value data = Data::adopt(std::move(bytes));
        EXPECT_EQ(call("Echo", { data }), data) << size;
    }
    const Value text = String(std::u16string(200'000, u'\u00E9'));
    const Value odd = String(std::u16string(200'000, u'\xDC00'));
    EXPECT_EQ(call("Echo", { text }), text);
    EXPECT_EQ(call("Echo", { odd }), odd);
    EXPECT_EQ(openDescriptors(), open);
}

TEST_F(ConnectionTest, MoreLargeValuesThanDescriptorsGoInline)
{
    const Value part = Data::adopt(std::vector<std::uint8_t>(200 << 10, 1));
    const Value many = Array(40, part);
    EXPECT_EQ(call("Echo", { many }), many);
    const Value tooMuch = Array(17 + 64 * 6, part);
    EXPECT_EQ(errorOf("Echo", { tooMuch }), LimitsExceededError);
    EXPECT_EQ(call("Echo", { 1 }), Value(1));
}

TEST_F(ConnectionTest, ATimedOutCallLeavesTheConnectionInOrder)
{
    connection->setTimeout(0.1);
    const auto start = steady_clock::now();
    EXPECT_EQ(errorOf("Sleep", { 400 }), PortExceptions::Timeout);
    EXPECT_LT(steady_clock::now() - start, milliseconds(350));
    EXPECT_TRUE(connection->isValid());
    connection->setTimeout(5);
    EXPECT_EQ(call("Echo", { 7 }), Value(7));
    EXPECT_GE(steady_clock::now() - start, milliseconds(390));
}

TEST_F(ConnectionTest, LateRepliesLeaveNothingBehind)
{
    const std::size_t open = openDescriptors();
    for (int count = 0; count < 20; ++count) {
        connection->setTimeout(0.001);
        errorOf("Sleep", { 5 });
        errorOf("Zeros", { 1 << 20 });
    }
    connection->setTimeout(5);
    EXPECT_EQ(call("Echo", { 1 }), Value(1));
    EXPECT_LE(openDescriptors(), open + 1);
}

TEST_F(ConnectionTest, AStoppedServerCannotHoldACallPastItsTimeOut)
{
    connection->setTimeout(0.2);
    server.signal(SIGSTOP);
    const auto start = steady_clock::now();
    EXPECT_EQ(errorOf("Echo", { Array(40, Data::adopt(std::vector<std::uint8_t>(1 << 20))) }),
        PortExceptions::Timeout);
    EXPECT_LT(steady_clock::now() - start, milliseconds(1500));
    server.signal(SIGCONT);
    connection->setTimeout(10);
    EXPECT_EQ(call("Echo", { 1 }), Value(1));
}

TEST_F(ConnectionTest, ADeathInMidRequestIsAnErrorAtOnce)
{
    std::thread killer([&] {
        std::this_thread::sleep_for(milliseconds(100));
        server.signal(SIGKILL);
    });
    const auto start = steady_clock::now();
    EXPECT_EQ(errorOf("Sleep", { 5000 }), PortExceptions::Receive);
    EXPECT_LT(steady_clock::now() - start, milliseconds(1000));
    killer.join();
    EXPECT_FALSE(connection->isValid());
    EXPECT_EQ(errorOf("Echo", { 1 }), PortExceptions::InvalidSendPort);
    EXPECT_EQ(Connection::lookup(u"Test"_s, 1), nullptr);
}

TEST_F(ConnectionTest, OneWayCallsDoNotWait)
{
    EXPECT_EQ(call("Exit"), std::nullopt);
    EXPECT_EQ(server.task().waitUntilExit(), 0);
    EXPECT_FALSE(connection->isValid());
}

TEST_F(ConnectionTest, ABusyServerAnswersEverybodyInTurn)
{
    const auto other = server.connect();
    std::thread sleeper([&] { call("Sleep", { 300 }); });
    std::this_thread::sleep_for(milliseconds(100));
    EXPECT_EQ(Proxy(other, &TestProtocol).call("Echo", { 1 }), Value(1));
    sleeper.join();
    EXPECT_EQ(Connection::lookup(u"Nobody"_s, 1), nullptr);
    EXPECT_EQ(Connection::lookup(u"../Test"_s, 1), nullptr);
}

} // namespace
} // namespace caddis
