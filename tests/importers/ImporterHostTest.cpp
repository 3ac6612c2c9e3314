#include "importers/MetaDataImporter.h"

#include "client/HelperProxy.h"
#include "client/HelperTask.h"
#include "client/OstraImExport.h"
#include "platform/files/ContentType.h"
#include "platform/plugin/ElfPreflight.h"

#include "support/LogCapture.h"
#include "support/PrivateRuntimeDirectory.h"
#include "support/Run.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace caddis {
namespace {

constexpr const char* Type = "8B08C4BF-415B-11D8-B3F9-0003936726FC";
constexpr const char* User = "/home/ada/Library/Spotlight/";
constexpr const char* Local = "/Library/Spotlight/";
constexpr const char* System = "/System/Library/Spotlight/";

// A whole system in a folder: importers where the platform has them, and a tool that lists what the test
// says. Discovery happens once per process; every case runs in one of its own.
class ImporterHost : public testing::Test {
protected:
    ImporterHost()
    {
        setenv("CADDIS_ROOT", root.path().c_str(), 1);
        setenv("HOME", "/home/ada", 1);
    }

    struct Declared {
        std::string contentType = {};
        std::string extension = {};
        std::vector<std::string> factories = { "PathFactory" };
        std::string more = {};
    };

    void install(const std::string& path, const Declared& declared)
    {
        std::string factories;
        std::string types;
        for (const std::string& function : declared.factories) {
            const std::string identifier
                = "00000000-0000-4000-8000-" + std::to_string(100000000000 + ++count);
            factories.append("\"").append(identifier).append("\" = ").append(function).append("; ");
            types.append("\"").append(identifier).append("\", ");
        }
        const std::string contents = path.substr(1) + "/Contents/";
        root.write(contents + "Info.plist",
            "{ CFBundleExecutable = Test.so; CFPlugInFactories = { " + factories + " }; CFPlugInTypes = { \""
                + Type + "\" = ( " + types
                + " ); }; CFBundleDocumentTypes = ( { CFBundleTypeRole = MDImporter; "
                + "LSItemContentTypes = ( \"" + declared.contentType + "\" ); } ); "
                + "UTExportedTypeDeclarations = ( { UTTypeTagSpecification = { \"public.filename-extension\" "
                  "= "
                + "( \"" + declared.extension + "\" ); }; } ); " + declared.more + " }");
        const auto folder = root.path() / contents / "Linux";
        std::filesystem::create_directories(folder);
        std::filesystem::copy_file(CADDIS_TEST_IMPORTER, folder / "Test.so");
    }

    void setTool(const std::string& list)
    {
        const String tool = root.write("usr/bin/mdimport", "#!/bin/sh\ncat >&2 <<'END'\n" + list + "\nEND\n");
        std::filesystem::permissions(tool.utf8(), std::filesystem::perms::owner_all);
    }

    static std::string listOf(const std::vector<std::string>& paths)
    {
        std::string text = "mdimport[1] Paths: id(0) (\n";
        for (const std::string& path : paths)
            text += "    \"" + path + "\",\n";
        return text + ")";
    }

    static std::string order(const MetaDataImporter& host)
    {
        std::string text;
        for (const String& path : host.MDImporterArray())
            text += path.utf8() + ' ';
        return text;
    }

