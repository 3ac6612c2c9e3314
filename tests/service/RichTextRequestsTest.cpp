#include "platform/files/FileSystem.h"
#include "service/CaddisHelper.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Run.h"
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

// The tool shows, converts and lists what the helper makes of a document.
TEST(RichTextRequests, AreReachedByTheTool)
{
    const PrivateRuntimeDirectory runtime;
    const TemporaryFolder folder;
    folder.write("a.rtfd/TXT.rtf",
        "{\\rtf1 see {\\b this} {{\\NeXTGraphic p.png \\width200 \\height200}\xAC}\\line end}");
    folder.write("a.rtfd/p.png", "PNG");
    const std::string source = folder.path("a.rtfd").utf8();
    EXPECT_EQ(run(CADDIS_TOOL " text " + source).output, "see this \nend\n");
    const Outcome json = run(CADDIS_TOOL " richtext --json " + source);
    EXPECT_NE(json.output.find("\"attachments\": [\"p.png\"]"), std::string::npos) << json.output;
    for (const auto* const kind : { "rtfd", "rtf", "txt" }) {
        const std::string target = folder.path("b.").utf8() + kind;
        std::string command = CADDIS_TOOL " richtext ";
        EXPECT_EQ(run(command.append(source).append(" -o ").append(target)).status, 0);
        EXPECT_NE(run(CADDIS_TOOL " richtext " + target).output.find("see this"), std::string::npos) << kind;
    }
    EXPECT_TRUE(FileSystem::isDirectory(folder.path("b.rtfd")));
    EXPECT_EQ(run(CADDIS_TOOL " richtext " + source + " -o /nowhere/b.rtfd").status, 2);
    EXPECT_EQ(run(CADDIS_TOOL " richtext /nowhere.rtf").status, 1);
}

} // namespace
} // namespace caddis
