// The real helper, launched as an application launches it, on a runtime directory of its own.

#include "client/HelperProxy.h"
#include "client/HelperTask.h"
#include "client/OstraImExport.h"
#include "platform/files/Bookmark.h"
#include "platform/script/EventDescriptor.h"
#include "support/LogCapture.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Run.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

namespace caddis {
namespace {

const String book = String::fromLatin1(CADDIS_TEST_DATA "/lighthouse.epub");

class HelperProcess : public testing::Test {
protected:
    HelperProcess()
        : m_task(HelperTask::initWithPath(String::fromLatin1(CADDIS_HELPER_PROGRAM),
            String(HelperServiceName), &OstraImExport, 15, QualityOfService::Default))
    {
    }

    Proxy proxy()
    {
        auto proxy = m_task->proxy();
        EXPECT_TRUE(proxy);
        return *proxy;
    }
    HelperProxy helper() { return HelperProxy(proxy()); }
    // The helper was told to end, and has within five seconds.
    bool isGone()
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (m_task->launchedProxy() && std::chrono::steady_clock::now() < deadline) { }
        return !m_task->launchedProxy();
    }
    std::string address() const { return "unix:path=" + (m_directory.path() / "CaddisHelper64.4").string(); }

    PrivateRuntimeDirectory m_directory;
    std::unique_ptr<HelperTask> m_task;
};

TEST_F(HelperProcess, ReadsTheMetadataOfABook)
{
    const auto metadata = helper().metaDataForFile(book);
    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->stringForKey(u"kMDItemTitle"), u"The Lighthouse & the K\u00E4se"_s);
    EXPECT_EQ(*metadata->find(u"kMDItemAuthors"), Value(Array { u"Ada Keeper"_s, u"Ben Lamp"_s }));
    EXPECT_EQ(helper().metaDataForFile(*bookmarkDataForPath(book)), metadata);
    EXPECT_EQ(helper().metaDataForFile(URL::fileURLWithPath(book)), metadata);
    EXPECT_TRUE(helper().supportsFile(book));
    EXPECT_FALSE(helper().supportsFile(u"/nowhere.epub"_s));
}

TEST_F(HelperProcess, TakesAnythingElseForANilPath)
{
    const Proxy object = proxy();
    for (const std::optional<Value>& file :
        { std::optional<Value>(7), std::optional<Value>(Array {}), std::optional<Value>() }) {
        EXPECT_EQ(object.call("MetaDataForFile", { file }), std::nullopt);
        EXPECT_EQ(object.call("SupportsFile", { file }), Value(false));
    }
    EXPECT_FALSE(helper().supportsFile(Data::copyOf("no bookmark")));
    EXPECT_FALSE(helper().supportsFile(URL::fileURLWithPath(u"/nowhere/at/all.epub"_s)));
}

TEST_F(HelperProcess, EndsOnTerminateAndIsLaunchedAgain)
{
    helper().ping();
    helper().terminate();
    EXPECT_TRUE(isGone());
    helper().ping();
}

TEST_F(HelperProcess, LeavesWithStatusZeroWhenAnotherOneHasTheName)
{
    helper().ping();
    const auto start = std::chrono::steady_clock::now();
    const Outcome second = run(CADDIS_HELPER_PROGRAM);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
    EXPECT_EQ(second.status, 0);
    EXPECT_NE(second.output.find("Couldn't register service CaddisHelper64.4\n"), std::string::npos)
        << second.output;
    helper().ping();
}

TEST_F(HelperProcess, AnswersOtherCallersAlike)
{
    helper().ping();
    const std::string call = " /CaddisHelper org.caddis.OstraImExport MetaDataForFile v s " + book.utf8();
    const Outcome busctl = run("busctl --address=" + address() + " call x.y" + call);
    EXPECT_EQ(busctl.status, 0) << busctl.output;
    const Outcome gdbus = run("gdbus call --address " + address()
        + " --dest x.y --object-path /CaddisHelper --method org.caddis.OstraImExport.MetaDataForFile \"<'"
        + book.utf8() + "'>\"");
    EXPECT_EQ(gdbus.status, 0) << gdbus.output;
    const Outcome tool = run(CADDIS_TOOL " info " + book.utf8());
    EXPECT_EQ(tool.status, 0) << tool.output;
    for (const Outcome& answer : { busctl, gdbus, tool }) {
        EXPECT_NE(answer.output.find("The Lighthouse & the "), std::string::npos) << answer.output;
        EXPECT_NE(answer.output.find("Ben Lamp"), std::string::npos) << answer.output;
    }
    const Outcome introspection
        = run("gdbus introspect --address " + address() + " --dest x.y --object-path /CaddisHelper");
    EXPECT_NE(introspection.output.find("WriteRTFDDataToFile"), std::string::npos) << introspection.output;
}

