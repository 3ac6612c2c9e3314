#include "importers/MetaDataImporter.h"

#include "support/EPUBBuilder.h"
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
    const String book = folder.write("book.EPUB", epubWithPackage("<dc:title>A Title</dc:title>"));
    EXPECT_TRUE(importer.supportsFileAtPath(book));
    EXPECT_EQ(importer.metaDataOfFileAtPath(book), (Dictionary { { u"kMDItemTitle"_s, u"A Title"_s } }));
}

TEST(MetaDataImporter, GivesNothingForOtherFiles)
{
    const TemporaryFolder folder;
    const LogCapture capture;
    MetaDataImporter importer;
    const String text = folder.write("a.txt", "text");
    EXPECT_FALSE(importer.supportsFileAtPath(text));
    EXPECT_FALSE(importer.metaDataOfFileAtPath(text));
    EXPECT_FALSE(importer.supportsFileAtPath(folder.path("none.epub")));
    EXPECT_EQ(importer.metaDataOfFileAtPath(folder.write("broken.epub", "PK")), Dictionary());
}

} // namespace
} // namespace caddis
