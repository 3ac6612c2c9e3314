#include "client/ConnectionCache.h"
#include "support/LogCapture.h"
#include "support/RawSocket.h"
#include "support/TestServer.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

class HostileHelperTest : public testing::Test {
protected:
    // The name of the exception with which a call of a helper ends that does `deed`. Whatever it is, the
    // caller has its descriptors back, its memory, and half a second at the most lost.
    String errorAfter(const char16_t* deed)
    {
        Task helper(String::fromUtf8(CADDIS_HOSTILE_HELPER), { u"Test"_s, String(deed) });
        helper.launch();
        const std::size_t open = openDescriptors();
        const std::size_t resident = residentBytes();
        String error = callUntilError();
        EXPECT_LE(openDescriptors(), open);
        EXPECT_LT(residentBytes(), resident + (64 << 20));
        helper.terminate();
        helper.waitUntilExit();
        return error;
    }

    PrivateRuntimeDirectory directory;

private:
    static String callUntilError()
    {
        String error;
        const auto proxy = waitForTimeInterval(5, u"Test"_s, 0.5, &TestProtocol);
        if (!proxy)
            return u"no helper"_s;
        const auto start = steady_clock::now();
        try {
            proxy->call("Echo", { 1 });
        } catch (const Exception& exception) {
            error = exception.name();
        }
        EXPECT_LT(steady_clock::now() - start, milliseconds(1500));
        removeConnectionRegisteredWithName(u"Test"_s);
        return error;
    }
};

TEST_F(HostileHelperTest, OnlySealedMemoryIsBelieved)
{
    EXPECT_EQ(errorAfter(u"sealed"), u"");
    EXPECT_EQ(errorAfter(u"unsealed"), PortExceptions::Receive);
    EXPECT_EQ(errorAfter(u"pipe"), PortExceptions::Receive);
    EXPECT_EQ(errorAfter(u"file"), PortExceptions::Receive);
    EXPECT_EQ(errorAfter(u"missing-descriptor"), PortExceptions::Receive);
}

TEST_F(HostileHelperTest, AMalformedReplyEndsTheConnectionAndItsDescriptors)
{
    EXPECT_EQ(errorAfter(u"malformed"), PortExceptions::Receive);
    EXPECT_EQ(errorAfter(u"wrong-type"), PortExceptions::Receive);
    EXPECT_EQ(errorAfter(u"die"), PortExceptions::Receive);
}

TEST_F(HostileHelperTest, AReplyThatDoesNotComeEndsWithTheTimeOut)
{
    EXPECT_EQ(errorAfter(u"endless"), PortExceptions::Timeout);
    EXPECT_EQ(errorAfter(u"flood"), PortExceptions::Timeout);
    EXPECT_EQ(errorAfter(u"silence"), PortExceptions::Timeout);
}

} // namespace
} // namespace caddis
