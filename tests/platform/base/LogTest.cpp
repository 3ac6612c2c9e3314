#include "platform/base/Log.h"
#include "platform/base/Exception.h"

#include "support/LogCapture.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <new>

namespace caddis {
namespace {

TEST(Log, GoesToTheSinkWhileOneIsSet)
{
    LogCapture outer;
    {
        LogCapture inner;
        log(u"Couldn't launch %@.", u"/nowhere"_s);
        ASSERT_EQ(inner.lines().size(), 1U);
        EXPECT_EQ(inner.lines()[0], u"Couldn't launch /nowhere.");
    }
    EXPECT_TRUE(outer.lines().empty());
    log(u"after");
    EXPECT_EQ(outer.lines().size(), 1U);
}

TEST(Guarded, LogsAPlatformExceptionInFivePartsAndGivesTheEmptyResult)
{
    const LogCapture capture;
    const auto work = []() -> std::optional<int> { throw Exception(u"ParserError"_s, u"no root"_s); };
    EXPECT_EQ(guarded(u"initWithFile:", u"EPUBParser", work), std::nullopt);
    ASSERT_EQ(capture.lines().size(), 1U);
    const String line = capture.lines()[0];
    EXPECT_TRUE(line.view().starts_with(u"initWithFile: (EPUBParser): ParserError\nno root\n"))
        << line.utf8();
    EXPECT_NE(line.utf8().find("base_tests"), std::string::npos) << "the call stack names this program";
}

TEST(Guarded, PassesResultsAndOtherExceptions)
{
    EXPECT_EQ(guarded(u"a", u"B", [] { return 7; }), 7);
    EXPECT_THROW(guarded(u"a", u"B", []() -> int { throw std::bad_alloc(); }), std::bad_alloc);
}

} // namespace
} // namespace caddis
