#include "Scripts.h"

#include <chrono>
#include <fstream>

namespace caddis::applescript {
namespace {

std::string withLineEnds(std::string text)
{
    for (std::size_t at = text.find(" | "); at != std::string::npos; at = text.find(" | "))
        text.replace(at, 3, "\n");
    return text;
}

TEST(Language, DoesWhatItsDocumentationSays)
{
    std::ifstream table(CADDIS_TEST_DATA "/applescript/language.txt");
    int cases = 0;
    for (std::string line; std::getline(table, line);) {
        const std::size_t arrow = line.rfind(" => ");
        if (line.empty() || line[0] == '#' || arrow == std::string::npos)
            continue;
        const std::size_t start = line.starts_with("? ") ? 2 : 0;
        EXPECT_EQ(outcomeOf(withLineEnds(line.substr(start, arrow - start))), line.substr(arrow + 4)) << line;
        ++cases;
    }
    EXPECT_GT(cases, 200);
}

TEST(Language, ReadsEveryLineEndAndContinuation)
{
    EXPECT_EQ(outcomeOf("set x to 1\rset y to 2\rx + y"), "3");
    EXPECT_EQ(outcomeOf("set x to 1\r\nx + 1"), "2");
    EXPECT_EQ(outcomeOf("1 + \xC2\xAC\n  2"), "3");
    EXPECT_EQ(outcomeOf("1 -- one\n# two\n(* a (* nested *) comment *)"), "1");
    EXPECT_EQ(outcomeOf("#!/usr/bin/osascript\n5"), "5");
}

TEST(Language, LimitsEndAScriptAndNoTryKeepsItAlive)
{
    ScriptLimits few;
    few.steps = 10'000;
    EXPECT_EQ(outcomeOf("repeat\ntry\nrepeat\nend repeat\nend try\nend repeat", few), "error -1712");
    ScriptLimits brief;
    brief.deadline = std::chrono::milliseconds(50);
    EXPECT_EQ(outcomeOf("repeat\nend repeat", brief), "error -1712");
    EXPECT_EQ(outcomeOf("do shell script \"sleep 5\"", brief), "error -1712");
    ScriptLimits small;
    small.memory = 4 << 20;
    EXPECT_EQ(outcomeOf(std::string(1 << 20, ' '), small), "error -108");
    EXPECT_EQ(outcomeOf("set x to {}\nrepeat\nset end of x to {a:1, b:2}\nend repeat", small), "error -108");
    EXPECT_EQ(outcomeOf("set x to \"abcdefgh\"\nrepeat\nset x to x & x\nend repeat", small), "error -108");
    EXPECT_EQ(outcomeOf("set x to {}\nrepeat\nset end of x to {1, 2}\nend repeat", small), "error -108");
}

TEST(Language, ApplicationsThatAreNotThereFailWhenTheyAreTold)
{
    const std::string told = "tell application \"Nonesuch\"\nfrobnicate the widget 5 wildly\nend tell";
    EXPECT_EQ(outcomeOf("if false then\n" + told + "\nend if\n7"), "7");
    EXPECT_EQ(outcomeOf(told), "error -1728");
    EXPECT_EQ(outcomeOf("try\n" + told + "\non error number n\nn\nend try"), "-1728");
}

TEST(Language, NestingDoesNotExhaustTheStack)
{
    EXPECT_EQ(outcomeOf(std::string(100'000, '(')), "error -2706");
    EXPECT_EQ(outcomeOf(std::string(100'000, '{')), "error -2706");
    std::string sum = "1";
    for (int terms = 0; terms < 100'000; ++terms)
        sum += "+1";
    EXPECT_EQ(outcomeOf(sum), "error -2706");
    // A list of a million nested lists is made, and dies again.
    EXPECT_EQ(outcomeOf("set x to {}\nrepeat 1000000 times\nset x to {x}\nend repeat\ncount x"), "1");
    EXPECT_EQ(
        outcomeOf("set x to {}\nset end of x to x\nset y to {}\nset end of y to y\nx = y"), "error -2706");
    EXPECT_EQ(outcomeOf("set x to {1}\nset end of x to x\nx as text"), "error -2706");
}

} // namespace
} // namespace caddis::applescript
