#include "platform/files/MappedFile.h"

#include "platform/files/FileSystem.h"
#include "platform/files/TemporaryFile.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <thread>

namespace caddis {
namespace {

TEST(MappedFile, GivesTheBytesOfShortAndLongFiles)
{
    const TemporaryFolder folder;
    for (const std::size_t size : { std::size_t { 0 }, std::size_t { 10 }, MappedFile::LeastMappedSize,
             MappedFile::LeastMappedSize + 12345 }) {
        std::string bytes(size, 'x');
        if (size > 0)
            bytes.back() = 'y';
        const auto data = MappedFile::open(folder.write("file", bytes));
        ASSERT_TRUE(data);
        EXPECT_EQ(data->chars(), bytes);
    }
    EXPECT_FALSE(MappedFile::open(folder.path("")));
    EXPECT_FALSE(MappedFile::open(folder.path("none")));
    EXPECT_FALSE(MappedFile::open(u"/dev/zero"_s));
}

TEST(MappedFile, ReadsZerosWhereTheFileWasCutShort)
{
    const TemporaryFolder folder;
    const std::size_t size = 4 * MappedFile::LeastMappedSize;
    const String path = folder.write("file", std::string(size, 'x'));
    const auto data = MappedFile::open(path);
    const auto other = MappedFile::open(path);
    ASSERT_TRUE(data && other);
    std::filesystem::resize_file(path.utf8(), 10'000);
    const auto countZeros = [](const Data& mapped) { return std::ranges::count(mapped.chars(), '\0'); };
    std::thread thread([&] { EXPECT_EQ(countZeros(*other), static_cast<std::ptrdiff_t>(size - 10'000)); });
    EXPECT_EQ(countZeros(*data), static_cast<std::ptrdiff_t>(size - 10'000));
    thread.join();
}

TEST(MappedFile, WhatIsDiscardedCanBeReadAgain)
{
    const TemporaryFolder folder;
    const std::string bytes(4 * MappedFile::LeastMappedSize, 'x');
    const auto data = MappedFile::open(folder.write("file", bytes));
    ASSERT_EQ(data->chars(), bytes);
    const auto residentKilobytes = [&] {
        std::ifstream map("/proc/self/smaps");
        std::ostringstream start;
        start << std::hex << reinterpret_cast<std::uintptr_t>(data->bytes()) << '-';
        for (std::string line; std::getline(map, line);)
            if (line.starts_with(start.str()))
                while (std::getline(map, line))
                    if (line.starts_with("Rss:"))
                        return std::stol(line.substr(4));
        return -1L;
    };
    EXPECT_EQ(residentKilobytes(), 256);
    MappedFile::discard(data->chars().substr(1, 128 << 10));
    EXPECT_EQ(residentKilobytes(), 256 - 124);
    EXPECT_EQ(data->chars(), bytes);
    const Data own = Data::copyOf(bytes);
    MappedFile::discard(own.chars());
    EXPECT_EQ(own.chars(), bytes);
}

TEST(TemporaryFile, NamesFreshPathsInAPrivateFolder)
{
    const auto first = nonExistingTemporaryFileNamed(u"My Book"_s);
    const auto second = nonExistingTemporaryFileNamed(u"My Book"_s);
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_NE(first->utf8().find("/My Book-"), std::string::npos);
    EXPECT_FALSE(FileSystem::exists(*first));
    struct stat status { };
    ASSERT_EQ(stat(temporaryDirectory()->utf8().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700U);
}

TEST(TemporaryFile, StaysInItsFolderWhateverTheName)
{
    const String folder = *temporaryDirectory();
    for (const String& name :
        { String(), u"../../etc/passwd"_s, u".."_s, String(std::u16string(5000, u'\u6F22')),
            String(std::u16string_view(u"a\0b", 3)), String(std::u16string(60, u'\xD83D')) }) {
        const auto path = nonExistingTemporaryFileNamed(name);
        ASSERT_TRUE(path);
        EXPECT_EQ(path->view().rfind(u'/'), folder.length()) << path->utf8();
        EXPECT_TRUE(FileSystem::createDirectory(*path)) << path->utf8();
        EXPECT_TRUE(FileSystem::removeItem(*path));
    }
}

} // namespace
} // namespace caddis
