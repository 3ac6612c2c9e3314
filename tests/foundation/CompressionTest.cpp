#include "foundation/Compression.h"

#include "platform/files/FileSystem.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"
#include "support/ZipBuilder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

class Compression : public testing::Test {
protected:
    // Whether the archive is unpacked to "out"; when it is not, nothing may be there or beside it.
    bool unpacks(const std::string& archive)
    {
        FileSystem::removeItem(m_folder.path("out"));
        const bool isUnpacked
            = decompressFileAtPath(m_folder.write("archive.zip", archive), m_folder.path("out"));
        EXPECT_EQ(FileSystem::exists(m_folder.path("out")), isUnpacked);
        EXPECT_EQ(FileSystem::contentsOfDirectory(m_folder.path(""))->size(), isUnpacked ? 2U : 1U);
        return isUnpacked;
    }
    std::string contents(const std::string& name) const
    {
        const auto data = FileSystem::contentsOfFile(m_folder.path("out/" + name));
        return data ? std::string(data->chars()) : "none";
    }

    TemporaryFolder m_folder;
};

TEST_F(Compression, UnpacksFilesAndFolders)
{
    EXPECT_TRUE(unpacks(ZipBuilder()
                            .add({ "stored", "abc", true })
                            .add("a/b/deflated", std::string(200'000, 'x'))
                            .add({ "empty/", "", true })
                            .add({ "behind", "text", false, {}, {}, {}, {}, 8 })
                            .add("\xC3\xBC", "u")
                            .bytes()));
    EXPECT_EQ(contents("stored"), "abc");
    EXPECT_EQ(contents("a/b/deflated"), std::string(200'000, 'x'));
    EXPECT_EQ(contents("behind"), "text");
    EXPECT_EQ(contents("\xC3\xBC"), "u");
    EXPECT_TRUE(FileSystem::isDirectory(m_folder.path("out/empty")));
}

TEST_F(Compression, NeverWritesOutsideItsFolder)
{
    const std::string nul("a\0b", 3);
    for (const std::string& name : { std::string("../x"), std::string("a/../../x"), std::string("/tmp/x"),
             std::string(".."), std::string("a\\..\\..\\x"), nul, std::string() })
        EXPECT_FALSE(unpacks(ZipBuilder().add("good", "x").add(name, "x").bytes())) << name;
    EXPECT_FALSE(unpacks(ZipBuilder().add({ "link", "/etc", true, {}, {}, {}, {}, 0, 0120777 }).bytes()));
    std::string deep;
    for (int level = 0; level < 100; ++level)
        deep += "d/";
    EXPECT_FALSE(unpacks(ZipBuilder().add(deep + "x", "x").bytes()));
}

TEST_F(Compression, KeepsTheFirstOfTwoMembersWithOneName)
{
    EXPECT_TRUE(unpacks(ZipBuilder().add("a", "first").add("a", "second").bytes()));
    EXPECT_EQ(contents("a"), "first");
    EXPECT_FALSE(unpacks(ZipBuilder().add("a", "file").add("a/b", "below a file").bytes()));
    EXPECT_FALSE(unpacks(ZipBuilder().add({ "a/", "", true }).add("a", "a folder").bytes()));
}

TEST_F(Compression, LeavesNothingOfADamagedArchive)
{
    ZipBuilder good;
    good.add("a", "text").add("b", "more text");
    std::string archive = good.bytes();
    for (std::size_t length = 0; length < archive.size(); length += 7)
        EXPECT_FALSE(unpacks(archive.substr(0, length))) << length;
    archive[33] = static_cast<char>(archive[33] ^ 0x55);
    EXPECT_FALSE(unpacks(archive)) << "the checksum is wrong";
    EXPECT_FALSE(unpacks(ZipBuilder().add({ "a", "secret", true, {}, {}, {}, {}, 1 }).bytes()))
        << "encrypted";
    EXPECT_FALSE(decompressFileAtPath(m_folder.write("archive.zip", good.bytes()), m_folder.path("")));
}

TEST_F(Compression, BoundsWhatAnArchiveYields)
{
    const std::string zeros(1 << 20, '\0');
    EXPECT_TRUE(unpacks(ZipBuilder().add("a", zeros).bytes()));
    EXPECT_FALSE(unpacks(ZipBuilder().add({ "a", "x", false, 3'000'000'000U }).bytes()));
    ZipBuilder overlapping;
    overlapping.add("a", zeros);
    for (int index = 0; index < 40; ++index) {
        ZipMember member { std::string(1, static_cast<char>('b' + index)), zeros, false, {}, {}, 0 };
        member.isDirectoryOnly = true;
        overlapping.add(member);
    }
    EXPECT_FALSE(unpacks(overlapping.bytes())) << "many members share one member's bytes";
}

TEST_F(Compression, FillsNoDisk)
{
    const String archive = m_folder.write("archive.zip",
        ZipBuilder().add("a", std::string(1000, 'a')).add("b", std::string(1001, 'b')).bytes());
    EXPECT_FALSE(decompressFileAtPath(archive, m_folder.path("out"), 2000));
    EXPECT_FALSE(FileSystem::exists(m_folder.path("out")));
    EXPECT_TRUE(decompressFileAtPath(archive, m_folder.path("out"), 2001));
}

} // namespace
} // namespace caddis
