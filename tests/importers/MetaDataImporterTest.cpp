#include "importers/MetaDataImporter.h"

#include "support/LogCapture.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(MetaDataImporter, GivesTheMetadataOfABook)
{
    const TemporaryFolder folder;
    MetaDataImporter importer;
    const String book = String::fromLatin1(CADDIS_TEST_DATA "/lighthouse.epub");
    EXPECT_TRUE(importer.supportsFileAtPath(book));
    const auto metaData = importer.metaDataOfFileAtPath(book);
    ASSERT_TRUE(metaData);
    EXPECT_EQ(metaData->stringForKey(u"kMDItemTitle"), u"The Lighthouse & the K\u00E4se"_s);
    EXPECT_NE(metaData->stringForKey(u"kMDItemTextContent")->utf8().find("The lamp was lit at dusk."),
        std::string::npos);
}

TEST(MetaDataImporter, GivesNothingForOtherFiles)
{
    const TemporaryFolder folder;
    setenv("CADDIS_ROOT", folder.path().c_str(), 1); // No importers are installed there.
    const LogCapture capture;
    MetaDataImporter importer;
    const String text = folder.write("a.txt", "text");
    EXPECT_FALSE(importer.supportsFileAtPath(text));
    EXPECT_FALSE(importer.metaDataOfFileAtPath(text));
    EXPECT_FALSE(importer.supportsFileAtPath(folder.path("none.epub")));
    EXPECT_EQ(importer.metaDataOfFileAtPath(folder.write("broken.epub", "PK")),
        (Dictionary { { u"kMDItemTextContent"_s, String() } }));
}

} // namespace
} // namespace caddis
