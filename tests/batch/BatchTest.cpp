// The tool and the real helper, over folders of files.

#include "batch/JSONLine.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Run.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace caddis::tool {
namespace {

const std::string book = CADDIS_TEST_DATA "/lighthouse.epub";

class Batch : public testing::Test {
protected:
    Batch()
    {
        for (int count = 0; count < 12; ++count)
            std::filesystem::copy_file(book, files.path() / ("book" + std::to_string(count) + ".epub"));
        files.write("deep/er/page.html", "<title>A page</title><p>Some words");
        files.write("unknown.xyz", "?");
    }

    static Outcome batch(const std::string& arguments)
    {
        return run("exec " CADDIS_TOOL " batch --quiet " + arguments);
    }
    // The records by their files' names; a second one of a file is an error.
    static std::map<std::string, std::string> records(const std::string& lines)
    {
        std::map<std::string, std::string> result;
        std::istringstream stream(lines);
        for (std::string line; std::getline(stream, line);) {
            const JSONLine record(line);
            EXPECT_TRUE(record.isObject()) << line;
            const auto file = std::filesystem::path(record.text("file").value_or("")).filename().string();
            EXPECT_TRUE(result.emplace(file, line).second) << line;
        }
        return result;
    }
    static std::string contentsOf(const std::string& file) { return run("cat " + file).output; }
    static std::string outcomeOf(const std::string& record)
    {
        return JSONLine(record).text("outcome").value_or("");
    }

    PrivateRuntimeDirectory directory;
    TemporaryFolder files;
    TemporaryFolder out;
    std::string folder = files.path().string();
    std::string file = (out.path() / "records.jsonl").string();
};

TEST_F(Batch, WritesOneRecordForEachFile)
{
    const Outcome outcome = batch("--jobs 2 " + folder);
    EXPECT_EQ(outcome.status, 1) << "one file is of no kind";
    const auto found = records(outcome.output);
    ASSERT_EQ(found.size(), 14U);
    EXPECT_EQ(outcomeOf(found.at("unknown.xyz")), "unsupported");
    EXPECT_EQ(outcomeOf(found.at("book7.epub")), "ok");
    EXPECT_NE(
        found.at("book7.epub").find("\"kMDItemAuthors\": [\"Ada Keeper\", \"Ben Lamp\"]"), std::string::npos);
    EXPECT_EQ(batch(book).status, 0);
}

TEST_F(Batch, DoesNotReadWhatItWrites)
{
    EXPECT_EQ(batch("--op richtext --out " + folder + ' ' + folder).status, 1);
    EXPECT_EQ(records(contentsOf(folder + "/records.jsonl")).size(), 14U);
    batch("--op richtext --out " + folder + ' ' + folder);
    EXPECT_EQ(records(contentsOf(folder + "/records.jsonl")).size(), 14U);
}

TEST_F(Batch, ReadsPathsAndJobsFromItsInput)
{
    const Outcome outcome = run("printf '%s\\n' '" + book + "' '{\"file\": \"" + folder
        + "/book1.epub\", \"op\": \"text\", \"id\": [1, \"a\"]}' '{\"file\": \"/x\", \"op\": \"dance\"}' "
          "| " CADDIS_TOOL " batch --quiet -");
    const auto found = records(outcome.output);
    ASSERT_EQ(found.size(), 3U) << outcome.output;
    const JSONLine text(found.at("book1.epub"));
    EXPECT_EQ(text.raw("id"), "[1, \"a\"]");
    EXPECT_EQ(text.text("result"), "One\n\nThe lamp was lit at dusk.\n\n\n");
    EXPECT_EQ(outcomeOf(found.at("x")), "refused");
}

TEST_F(Batch, ResumesWhereItWasStopped)
{
    const std::string command = "--resume --out " + file + ' ' + folder;
    batch(command);
    auto lines = contentsOf(file);
    ASSERT_EQ(records(lines).size(), 14U);
    // As if stopped in the middle of the last line, and one file had changed meanwhile.
    run("truncate -s -20 " + file);
    files.write("book3.epub", "changed");
    const auto before = run("stat -c %i " + file).output;
    EXPECT_EQ(batch(command).output, "");
    const auto after = records(contentsOf(file));
    ASSERT_EQ(after.size(), 14U);
    EXPECT_NE(after.at("book3.epub"), records(lines).at("book3.epub"));
    // Nothing is left to do: no record changes.
    lines = contentsOf(file);
    batch(command);
    EXPECT_EQ(contentsOf(file), lines);
}

TEST_F(Batch, FinishesRecordsWhenInterrupted)
{
    for (int count = 12; count < 400; ++count)
        std::filesystem::copy_file(book, files.path() / ("book" + std::to_string(count) + ".epub"));
    const std::string command = "--jobs 1 --out " + file + ' ' + folder;
    const Outcome outcome = run(CADDIS_TOOL " batch --quiet " + command + " & pid=$!; while ! [ -s " + file
        + " ]; do sleep 0.01; done; kill -INT $pid; wait $pid");
    EXPECT_EQ(outcome.status, 130) << outcome.output;
    const auto done = records(contentsOf(file)); // Each line is whole.
    EXPECT_GE(done.size(), 1U);
    EXPECT_LT(done.size(), 402U);
    EXPECT_EQ(batch("--resume " + command).status, 1);
    EXPECT_EQ(records(contentsOf(file)).size(), 402U);
}

TEST_F(Batch, EndsWhenInterruptedWhileItWaitsForNames)
{
    const std::string names = (out.path() / "names").string(); // A pipe that this shell keeps open.
    const Outcome outcome = run("mkfifo " + names + "; exec 3<>" + names + "; echo " + book
        + " >&3; " CADDIS_TOOL " batch --quiet --out " + file + " - <" + names + " & pid=$!; while ! [ -s "
        + file + " ]; do sleep 0.01; done; kill -INT $pid; wait $pid");
    EXPECT_EQ(outcome.status, 130) << outcome.output;
    EXPECT_EQ(records(contentsOf(file)).size(), 1U);
}

TEST_F(Batch, TellsWrongUsage)
{
    EXPECT_EQ(batch("").status, 2);
    EXPECT_EQ(batch("--op dance " + book).status, 2);
    EXPECT_EQ(batch("--memory 5X " + book).status, 2);
    EXPECT_EQ(batch("--jobs 0 " + book).status, 2);
    EXPECT_EQ(batch("--dance " + book).status, 2);
    EXPECT_EQ(batch("--out /nowhere/at/all " + book).status, 2);
    EXPECT_EQ(run("CADDIS_HELPER=/bin/false " CADDIS_TOOL " batch --quiet " + book).status, 3);
}

} // namespace
} // namespace caddis::tool
