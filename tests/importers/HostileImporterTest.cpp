// Importers that misbehave, in the real helper: the request gets its error, or its answer, and the next one
// works.

#include "importers/ImporterHostTest.h"

#include "client/HelperProxy.h"
#include "client/HelperTask.h"
#include "client/OstraImExport.h"
#include "support/PrivateRuntimeDirectory.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace caddis {
namespace {

class HostileImporter : public ImporterHost {
protected:
    HostileImporter()
    {
        setTool(listOf({ "/Apps/A.mdimporter" }));
        install("/Apps/A.mdimporter", { .contentType = "public.plain-text" });
    }

    std::unique_ptr<HelperTask> helper(double timeout) const
    {
        return HelperTask::initWithPath(String::fromLatin1(CADDIS_BIN "/CaddisHelper"),
            String(HelperServiceName), &OstraImExport, timeout, QualityOfService::Default);
    }
    void expectAnswer(const std::optional<Proxy>& proxy)
    {
        ASSERT_TRUE(proxy);
        const auto metaData = HelperProxy(*proxy).metaDataForFile(root.write("good.txt", ""));
        ASSERT_TRUE(metaData);
        EXPECT_TRUE(metaData->find(u"type"));
        EXPECT_FALSE(metaData->find(u"null")) << "null objects stay behind";
    }

    PrivateRuntimeDirectory directory;
};

TEST_F(HostileImporter, FailsOnlyItsRequestWhenItDies)
{
    const auto task = helper(10);
    for (const char* name : { "crash.txt", "exit.txt" }) {
        const auto proxy = task->proxy();
        ASSERT_TRUE(proxy);
        EXPECT_ANY_THROW(HelperProxy(*proxy).metaDataForFile(root.write(name, ""))) << name;
        for (int attempt = 0; attempt < 500 && proxy->connection()->isValid(); ++attempt)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        expectAnswer(task->proxy());
    }
}

TEST_F(HostileImporter, TimesOutWhenItHangs)
{
    const auto task = helper(10);
    const auto proxy = task->proxy();
    ASSERT_TRUE(proxy);
    proxy->connection()->setTimeout(1);
    EXPECT_ANY_THROW(HelperProxy(*proxy).metaDataForFile(root.write("hang.txt", "")));
    expectAnswer(task->launch());
}

TEST_F(HostileImporter, AnswersWhateverItDoes)
{
    const auto task = helper(10);
    const auto proxy = task->proxy();
    ASSERT_TRUE(proxy);
    for (const char* name : { "throw.txt", "fork.txt", "flood.txt", "garbage.txt", "leak.txt" }) {
        const auto metaData = HelperProxy(*proxy).metaDataForFile(root.write(name, ""));
        ASSERT_TRUE(metaData) << name;
        EXPECT_EQ(metaData->stringForKey(u"type"), u"public.plain-text"_s) << name;
        expectAnswer(proxy);
    }
    EXPECT_TRUE(proxy->connection()->isValid()) << "it is the same helper all the time";
}

TEST_F(HostileImporter, IsBoundedInWhatItGives)
{
    EXPECT_EQ(host.textContentOfFileAtPath(root.write("flood.txt", ""))->length(), std::size_t(16) << 20U);
    EXPECT_EQ(capture.lines(), std::vector { u"An importer gave more than 16777216 bytes of text"_s });
    const auto garbage = host.metaDataOfFileAtPath(root.write("garbage.txt", ""));
    EXPECT_EQ(garbage->stringForKey(u"bytes"), u"\uFFFD\uFFFD\uFFFD"_s);
    EXPECT_FALSE(garbage->find(u"self"));
    EXPECT_EQ(*garbage->find(u"refused"), Value(100 + (64 << 8)))
        << "what would be somewhere twice; or in itself, as long as it is not too deep";
}

TEST_F(HostileImporter, CannotBurgleFromAReader)
{
    const String file = root.write("burglar.txt", "kept");
    const auto deedsOf = [&](HelperProfile profile) {
        const auto task = HelperTask::initWithPath(String::fromLatin1(CADDIS_BIN "/CaddisHelper"),
            profile == HelperProfile::Reader ? u"Reader"_s : u"Base"_s, &OstraImExport, 10,
            QualityOfService::Default);
        task->setLaunch({ .profile = profile });
        const auto proxy = task->proxy();
        return proxy ? HelperProxy(*proxy).metaDataForFile(file).value_or(Dictionary()) : Dictionary();
    };
    const auto refused = [](const Dictionary& deeds, std::u16string_view deed) {
        const Value* const error = deeds.find(deed);
        return error && *error != Value(0);
    };
    const Dictionary deeds = deedsOf(HelperProfile::Reader);
    for (const std::u16string_view deed : { u"write", u"overwrite", u"unlink", u"chmod", u"internet",
             u"datagram", u"local", u"trace", u"namespace", u"shell writes" })
        EXPECT_TRUE(refused(deeds, deed)) << String(deed).utf8();
    for (const std::u16string_view deed : { u"scratch", u"shell" })
        EXPECT_EQ(*deeds.find(deed), Value(0)) << String(deed).utf8();
    EXPECT_EQ(std::filesystem::file_size(file.utf8()), 4U);
    EXPECT_FALSE(std::filesystem::exists(file.utf8() + ".loot"));
    EXPECT_FALSE(std::filesystem::exists(file.utf8() + ".shell"));
    // The same plug-in without a sandbox: the deeds are real ones.
    const Dictionary free = deedsOf(HelperProfile::Base);
    for (const std::u16string_view deed : { u"write", u"unlink", u"internet", u"local", u"shell writes" })
        EXPECT_FALSE(refused(free, deed)) << String(deed).utf8();
    EXPECT_TRUE(std::filesystem::exists(file.utf8() + ".loot"));
}

} // namespace
} // namespace caddis
