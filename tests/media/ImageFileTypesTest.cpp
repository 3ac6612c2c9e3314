#include "media/ImageFileTypes.h"
#include "media/ImageSizes.h"

#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace caddis {
namespace {

std::string forType(std::u16string_view type)
{
    return pathExtensionForType(String(type)).value_or(u"nil"_s).utf8();
}

std::string forData(std::string_view bytes)
{
    return pathExtensionForData(Data::copyOf(bytes)).value_or(u"nil"_s).utf8();
}

TEST(ImageSizes, ThumbnailsAreNeverEnlargedAndRoundedDown)
{
    const auto box = [](double wide, double high) { return thumb({ 256, 256 }, { wide, high }); };
    EXPECT_EQ(box(100, 50), (Size { 100, 50 }));
    EXPECT_EQ(box(100.5, 50.25), (Size { 100.5, 50.25 }));
    EXPECT_EQ(box(1000, 3000), (Size { 85, 256 }));
    EXPECT_EQ(box(3000, 1), (Size { 256, 1 }));
    EXPECT_EQ(scaledSize({ 5, 7 }, 0.5), (Size { 2, 3 }));
    EXPECT_EQ(scaledSize({ 5, 7 }, 0), (Size { 5, 7 }));
}

TEST(ImageSizes, TallPagesShowTheirTopSquare)
{
    const PDFThumb page = PDFThumbSize({ 128, 128 }, { 600, 2000 }, true);
    EXPECT_EQ(page.size, (Size { 128, 128 }));
    EXPECT_EQ(page.fromRect, (Rect { 0, 1400, 600, 600 }));
    const PDFThumb bitmap = PDFThumbSize({ 128, 128 }, { 600, 2000 }, false);
    EXPECT_EQ(bitmap.size, (Size { 38, 128 }));
    EXPECT_EQ(bitmap.fromRect, Rect());
}

TEST(ImageFileTypes, HFSAndMIMETypesGiveExtensions)
{
    EXPECT_EQ(forType(u"'JPEG'") + forType(u"'BMP '") + forType(u"'nope'"), "jpegbmpnil");
    EXPECT_EQ(forType(u"image/x-portable-pixmap"), "ppm");
    EXPECT_EQ(forType(u"image/vnd.adobe.photoshop"), "psd");
    EXPECT_EQ(forType(u"image/png") + " " + forType(u"image/x-Foo"), "png Foo");
    EXPECT_EQ(
        forType(u"image/x-") + forType(u"image/x-a") + forType(u"image/a") + forType(u""), "nilnilnilnil");
    EXPECT_EQ(forType(u"public.jpeg") + " " + forType(u"a/b/c"), "public.jpeg a/b/c");
    EXPECT_EQ(pathExtensionForBitmapImageFileType(3), u"jpg"_s);
    EXPECT_FALSE(pathExtensionForBitmapImageFileType(6) || pathExtensionForBitmapImageFileType(-1));
}

TEST(ImageFileTypes, TheFirstSignatureOfTheListCountsWhereverItStands)
{
    EXPECT_EQ(forData("GIF89a then %PDF"), "pdf");
    std::string late(1024, ' ');
    late.replace(1020, 4, "%PDF");
    EXPECT_EQ(forData(late), "pdf");
    EXPECT_EQ(forData(" " + late), "nil");
    EXPECT_EQ(forData("GIF") + forData("\xFF\xD8\xFF\xE1 Exif"), "nilnil");
    EXPECT_EQ(forData("JFIF Photoshop"), "jpeg");
}

TEST(ImageFileTypes, NamesTellKindsApart)
{
    EXPECT_TRUE(isRealPDFExtension(u"Pdf"_s, {}) && isRealPDFExtension(u"x"_s, u"'PDF '"_s));
    EXPECT_FALSE(isRealPDFExtension(u"x"_s, u"'pdf '"_s) || isRealPDFExtension(u"eps"_s, {}));
    EXPECT_TRUE(isPDFExtension(u"eps"_s, {}) && isPostScriptFile(u"/a/b.AI"_s));
    EXPECT_TRUE(isWebImageExtension(u"JPE"_s) && !isWebImageExtension(u"tiff"_s));
    EXPECT_TRUE(
        isPDFBundle(u"/a.PDFD"_s) && isPDFBundleExtension(u"lpdf"_s) && !isSkimPDFBundle(u"/a.lpdf"_s));
}

TEST(ImageFileTypes, PicturesAreKnownByExtensionOrType)
{
    EXPECT_TRUE(
        isImageExtension(u"Jpg"_s, {}) && isImageExtension(u"eps"_s, {}) && isImageFile(u"/a/b.HEIC"_s));
    EXPECT_TRUE(isImageExtension({}, u"'PICT'"_s) && isImageExtension(u"dat"_s, u"'8BPS'"_s));
    EXPECT_FALSE(
        isImageExtension(u"txt"_s, {}) || isImageExtension({}, u"'TEXT'"_s) || isImageFile(u"/a/jpg"_s));
    const auto& types = ImageFileTypes();
    for (const char16_t* type : { u"jpe", u"JPE", u"ps", u"AI", u"png", u"PNG" })
        EXPECT_EQ(std::count(types.begin(), types.end(), String(type)), 1);
}

TEST(ImageFileTypes, PDFBundlesLeadToTheirPDF)
{
    const TemporaryFolder folder;
    EXPECT_EQ(pathToPDF(u"/a/b.pdf"_s), u"/a/b.pdf"_s);
    const String other = folder.write("notes.pdfd/a.pdf", "%PDF");
    EXPECT_EQ(pathToPDF(folder.path("notes.pdfd")), other);
    const String own = folder.write("notes.pdfd/notes.pdf", "%PDF");
    EXPECT_EQ(pathToPDF(folder.path("notes.pdfd")), own);
    folder.write("empty.pdfd/x.txt", "");
    EXPECT_EQ(pathToPDF(folder.path("empty.pdfd")), folder.path("empty.pdfd"));
    const String english = folder.write("guide.lpdf/Contents/Resources/en.lproj/guide.pdf", "%PDF");
    EXPECT_EQ(pathToPDF(folder.path("guide.lpdf")), english);
    EXPECT_FALSE(pathToPDF(folder.path("none.lpdf")));
}

} // namespace
} // namespace caddis
