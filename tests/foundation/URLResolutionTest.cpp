#include "foundation/URLResolution.h"

#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::string resolved(const char* base, const char* reference)
{
    const auto url = URLRelativeTo(*URL::fromString(String::fromUtf8(base)), String::fromUtf8(reference));
    return url ? url->absoluteString().utf8() : "nil";
}

// The examples of RFC 3986, sections 5.4.1 and 5.4.2.
TEST(URLResolution, ResolvesTheStandardsExamples)
{
    const std::pair<const char*, const char*> examples[] = { { "g:h", "g:h" }, { "g", "http://a/b/c/g" },
        { "./g", "http://a/b/c/g" }, { "g/", "http://a/b/c/g/" }, { "/g", "http://a/g" },
        { "//g", "http://g" }, { "?y", "http://a/b/c/d;p?y" }, { "g?y", "http://a/b/c/g?y" },
        { "#s", "http://a/b/c/d;p?q#s" }, { "g#s", "http://a/b/c/g#s" }, { ";x", "http://a/b/c/;x" },
        { "", "http://a/b/c/d;p?q" }, { ".", "http://a/b/c/" }, { "./", "http://a/b/c/" },
        { "..", "http://a/b/" }, { "../", "http://a/b/" }, { "../g", "http://a/b/g" },
        { "../..", "http://a/" }, { "../../g", "http://a/g" }, { "../../../g", "http://a/g" },
        { "/./g", "http://a/g" }, { "/../g", "http://a/g" }, { "g.", "http://a/b/c/g." },
        { "..g", "http://a/b/c/..g" }, { "./../g", "http://a/b/g" }, { "./g/.", "http://a/b/c/g/" },
        { "g/./h", "http://a/b/c/g/h" }, { "g/../h", "http://a/b/c/h" },
        { "g?y/../x", "http://a/b/c/g?y/../x" }, { "g#s/../x", "http://a/b/c/g#s/../x" } };
    for (const auto& [reference, expected] : examples)
        EXPECT_EQ(resolved("http://a/b/c/d;p?q", reference), expected) << reference;
}

TEST(URLResolution, TakesReferencesAsPeopleWriteThem)
{
    EXPECT_EQ(resolved("file:///books/OPS/nav.xhtml", "ch 1/\xC3\xBC.xhtml"),
        "file:///books/OPS/ch%201/%C3%BC.xhtml");
    EXPECT_EQ(resolved("file:///books/OPS/nav.xhtml", "ch%201.xhtml"), "file:///books/OPS/ch%201.xhtml");
    EXPECT_EQ(resolved("http://example.org", "x\ny"), "http://example.org/x%0Ay");
    EXPECT_EQ(resolved("http://example.org/a", "mailto:me@example.org"), "mailto:me@example.org");
    EXPECT_EQ(resolved("http://example.org/a", "../../../../b"), "http://example.org/b");
}

} // namespace
} // namespace caddis
