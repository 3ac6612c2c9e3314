#include "importers/ImporterHostTest.h"

#include "platform/files/ContentType.h"
#include "platform/plugin/ElfPreflight.h"

#include "support/Run.h"

#include <gtest/gtest.h>

// For the leak checker: the reference that an importer's object begins with is left behind on purpose.
extern "C" [[gnu::visibility("default"), gnu::used]] const char*
__lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier): the tool's name
{
    return "leak:Test.so";
}

namespace caddis {
namespace {

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

TEST_F(ImporterHost, MakesPlugInsOfAllFoldersWithoutASearchOrder)
{
    install(std::string(Local) + "A.mdimporter",
        { .contentType = "Public.A", .extension = "AAA", .factories = { "PathFactory", "URLFactory" } });
    install(std::string(System) + "B.mdimporter", { .contentType = "public.b" });
    host.loadExtractorPlugins();
    const String path = u"/Library/Spotlight/A.mdimporter"_s;
    EXPECT_EQ(*host.contentTypesForMDImporter(path), std::vector { u"public.a"_s });
    EXPECT_EQ(*host.extensionsForMDImporter(path), std::vector { u"aaa"_s });
    EXPECT_EQ(host.factoriesForMDImporter(path)->size(), 2U);
    EXPECT_EQ(host.allFactories().size(), 3U);
    EXPECT_TRUE(host.MDImporterArray().empty());
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
