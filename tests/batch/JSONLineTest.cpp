#include "batch/JSONLine.h"

#include <gtest/gtest.h>

namespace caddis::tool {
namespace {

TEST(JSONLine, GivesTheOutermostMembers)
{
    const JSONLine line(
        R"( {"file" : "/a b", "n":17,"id": {"file": "x", "t": "}]"}, "l": [1, [2], "]"], "e": ""} )");
    ASSERT_TRUE(line.isObject());
    EXPECT_EQ(line.text("file"), "/a b");
    EXPECT_EQ(line.raw("n"), "17");
    EXPECT_EQ(line.raw("id"), R"({"file": "x", "t": "}]"})");
    EXPECT_EQ(line.raw("l"), R"([1, [2], "]"])");
    EXPECT_EQ(line.text("e"), "");
    EXPECT_EQ(line.text("n"), std::nullopt);
    EXPECT_EQ(line.raw("t"), std::nullopt);
    EXPECT_TRUE(JSONLine("{}").isObject());
}

TEST(JSONLine, UnderstandsEscapes)
{
    EXPECT_EQ(JSONLine(R"({"a": "\"\\\/\n\t\u00e4"})").text("a"), "\"\\/\n\t\u00e4");
    EXPECT_EQ(JSONLine(R"({"a": "\ud83d\ude00!"})").text("a"), "\U0001F600!");
    EXPECT_EQ(JSONLine(R"({"a": "\ud83d"})").text("a"), "\uFFFD");
    EXPECT_EQ(JSONLine(R"({"a": "\u1"})").text("a"), "\u0001");
}

TEST(JSONLine, IsNoObjectWhenItIsCutOff)
{
    const std::string whole = R"({"a": "\"x", "b": [1, {"c": 2}], "d": true})";
    EXPECT_TRUE(JSONLine(whole).isObject());
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(JSONLine(std::string_view(whole).substr(0, length)).isObject()) << length;
    EXPECT_FALSE(JSONLine(whole + "x").isObject()) << "two lines in one";
    EXPECT_FALSE(JSONLine("[1]").isObject());
    EXPECT_FALSE(JSONLine(R"({"a" 1})").isObject());
}

} // namespace
} // namespace caddis::tool