TEST_F(HelperProcess, LogsAStraySetImageAndGoesOn)
{
    const std::string tell = "dbus-send --peer=" + address()
        + " --print-reply /CaddisHelper org.caddis.OstraImExport.SetImage variant:int32:1";
    const Outcome outcome = run(CADDIS_HELPER_PROGRAM " & sleep 0.5; " + tell + "; kill $!; wait");
    EXPECT_NE(outcome.output.find("Workaround: setImage: (CaddisHelper)"), std::string::npos)
        << outcome.output;
    EXPECT_NE(outcome.output.find("method return"), std::string::npos) << outcome.output;
}

// What scripts do is told by the file that they write.
TEST_F(HelperProcess, RunsHandlersOfScriptsAndKeepsThem)
{
    const std::string out = (m_directory.path() / "out").string();
    const std::string file = (m_directory.path() / "a.applescript").string();
    const auto source = [&](const std::string& mark) {
        return "property n : 0\non Note(x)\nset n to n + 1\n"
               "do shell script \"echo "
            + mark + "\" & n & x & \" >> " + out + "\"\nend Note\n";
    };
    const auto put = [&](const std::string& mark) { std::ofstream(file) << source(mark); };
    const auto written = [&] { return run("cat " + out).output; };
    const ScriptParameter parameter { "utxt"_code, EventDescriptor::withString(u"!"_s).data() };
    const HelperProxy proxy = helper();
    const auto path = String::fromUtf8(file);
    put("a");
    proxy.executeFile(path, u"NOTE"_s, parameter);
    put("b");
    proxy.executeFile(path, u"note"_s, parameter);
    EXPECT_EQ(written(), "a1!\na2!\n") << "the changed file is not read again";
    proxy.executeSource(String::fromUtf8(source("s")), u"nOtE"_s, parameter);
    proxy.executeSource(String::fromUtf8(source("s")), u"Note"_s, parameter);
    EXPECT_EQ(written(), "a1!\na2!\ns1!\ns2!\n");
    const Outcome busctl = run("busctl --address=" + address()
        + " call x.y /CaddisHelper org.caddis.OstraImExport ExecuteFile 'vv(uay)' s " + file
        + " s Note 1970567284 2 63 0");
    EXPECT_EQ(busctl.status, 0) << busctl.output;
    EXPECT_EQ(written(), "a1!\na2!\ns1!\ns2!\na3?\n");
    // The cache goes with the helper.
    helper().terminate();
    EXPECT_TRUE(isGone());
    helper().executeFile(path, u"Note"_s, parameter);
    EXPECT_EQ(written(), "a1!\na2!\ns1!\ns2!\na3?\nb1!\n");
}

// By the bus's own tools, in any case, the source itself being the key: the same text keeps its state.
TEST_F(HelperProcess, RunsSourcesForOtherCallers)
{
    helper().ping();
    const std::string out = (m_directory.path() / "out").string();
    const auto call = [&](const std::string& source, const std::string& name) {
        const std::string member
            = " call x.y /CaddisHelper org.caddis.OstraImExport ExecuteSource 'vv(uay)' s ";
        return run(
            "busctl --address=" + address() + member + "'" + source + "' s " + name + " 1970567284 2 33 0")
            .status; // 'utxt', "!"
    };
    const std::string source
        = "property n : 0\non Note(x)\nset n to n + 1\ndo shell script \"echo \" & n & x "
          "& \" >> "
        + out + "\"\nend Note";
    EXPECT_EQ(call(source, "NOTE"), 0);
    EXPECT_EQ(call(source, "note"), 0);
    EXPECT_EQ(call(source + "\n", "nOte"), 0);
    EXPECT_EQ(call(source, "absent"), 0) << "failures are logged, not answered";
    EXPECT_EQ(call("on Note(", "note"), 0);
    EXPECT_EQ(run("cat " + out).output, "1!\n2!\n1!\n");
}

// The tool's exit codes and its machine-readable form.
TEST_F(HelperProcess, IsReachedByTheTool)
{
    EXPECT_EQ(run(CADDIS_TOOL " terminate").status, 1) << "none runs yet";
    const Outcome json = run(CADDIS_TOOL " info --json " + book.utf8());
    EXPECT_NE(json.output.find("\"kMDItemAuthors\": [\"Ada Keeper\", \"Ben Lamp\"]"), std::string::npos)
        << json.output;
    EXPECT_EQ(run(CADDIS_TOOL " terminate").status, 1) << "the tool has ended what it launched";
    EXPECT_EQ(run(CADDIS_TOOL " info /nowhere.txt").status, 1);
    EXPECT_EQ(run(CADDIS_TOOL " info").status, 2);
    EXPECT_EQ(run(CADDIS_TOOL " dance").status, 2);
    EXPECT_EQ(run("CADDIS_HELPER=/bin/false " CADDIS_TOOL " ping").status, 3);
    EXPECT_EQ(run(CADDIS_TOOL " ping --keep").status, 0);
    EXPECT_EQ(run(CADDIS_TOOL " supports " + book.utf8()).output.find("yes"), 0U);
    EXPECT_EQ(run(CADDIS_TOOL " terminate").status, 0);
}

} // namespace
} // namespace caddis
