#include "platform/preview/Thumbnailers.h"

#include "support/JPEGBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

using Words = std::vector<std::string>;
using std::chrono::milliseconds;

const std::string picture = jpegFile(60, 30, [](unsigned, unsigned) { return 0x808080U; });

class ThumbnailerPrograms : public testing::Test {
protected:
    ThumbnailerPrograms() { m_document = m_folder.write("document.jpg", picture); }

    void declare(const std::string& name, const std::string& type, const std::string& command)
    {
        m_folder.write("data/thumbnailers/" + name + ".thumbnailer",
            "[Thumbnailer Entry]\nExec=" + command + "\nMimeType=" + type + ";\n");
    }
    std::optional<Bitmap> thumbnail(const std::string& command, milliseconds deadline = milliseconds(5000))
    {
        declare("a", "application/x-a", command);
        return Thumbnailers(std::vector { m_folder.path("data") })
            .thumbnail(m_document, u"application/x-a"_s, 20, deadline);
    }

    TemporaryFolder m_folder;
    String m_document;
};

TEST_F(ThumbnailerPrograms, GetTheFileTheSizeAndAPlaceForTheResult)
{
    const auto copied = thumbnail("cp %i %o");
    ASSERT_TRUE(copied);
    EXPECT_EQ(copied->size(), (Size { 20, 10 })) << "a program may ignore the size";
    EXPECT_TRUE(thumbnail("sh -c \"test '%u' = file:///tmp/document.jpg && test %s = 20 && cp %i %o\""));
    EXPECT_FALSE(thumbnail("cp %i %o.other"));
    EXPECT_FALSE(thumbnail("false"));
    EXPECT_FALSE(thumbnail("no-such-program %i %o"));
    EXPECT_FALSE(thumbnail("sh -c \"echo no picture > %o\""));
}

TEST_F(ThumbnailerPrograms, SeeNothingButTheFileAndReachNobody)
{
    const std::string secret = m_folder.write("secret", "secret").utf8();
    const std::string ok = " && cp %i %o\"";
    EXPECT_FALSE(thumbnail("sh -c \"test -e " + secret + ok));
    EXPECT_FALSE(thumbnail("sh -c \"echo more >> %i" + ok)) << "the document is read only";
    EXPECT_FALSE(thumbnail("sh -c \"touch /usr/written" + ok));
    EXPECT_TRUE(thumbnail("sh -c \"test $(ls /sys/class/net 2>/dev/null | grep -vc lo) = 0" + ok));
    EXPECT_TRUE(thumbnail("sh -c \"test $(ls /proc | grep -c '^[0-9]') -lt 12" + ok)) << "no other process";
}

TEST_F(ThumbnailerPrograms, AreEndedWhenTheyTakeTooLong)
{
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(thumbnail("sleep 60", milliseconds(300)));
    EXPECT_FALSE(thumbnail("sh -c \"sleep 60 & sleep 60\"", milliseconds(300)));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST_F(ThumbnailerPrograms, OfTheFirstFolderCount)
{
    declare("a", "application/x-a", "first");
    m_folder.write(
        "other/thumbnailers/a.thumbnailer", "[Thumbnailer Entry]\nExec=second\nMimeType=application/x-b\n");
    m_folder.write("other/thumbnailers/b.thumbnailer",
        "[Thumbnailer Entry]\nExec=third\nMimeType=application/x-a;application/x-c\n");
    m_folder.write("other/thumbnailers/c.txt", "[Thumbnailer Entry]\nExec=no\nMimeType=application/x-d\n");
    const Thumbnailers thumbnailers(std::vector { m_folder.path("data"), m_folder.path("other") });
    EXPECT_EQ(*thumbnailers.commandForType(u"application/x-a"_s), "first");
    EXPECT_EQ(thumbnailers.commandForType(u"application/x-b"_s), nullptr)
        << "hidden by the first file of its name";
    EXPECT_EQ(*thumbnailers.commandForType(u"application/x-c"_s), "third");
    EXPECT_EQ(thumbnailers.commandForType(u"application/x-d"_s), nullptr);
}

TEST(ThumbnailerCommands, AreCutIntoWords)
{
    const ThumbnailerFiles files { "/in put", "file:///in%20put", "/out", "64" };
    EXPECT_EQ(wordsOfCommand("a  -s %s %i %o 100%% %u", files),
        (Words { "a", "-s", "64", "/in put", "/out", "100%", "file:///in%20put" }));
    EXPECT_EQ(wordsOfCommand(R"(a "b \"c\" %i" "")", files), (Words { "a", "b \"c\" /in put", "" }));
    EXPECT_EQ(wordsOfCommand("a %x %", files), (Words { "a", "", "%" }));
    EXPECT_EQ(wordsOfCommand("a \"b", files), Words());
    EXPECT_EQ(wordsOfCommand("", files), Words());
}

} // namespace
} // namespace caddis
