#include "service/WebRequests.h"

#include "service/CaddisHelper.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/WebArchiveBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(WebRequests, AWebArchiveGivesItsTextItsMarkupAndItsAddress)
{
    const TemporaryFolder folder;
    const String file = folder.write("page.webarchive", WebArchiveBuilder("http://a/b", "<p>text").text());
    CaddisHelper helper;
    EXPECT_EQ(helper.searchableTextOfWebArchive(Value(URL::fileURLWithPath(file))),
        (Dictionary {
            { u"String"_s, u"\n\ntext"_s }, { u"Source"_s, u"<p>text"_s }, { u"URL"_s, u"http://a/b"_s } }));
}

TEST(WebRequests, AnArchiveOfSomethingElseHasNoMarkup)
{
    const TemporaryFolder folder;
    const auto builder = WebArchiveBuilder("http://a/b.png", "PNG", "image/png");
    EXPECT_EQ(searchableTextOfWebArchive(folder.write("picture.webarchive", builder.text())),
        (Dictionary { { u"String"_s, u""_s }, { u"URL"_s, u"http://a/b.png"_s } }));
}

TEST(WebRequests, NoArchiveIsAnEmptyReply)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(searchableTextOfWebArchive(std::nullopt).isEmpty());
    EXPECT_TRUE(searchableTextOfWebArchive(folder.write("empty.webarchive", "")).isEmpty());
    EXPECT_TRUE(CaddisHelper().searchableTextOfWebArchive(Value(1)).isEmpty());
}

} // namespace
} // namespace caddis
