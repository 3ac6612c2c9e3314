#include "epub/ZipArchive.h"

#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class ZipArchiveTest : public testing::Test {
protected:
    std::unique_ptr<ZipArchive> open(const std::string& bytes)
    {
        return ZipArchive::initWithZipFile(m_folder.write("a.zip", bytes));
    }
    std::unique_ptr<ZipArchive> openWith(const ZipMember& member)
    {
        return open(ZipBuilder().add(member).bytes());
    }
    // The member's bytes, or what was logged.
    std::string read(ZipArchive& archive, const String& name)
    {
        const std::size_t logged = m_log.lines().size();
        if (const auto data = archive.dataForNamedFile(name))
            return std::string(data->chars());
        return m_log.lines().size() == logged + 1 ? m_log.lines().back().utf8() : "not one log line";
    }

    TemporaryFolder m_folder;
    LogCapture m_log;
};

TEST_F(ZipArchiveTest, ReadsMembersOfEveryForm)
{
    const std::string text(100'000, 't');
    const auto archive = open(ZipBuilder()
                                  .add({ "stored", text, true })
                                  .add("deflated", text)
                                  .add({ "empty", "", true })
                                  .add({ "behind", text, false, {}, {}, {}, {}, 8 })
                                  .bytes());
    ASSERT_TRUE(archive);
    EXPECT_EQ(read(*archive, u"stored"_s), text);
    EXPECT_EQ(read(*archive, u"deflated"_s), text);
    EXPECT_EQ(read(*archive, u"behind"_s), text);
    EXPECT_EQ(archive->dataForNamedFile(u"empty"_s), Data()) << "empty, not nil";
    EXPECT_EQ(read(*archive, u"deflated"_s), text) << "again, and not in order";
}

TEST_F(ZipArchiveTest, ReadsZip64AndWhatFollowsOtherBytes)
{
    const auto build = [](bool isZip64) {
        ZipMember member { "a", "text" };
        member.isZip64 = isZip64;
        ZipMember second { "b", "more", true };
        second.isZip64 = isZip64;
        return ZipBuilder().add(member).add(second).bytes();
    };
    for (const bool isZip64 : { false, true }) {
        const auto archive = open(build(isZip64));
        ASSERT_TRUE(archive);
        EXPECT_EQ(read(*archive, u"a"_s), "text");
        EXPECT_EQ(read(*archive, u"b"_s), "more");
    }
    const auto behind = open("#!/bin/sh\n" + build(false));
    ASSERT_TRUE(behind);
    EXPECT_EQ(read(*behind, u"b"_s), "more");
}

TEST_F(ZipArchiveTest, ReadsTheLastPartThatHoldsEverything)
{
    std::string bytes = ZipBuilder().add("a", "text").bytes();
    const std::size_t endRecord = bytes.rfind("PK\5\6");
    bytes[endRecord + 4] = 1;
    EXPECT_EQ(read(*open(bytes), u"a"_s), "text");
    bytes[endRecord + 6] = 1;
    EXPECT_EQ(read(*open(bytes), u"a"_s), "text");
}

TEST_F(ZipArchiveTest, ComparesAsciiLettersWithoutCase)
{
    const auto archive = openWith({ "META-INF/\xC3\x9C.xml", "x" });
    EXPECT_TRUE(archive->testForNamedFile(u"meta-inf/\u00DC.XML"_s));
    EXPECT_FALSE(archive->testForNamedFile(u"META-INF/\u00FC.xml"_s));
    EXPECT_FALSE(archive->testForNamedFile(u"META-INF/"_s));
    EXPECT_FALSE(archive->testForNamedFile(u""_s));
    EXPECT_FALSE(archive->testForNamedFile(String(std::u16string(100'000, u'x'))));
}

TEST_F(ZipArchiveTest, LogsWhyThereIsNoData)
{
    const auto archive = openWith({ "a", "text" });
    EXPECT_EQ(read(*archive, u"b"_s), "Unable to locate b in " + m_folder.path("a.zip").utf8());
    const auto method = openWith({ "a", "text", true, {}, {}, {}, 99 });
    EXPECT_EQ(read(*method, u"a"_s), "Unable to open file a for extration from archive");
    const auto offset = openWith({ "a", "text", true, {}, {}, 3'000'000'000U });
    EXPECT_EQ(read(*offset, u"a"_s), "Unable to open file a for extration from archive");
}

TEST_F(ZipArchiveTest, RefusesSizesThatTheBytesCantYield)
{
    const std::string failed = "Failed to read a from archive";
    const std::uint32_t huge = 3'000'000'000U;
    EXPECT_EQ(read(*openWith({ "a", "text", false, huge }), u"a"_s), failed);
    EXPECT_EQ(read(*openWith({ "a", "text", true, huge, huge }), u"a"_s), failed);
    EXPECT_EQ(read(*openWith({ "a", "text", false, 0x7FFF'FFFFU, huge }), u"a"_s), failed);
    EXPECT_EQ(read(*openWith({ "a", "text", false, 5 }), u"a"_s), failed) << "one byte more than there is";
    EXPECT_EQ(read(*openWith({ "a", "text", true, 5 }), u"a"_s), failed);
    EXPECT_EQ(read(*openWith({ "a", "text", true, {}, {}, {}, 12 }), u"a"_s), failed) << "bzip2";
    EXPECT_EQ(read(*openWith({ "a", "text", false, 3 }), u"a"_s), "tex") << "what is asked for is there";
}

TEST_F(ZipArchiveTest, GoesOnAfterAMemberThatFailed)
{
    const auto archive = open(ZipBuilder().add({ "a", "text", true, 5 }).add("b", "good").bytes());
    EXPECT_EQ(read(*archive, u"a"_s), "Failed to read a from archive");
    EXPECT_EQ(read(*archive, u"b"_s), "good");
}

TEST_F(ZipArchiveTest, SurvivesEveryTruncationAndDamagedByte)
{
    const std::string bytes = ZipBuilder().add("a", "text").add({ "b", "more", true }).bytes();
    EXPECT_FALSE(ZipArchive::initWithZipFile(m_folder.path("none")));
    EXPECT_FALSE(ZipArchive::initWithZipFile(m_folder.path("")));
    const std::size_t endRecord = bytes.rfind("PK\5\6");
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const auto archive = open(bytes.substr(0, length));
        EXPECT_TRUE(!archive || length > endRecord) << "minizip takes an end record that is cut short";
        if (archive)
            archive->dataForNamedFile(u"b"_s);
    }
    for (std::size_t position = 0; position < bytes.size(); ++position) {
        for (const char damage : { '\0', '\xFF', '\x80' }) {
            std::string damaged = bytes;
            damaged[position] = damage;
            if (const auto archive = open(damaged)) {
                for (const auto* name : { u"a", u"b" })
                    archive->dataForNamedFile(String(name));
            }
        }
    }
}

TEST_F(ZipArchiveTest, ClosesAndOpensAnother)
{
    const auto archive = openWith({ "a", "text" });
    const String other = m_folder.write("other.zip", ZipBuilder().add("b", "other").bytes());
    EXPECT_FALSE(archive->openZipFile(other)) << "one is open";
    EXPECT_EQ(read(*archive, u"a"_s), "text");
    EXPECT_TRUE(archive->closeZipFile());
    EXPECT_FALSE(archive->closeZipFile());
    EXPECT_FALSE(archive->testForNamedFile(u"a"_s));
    EXPECT_FALSE(archive->openZipFile(m_folder.path("none")));
    EXPECT_TRUE(archive->openZipFile(other));
    EXPECT_EQ(read(*archive, u"b"_s), "other");
}

TEST(MappedZip, ClampsReadsAndKeepsTheSignOfTheEnd)
{
    const TemporaryFolder folder;
    std::int64_t position = 7;
    const zlib_filefunc64_def table = mmapFunctions(position);
    EXPECT_EQ(table.zwrite_file, nullptr);
    voidpf stream = table.zopen64_file(&position, folder.write("f", "0123456789").utf8().c_str(), 0);
    ASSERT_TRUE(stream);
    EXPECT_EQ(position, 0);
    char buffer[16] = {};
    EXPECT_EQ(table.zseek64_file(&position, stream, 3, ZLIB_FILEFUNC_SEEK_END), 0);
    EXPECT_EQ(table.ztell64_file(&position, stream), 7U);
    EXPECT_EQ(table.zread_file(&position, stream, buffer, 16), 3U);
    EXPECT_STREQ(buffer, "789");
    EXPECT_EQ(table.zerror_file(&position, stream), 0);
    EXPECT_EQ(table.zseek64_file(&position, stream, 1, ZLIB_FILEFUNC_SEEK_CUR), 0);
    EXPECT_EQ(table.zerror_file(&position, stream), -1);
    EXPECT_EQ(table.zseek64_file(&position, stream, ~0ULL, ZLIB_FILEFUNC_SEEK_SET), 0);
    EXPECT_EQ(table.zread_file(&position, stream, buffer, 1), 0U);
    EXPECT_EQ(table.zerror_file(&position, stream), -1);
    EXPECT_EQ(table.zseek64_file(&position, stream, 0, 3), -1);
    EXPECT_EQ(position, -1);
    EXPECT_EQ(table.zclose_file(&position, stream), 0);
    EXPECT_EQ(position, 0);
}

} // namespace
} // namespace caddis