    TemporaryFolder root;
    LogCapture capture;
    MetaDataImporter host;
    long count = 0;
};

TEST_F(ImporterHost, TakesGroupsInReverseAndMailFirst)
{
    setTool(listOf({ "/Apps/Z.mdimporter", "/System/Library/Spotlight/A.mdimporter",
        "/Library/Spotlight/B.mdimporter", "/Library/Spotlight/C.mdimporter",
        "/home/ada/Library/Spotlight/D.mdimporter", "/Library/Spotlight/Dynamic.mdimporter" }));
    install(std::string(Local) + "Dynamic.mdimporter", { .more = "CFPlugInDynamicRegistration = yes;" });
    install(std::string(System) + "Mail.mdimporter", { .contentType = "COM.Apple.Mail" });
    install(std::string(Local) + "TagsMail.mdimporter", {});
    host.loadMDImporters();
    EXPECT_EQ(order(host),
        "/System/Library/Spotlight/Mail.mdimporter /home/ada/Library/Spotlight/D.mdimporter "
        "/Library/Spotlight/C.mdimporter /Library/Spotlight/B.mdimporter "
        "/System/Library/Spotlight/A.mdimporter /Apps/Z.mdimporter ");
    EXPECT_EQ(capture.lines(), std::vector { u"Added: /System/Library/Spotlight/Mail.mdimporter"_s });
    EXPECT_EQ(*host.contentTypesForMDImporter(u"/System/Library/Spotlight/Mail.mdimporter"_s),
        std::vector { u"com.apple.mail"_s });
}

TEST_F(ImporterHost, ScansTheFoldersWhenTheToolListsNothing)
{
    setTool("nothing here");
    install(std::string(User) + "U.mdimporter", {});
    install("/home/ada/Applications/X.app/Contents/Library/Spotlight/X.mdimporter", {});
    install(std::string(Local) + "_TagsMail.mdimporter", {});
    host.loadMDImporters();
    EXPECT_EQ(order(host),
        "~/Applications/X.app/Contents/Library/Spotlight/X.mdimporter "
        "/home/ada/Library/Spotlight/U.mdimporter /Library/Spotlight/_TagsMail.mdimporter ");
    EXPECT_TRUE(
        host.contentTypesForMDImporter(u"~/Applications/X.app/Contents/Library/Spotlight/X.mdimporter"_s))
        << "opened with its tilde expanded";
    EXPECT_EQ(capture.lines(), std::vector { u"Skipped: /Library/Spotlight/_TagsMail.mdimporter"_s });
}

TEST_F(ImporterHost, FindsNoImportersInUnreadableOutput)
{
    setTool("\xFF (\n\"/Library/Spotlight/A.mdimporter\"\n)");
    install(std::string(Local) + "A.mdimporter", { .contentType = "public.plain-text" });
    EXPECT_FALSE(host.supportsFileAtPath(root.write("a.txt", "text")));
    EXPECT_TRUE(host.MDImporterArray().empty());
}

TEST_F(ImporterHost, RunsTheFirstImporterOfATypeOrAnExtension)
{
    setTool(listOf({ "/Library/Spotlight/A.mdimporter", "/Library/Spotlight/B.mdimporter",
        "/Library/Spotlight/E.mdimporter" }));
    install(std::string(Local) + "A.mdimporter", { .contentType = "public.plain-text" });
    install(std::string(Local) + "B.mdimporter",
        { .contentType = "PUBLIC.Plain-Text", .factories = { "URLFactory" } });
    install(std::string(Local) + "E.mdimporter", { .extension = "ODDITY" });
    const auto text = host.metaDataOfFileAtPath(root.write("a b.TXT", "text"));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->stringForKey(u"type"), u"public.plain-text"_s);
    EXPECT_TRUE(text->stringForKey(u"path")->view().starts_with(u"file://")) << "the one listed last";
    EXPECT_EQ(*text->find(u"references"), Value(1)) << "the object's own reference is released";
    EXPECT_EQ(*text->find(u"null"), Value());
    const auto odd = host.metaDataOfFileAtPath(root.write("a.oddity", ""));
    ASSERT_TRUE(odd);
    EXPECT_EQ(odd->stringForKey(u"type"), dynamicTypeForExtension(u"oddity"_s));
    EXPECT_EQ(*odd->find(u"references"), Value(2)) << "the object's own reference stays";
    EXPECT_EQ(*host.metaDataOfFileAtPath(root.path("a.oddity"))->find(u"living"), Value(2));
}

