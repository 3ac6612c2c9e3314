#include "Scripts.h"

#include "support/TemporaryFolder.h"

#include <stdlib.h>

namespace caddis::applescript {
namespace {

class FileSuite : public testing::Test {
protected:
    FileSuite()
    {
        setenv("HOME", m_folder.path().c_str(), 1);
        setenv("XDG_DATA_HOME", (m_folder.path() / "data").c_str(), 1);
        m_folder.write("in/b.txt", "bb");
        m_folder.write("in/a.txt", "a");
        m_folder.write("in/c.pdf", "c");
        m_folder.write("in/sub/x", "");
    }

    // "$" in a source is the test's folder.
    std::string outcome(std::string source) const
    {
        for (std::size_t at = source.find('$'); at != std::string::npos; at = source.find('$'))
            source.replace(at, 1, m_folder.path().string());
        return outcomeOf(source);
    }
    std::string told(const std::string& statement) const
    {
        return outcome("tell application \"Finder\"\n" + statement + "\nend tell");
    }
    bool exists(const char* name) const { return std::filesystem::exists(m_folder.path() / name); }

    TemporaryFolder m_folder;
};

TEST_F(FileSuite, NamesItemsAndTheirProperties)
{
    EXPECT_EQ(told("name of every file of folder \"$/in\""), R"({"a.txt", "b.txt", "c.pdf"})");
    EXPECT_EQ(
        told("name of every file of folder \"$/in\" whose name ends with \".txt\""), R"({"a.txt", "b.txt"})");
    EXPECT_EQ(told("name of folder 1 of folder \"$/in\""), "\"sub\"");
    EXPECT_EQ(told("count of items of folder \"$/in\""), "4");
    EXPECT_EQ(
        told("name of entire contents of folder \"$/in\""), R"({"a.txt", "b.txt", "c.pdf", "sub", "x"})");
    EXPECT_EQ(told("size of file \"b.txt\" of folder \"in\" of home"), "2");
    EXPECT_EQ(told("name extension of file \"$/in/c.pdf\""), "\"pdf\"");
    EXPECT_EQ(told("{exists file \"$/in/a.txt\", exists file \"$/in/no\"}"), "{true, false}");
    EXPECT_EQ(told("file \"$/in/no\""), "error -1728");
}

TEST_F(FileSuite, MakesMovesAndDeletes)
{
    EXPECT_EQ(told("make new folder at folder \"$/in\" with properties {name:\"made\"}\nname of result"),
        "\"made\"");
    EXPECT_EQ(told("make new folder at folder \"$/in\" with properties {name:\"made\"}"), "error -48");
    told("move file \"$/in/a.txt\" to folder \"$/in/made\"");
    EXPECT_TRUE(exists("in/made/a.txt"));
    told("duplicate file \"$/in/b.txt\"");
    EXPECT_TRUE(exists("in/b copy.txt"));
    told("set name of file \"$/in/b copy.txt\" to \"d.txt\"");
    EXPECT_TRUE(exists("in/d.txt"));
    told("delete file \"$/in/d.txt\"");
    EXPECT_FALSE(exists("in/d.txt"));
    EXPECT_TRUE(exists("data/Trash/files/d.txt"));
    EXPECT_TRUE(exists("data/Trash/info/d.txt.trashinfo"));
}

TEST_F(FileSuite, ReadsAndWritesFiles)
{
    EXPECT_EQ(outcome("read POSIX file \"$/in/b.txt\""), "\"bb\"");
    EXPECT_EQ(
        outcome(
            "set f to open for access POSIX file \"$/out\" with write permission\n"
            "write \"one\" & linefeed & \"two\" to f starting at eof\nset n to get eof f\nclose access f\n"
            "{n, read POSIX file \"$/out\" using delimiter linefeed}"),
        R"({7, {"one", "two"}})");
    EXPECT_EQ(outcome("read POSIX file \"$/in/b.txt\" from 2"), "\"b\"");
    EXPECT_EQ(outcome("list folder POSIX file \"$/in\" without invisibles"),
        R"({"a.txt", "b.txt", "c.pdf", "sub"})");
    EXPECT_EQ(outcome("size of (info for POSIX file \"$/in/b.txt\")"), "2");
    EXPECT_EQ(outcome("write \"x\" to 77"), "error -38");
    EXPECT_EQ(outcome("alias \"Macintosh HD:no:such\""), "error -43");
}

} // namespace
} // namespace caddis::applescript
