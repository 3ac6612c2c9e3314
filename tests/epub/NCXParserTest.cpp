#include "epub/NCXParser.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

// The entries as one line: label=content, children in parentheses.
std::string lineOf(const Array& entries)
{
    std::string line;
    for (const Value& value : entries) {
        const auto& entry = *value.as<Dictionary>();
        line += (line.empty() ? "" : " ") + entry.stringForKey(u"label")->utf8() + "="
            + entry.stringForKey(u"content")->utf8();
        if (const Value* children = entry.find(u"children"))
            line += "(" + lineOf(*children->as<Array>()) + ")";
    }
    return line;
}

std::string parsed(const std::string& navMap)
{
    return lineOf(NCXParser(Data::copyOf("<ncx><navMap>" + navMap + "</navMap></ncx>")).children());
}

std::string point(const std::string& label, const std::string& inner = {})
{
    return "<navPoint><navLabel><text>" + label + "</text></navLabel><content src='" + label + ".html'/>"
        + inner + "</navPoint>";
}

TEST(NCXParser, BuildsTheTree)
{
    EXPECT_EQ(parsed(point("a", point("b") + point("c", point("d"))) + point("e")),
        "a=a.html(b=b.html c=c.html(d=d.html)) e=e.html");
    EXPECT_EQ(parsed(""), "");
    EXPECT_EQ(parsed("<navPoint><navLabel> <text>\n A  b </text> </navLabel><content "
                     "src='x%20y.html%23z#f'/></navPoint>"),
        "A  b=x y.html");
    EXPECT_EQ(
        parsed("<navPoint><content src='x'/><navLabel><text>late</text></navLabel></navPoint>"), "late=x");
}

TEST(NCXParser, LetsAnEntryWithoutLabelOrContentPopItsParent)
{
    const std::string empty = "<navPoint><content src='x'/></navPoint>";
    EXPECT_EQ(parsed(point("a", empty + point("b"))), "a=a.html b=b.html") << "b is no longer below a";
    EXPECT_EQ(parsed(empty + point("a")), "") << "the root itself was popped";
    EXPECT_EQ(parsed(point("a") + empty + empty + point("b", point("c"))), "a=a.html");
    EXPECT_EQ(parsed("<navPoint><navLabel><text>t</text></navLabel><content src='%zz'/></navPoint>"), "");
}

TEST(NCXParser, KeepsWhatABrokenDocumentGave)
{
    EXPECT_EQ(lineOf(NCXParser(Data::copyOf("<ncx>" + point("a", point("b")) + "<navPoint><nav")).children()),
        "a=a.html(b=b.html)");
    EXPECT_TRUE(NCXParser(Data()).children().empty());
    std::string deep;
    for (int level = 0; level < 100'000; ++level)
        deep += "<navPoint><navLabel><text>t</text></navLabel><content src='x'/>";
    EXPECT_EQ(NCXParser(Data::copyOf(deep)).children().size(), 1U);
}

std::size_t depthOf(const Array& entries)
{
    std::size_t depth = 0;
    for (const Value& value : entries) {
        const Value* children = value.as<Dictionary>()->find(u"children");
        depth = std::max(depth, children ? depthOf(*children->as<Array>()) : 0);
    }
    return entries.empty() ? 0 : depth + 1;
}

TEST(NCXParser, BoundsTheDepthOfEntriesThatNothingCloses)
{
    const std::string open = "<navLabel>a</navLabel><content src='a'/>" + point("b");
    EXPECT_EQ(parsed(open + open), "a=a(b=b.html a=a(b=b.html))");
    std::string deep;
    for (int level = 0; level < 100'000; ++level)
        deep += open;
    const NCXParser parser(Data::copyOf("<ncx>" + deep + "</ncx>"));
    EXPECT_EQ(depthOf(parser.children()), 256U);
}

} // namespace
} // namespace caddis
