#include "service/CaddisHelper.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(RichTextRequests, AFileGivesRTFDThatIsWrittenAsAPackage)
{
    const TemporaryFolder folder;
    CaddisHelper helper;
    const String file = folder.write("a.rtf", "{\\rtf1{\\info{\\title T}}\\b bold}");
    const auto reply = helper.attributedStringWithContentsOfFile(Value(file));
    ASSERT_TRUE(reply);
    const auto* attributes = reply->find(u"DocumentAttributes")->as<Dictionary>();
    EXPECT_EQ(attributes->stringForKey(u"NSTitleDocumentAttribute"), u"T"_s);
    const Value rtfd = *reply->find(u"Rtfd");
    ASSERT_TRUE(helper.writeRTFDDataToFile(rtfd, Value(folder.path("b.rtfd"))));
    const auto again = helper.attributedStringWithContentsOfFile(Value(folder.path("b.rtfd")));
    ASSERT_TRUE(again);
    EXPECT_EQ(
        again->find(u"DocumentAttributes")->as<Dictionary>()->stringForKey(u"DocumentType"), u"NSRTFD"_s);
}

TEST(RichTextRequests, FailureIsNilOrNo)
{
    const TemporaryFolder folder;
    CaddisHelper helper;
    const Value path(folder.path("missing/b.rtfd"));
    EXPECT_EQ(helper.attributedStringWithContentsOfFile(path), std::nullopt);
    EXPECT_EQ(helper.attributedStringWithContentsOfFile(std::nullopt), std::nullopt);
    EXPECT_FALSE(helper.writeRTFDDataToFile(Value(Data::copyOf("{\\rtf1 a}")), path));
    EXPECT_FALSE(helper.writeRTFDDataToFile(Value(Data::copyOf("no text")), Value(folder.path("b.rtfd"))));
    EXPECT_FALSE(helper.writeRTFDDataToFile(std::nullopt, Value(folder.path("b.rtfd"))));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

} // namespace
} // namespace caddis