TEST_F(ImporterHost, DropsImportersWithoutAnInterface)
{
    setTool(listOf({ "/Apps/A.mdimporter", "/Apps/B.mdimporter", "/Apps/C.mdimporter" }));
    install("/Apps/A.mdimporter", { .contentType = "public.plain-text", .factories = { "NullFactory" } });
    install(
        "/Apps/B.mdimporter", { .contentType = "public.plain-text", .factories = { "NoInterfaceFactory" } });
    install("/Apps/C.mdimporter",
        { .contentType = "public.plain-text", .factories = { "PathFactory", "URLFactory" } });
    const String file = root.write("a.txt", "text");
    EXPECT_FALSE(host.metaDataOfFileAtPath(file));
    EXPECT_EQ(order(host), "/Apps/B.mdimporter /Apps/C.mdimporter ");
    EXPECT_FALSE(host.supportsFileAtPath(file));
    EXPECT_TRUE(host.supportsFileAtPath(file));
    EXPECT_EQ(capture.lines().size(), 2U);
    EXPECT_EQ(capture.lines().front(),
        u"/Apps/A.mdimporter: No kMDImporter(URL)Interface 00000000-0000-4000-8000-100000000001"_s);
    EXPECT_TRUE(host.metaDataOfFileAtPath(file)->stringForKey(u"path")->view().starts_with(u"file://"))
        << "the second factory replaces what the first gave";
}

TEST_F(ImporterHost, BoundsFloodsAndRepairsGarbage)
{
    setTool(listOf({ "/Apps/A.mdimporter" }));
    install("/Apps/A.mdimporter", { .contentType = "public.plain-text" });
    EXPECT_EQ(host.textContentOfFileAtPath(root.write("flood.txt", ""))->length(), std::size_t(16) << 20U);
    const auto garbage = host.metaDataOfFileAtPath(root.write("garbage.txt", ""));
    EXPECT_EQ(garbage->stringForKey(u"bytes"), u"\uFFFD\uFFFD\uFFFD"_s);
    EXPECT_FALSE(garbage->find(u"self"));
}

TEST_F(ImporterHost, ReadsOutlinesAndChatLogsItself)
{
    setTool("nothing here");
    root.write("o.oo3/contents.xml",
        "<?xml version='1.0'?><o><editor x='1'>settings</editor><t>Tom &amp; Ada</t></o>");
    EXPECT_EQ(host.textContentOfFileAtPath(root.path("o.oo3"))->utf8().find("settings"), std::string::npos);
    EXPECT_NE(host.textContentOfFileAtPath(root.path("o.oo3"))->utf8().find("Tom & Ada"), std::string::npos);
    root.write("c.chatlog/a.xml", "<chat><message>hello</message></chat>");
    EXPECT_NE(host.textContentOfFileAtPath(root.path("c.chatlog"))->utf8().find("hello"), std::string::npos);
    root.write("c.chatlog/b.xml", "<chat/>");
    EXPECT_FALSE(host.metaDataOfFileAtPath(root.path("c.chatlog"))) << "two logs";
    EXPECT_EQ(host.metaDataOfFileAtPath(root.write("x.fennikSearch", "")), Dictionary());
}

TEST_F(ImporterHost, FailsOnlyTheRequestOfAnImporterThatDies)
{
    const PrivateRuntimeDirectory directory;
    setTool(listOf({ "/Apps/A.mdimporter" }));
    install("/Apps/A.mdimporter", { .contentType = "public.plain-text" });
    const auto task = HelperTask::initWithPath(String::fromLatin1(CADDIS_BIN "/CaddisHelper"),
        String(HelperServiceName), &OstraImExport, 10, QualityOfService::Default);
    const String good = root.write("good.txt", "");
    for (const char* name : { "crash.txt", "exit.txt" }) {
        const auto proxy = task->proxy();
        ASSERT_TRUE(proxy);
        EXPECT_ANY_THROW(HelperProxy(*proxy).metaDataForFile(root.write(name, ""))) << name;
        for (int attempt = 0; attempt < 500 && proxy->connection()->isValid(); ++attempt)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        const auto next = task->proxy();
        ASSERT_TRUE(next);
        const auto metaData = HelperProxy(*next).metaDataForFile(good);
        ASSERT_TRUE(metaData);
        EXPECT_TRUE(metaData->find(u"type"));
        EXPECT_FALSE(metaData->find(u"null")) << "null objects stay behind";
    }
}

