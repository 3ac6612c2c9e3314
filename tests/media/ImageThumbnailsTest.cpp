#include "media/ImageThumbnails.h"

#include "support/JPEGBuilder.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(ImageThumbnails, FilesGiveAThumbnailTheirPropertiesAndTheirFrames)
{
    const TemporaryFolder folder;
    const String path = folder.write(
        "a.jpg", jpegFile(100, 40, [](unsigned, unsigned) { return 0xFF0000U; }, { .orientation = 6 }));
    const FileThumbnail upright = thumbnailForFile(path, 50, { .withTransform = true });
    ASSERT_TRUE(upright.image);
    EXPECT_EQ(upright.image->size(), (Size { 20, 50 }));
    EXPECT_EQ(*upright.properties.find(u"PixelWidth"), Value(100));
    EXPECT_EQ(upright.frames, 1U);
    EXPECT_EQ(thumbnailForFile(path, 50).image->size(), (Size { 50, 20 }));
}

TEST(ImageThumbnails, NothingComesOfNothing)
{
    const TemporaryFolder folder;
    const String path = folder.write("a.jpg", jpegFile(8, 8, [](unsigned, unsigned) { return 0U; }));
    EXPECT_FALSE(thumbnailForFile(path, 0).image || thumbnailForFile(path, -1).image);
    EXPECT_EQ(thumbnailForFile(path, 0).frames, 1U);
    EXPECT_FALSE(thumbnailForFile(folder.path("none"), 8).image || thumbnailForFile(String(), 8).image);
    EXPECT_EQ(thumbnailForFile(folder.write("b.jpg", "text"), 8).frames, 0U);
}

} // namespace
} // namespace caddis