TEST(ElfPreflight, TellsWhatCannotBeLoaded)
{
    const auto check = [](const std::string& bytes, const std::string& symbol) {
        return preflightSharedObject(Data::copyOf(bytes), std::array { symbol });
    };
    std::ifstream file(CADDIS_TEST_IMPORTER, std::ios::binary);
    const std::string good { std::istreambuf_iterator<char>(file), {} };
    EXPECT_EQ(check(good, "URLFactory"), Preflight::Passed);
    EXPECT_EQ(check(good, "OtherFactory"), Preflight::MissingSymbol);
    EXPECT_EQ(check("text", "URLFactory"), Preflight::NotLoadable);
    std::string other = good;
    other[18] = '\x28';
    EXPECT_EQ(check(other, "URLFactory"), Preflight::WrongArchitecture);
    for (const double part : { 0.001, 0.01, 0.1, 0.3 })
        EXPECT_NE(
            check(good.substr(0, std::size_t(double(good.size()) * part)), "URLFactory"), Preflight::Passed);
    std::ifstream program("/proc/self/exe", std::ios::binary);
    EXPECT_EQ(check({ std::istreambuf_iterator<char>(program), {} }, "main"), Preflight::NotLoadable);
}

TEST(ContentType, GoesByTheName)
{
    const TemporaryFolder folder;
    EXPECT_EQ(contentTypeOfItem(folder.write("A.PDF", "")), u"com.adobe.pdf"_s);
    EXPECT_EQ(contentTypeOfItem(folder.write("none", "")), u"public.data"_s);
    EXPECT_EQ(contentTypeOfItem(folder.path("")), u"public.folder"_s);
    EXPECT_EQ(contentTypeOfItem(folder.path("missing")), std::nullopt);
    EXPECT_EQ(dynamicTypeForExtension(u"chm"_s), u"dyn.ah62d4rv4ge80g4dr"_s);
}

TEST(ImporterTool, ListsPathsInASCIIAndShowsWhatTheExampleGives)
{
    const TemporaryFolder root;
    const auto bundle = root.path() / "Library/Spotlight/Caf\xC3\xA9.mdimporter/Contents";
    std::filesystem::create_directories(bundle / "Linux");
    const std::string example = CADDIS_SOURCE "/docs/examples/importer/";
    std::filesystem::copy_file(example + "Info.plist", bundle / "Info.plist");
    EXPECT_EQ(run("cc -shared -fPIC -I " CADDIS_SOURCE "/src/platform/plugin -o '"
                  + (bundle / "Linux/Note.so").string() + "' " + example + "NoteImporter.c")
                  .status,
        0);
    const std::string tool = "CADDIS_ROOT=" + root.path().string() + " " CADDIS_BIN "/mdimport ";
    EXPECT_NE(
        run(tool + "-L").output.find(R"("/Library/Spotlight/Caf\U00e9.mdimporter")"), std::string::npos);
    const String note = root.write("a.note", "A title\nand more\n");
    std::filesystem::create_directories(root.path() / "usr/bin");
    std::filesystem::create_symlink(CADDIS_BIN "/mdimport", root.path() / "usr/bin/mdimport");
    const Outcome outcome = run(tool + "-d2 " + note.utf8());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("kMDItemTitle = \"A title\""), std::string::npos) << outcome.output;
}

} // namespace
} // namespace caddis
