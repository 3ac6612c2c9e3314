#include "media/PDFFilters.h"

#include "media/PDFText.h"
#include "platform/files/PropertyList.h"
#include "support/PDFBuilder.h"
#include "support/TemporaryFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <regex>

namespace caddis {
namespace {

// A page with a picture of 200 by 100 pixels, drawn 144 points wide: 100 pixels an inch.
PDFBuilder withPicture(const std::string& entries = "/ColorSpace /DeviceRGB")
{
    PDFBuilder builder;
    std::string samples;
    for (int sample = 0; sample < 200 * 100 * 3; ++sample)
        samples += static_cast<char>(sample * 7 % 251);
    const int picture = builder.stream(
        samples, "/Type /XObject /Subtype /Image /Width 200 /Height 100 /BitsPerComponent 8 " + entries);
    const int form = builder.stream("q 144 0 0 72 0 0 cm /P Do Q Q",
        "/Subtype /Form /BBox [0 0 612 792] /Resources << /XObject << /P " + PDFBuilder::reference(picture)
            + " >> >>");
    builder.resources("/XObject << /F " + PDFBuilder::reference(form) + " >>");
    builder.page("q 0.5 0 0 0.5 9 9 cm /F Do Q /F Do BT /F1 12 Tf 72 700 Td (caption) Tj ET");
    return builder;
}

std::unique_ptr<PDFDocument> documentOf(const PDFBuilder& builder)
{
    return PDFDocument::initWithData(builder.data());
}

// "200x100" and how the picture is packed; the dictionary of a picture is never packed itself.
std::string pictureIn(const std::optional<Data>& data)
{
    if (!data || !PDFDocument::initWithData(*data))
        return "nil";
    const std::string bytes(data->chars());
    std::smatch found;
    const auto entry = [&](const char* pattern) {
        return std::regex_search(bytes, found, std::regex(pattern)) ? found[1].str() : std::string();
    };
    return entry("/Width (\\d+)") + "x" + entry("/Height (\\d+)") + entry("/Filter (/DCTDecode)");
}

String filterText(const char* settings)
{
    return String::fromUtf8(
        std::string("{ Name = Mine; FilterData = { ColorSettings = { ") + settings + " }; }; }");
}

std::optional<QuartzFilter> filterOf(const char* settings)
{
    const auto list = PropertyList::readOldStyle(filterText(settings));
    return QuartzFilter::quartzFilterWithProperties(*list->as<Dictionary>());
}

TEST(PDFFilters, PicturesBecomeSmallerAndTheRestStays)
{
    const auto document = documentOf(withPicture());
    EXPECT_EQ(pictureIn(document->dataRepresentation()), "200x100");
    const auto data = dataRepresentationUsingQuartzFilterCompression(*document, 0.5);
    EXPECT_EQ(pictureIn(data), "200x100/DCTDecode");
    EXPECT_LT(data->size(), document->dataRepresentation().size() / 2);
    EXPECT_EQ(fixedAndNormalizedString(*PDFDocument::initWithData(*data)), u"caption\n"_s);
    const auto half = [&](Interpolation interpolation) {
        return dataRepresentationUsingQuartzFilterCompression(*document, 0.5, 0, 0.5, interpolation);
    };
    EXPECT_EQ(pictureIn(half(Interpolation::None)), "100x50/DCTDecode");
    EXPECT_EQ(pictureIn(half(Interpolation::Average)), "100x50/DCTDecode");
    EXPECT_FALSE(*half(Interpolation::None) == *half(Interpolation::Average));
}

TEST(PDFFilters, ResolutionIsThatOfTheLargestPlace)
{
    const auto document = documentOf(withPicture());
    const auto at = [&](double resolution) {
        return pictureIn(dataRepresentationUsingQuartzFilterCompression(*document, 0.5, resolution));
    };
    EXPECT_EQ(at(50), "100x50/DCTDecode");
    EXPECT_EQ(at(25), "50x25/DCTDecode");
    EXPECT_EQ(at(300), "200x100/DCTDecode");
}

TEST(PDFFilters, PicturesThatWouldChangeStayAsTheyAre)
{
    const auto filtered = [](const std::string& entries) {
        return pictureIn(
            dataRepresentationUsingQuartzFilterCompression(*documentOf(withPicture(entries)), 0.5, 0, 0.5));
    };
    EXPECT_EQ(filtered("/ColorSpace /DeviceRGB /Mask [0 1 0 1 0 1]"), "200x100") << "a transparent colour";
    EXPECT_EQ(filtered("/ColorSpace [/Indexed /DeviceRGB 1 <000000FFFFFF>]"), "200x100");
    EXPECT_EQ(filtered("/ColorSpace /DeviceCMYK"), "200x100") << "too few samples";
    EXPECT_EQ(filtered("/ColorSpace /DeviceGray"), "200x100") << "too many";
    EXPECT_EQ(filtered("/ColorSpace [/CalRGB << >>]"), "100x50/DCTDecode");
}

TEST(PDFFilters, AFilterFileSaysHowSmall)
{
    const auto filter
        = filterOf("DocumentColorSettings = { ImageSettings = { ImageCompression = ImageJPEGCompress; "
                   "ImageScaleSettings = { ImageScaleFactor = half; }; }; };");
    ASSERT_TRUE(filter);
    EXPECT_EQ(filter->name, u"Mine"_s);
    EXPECT_EQ(filter->images.quality, 0.5);
    EXPECT_EQ(filter->images.scale, 1) << "a text is no number";
    const auto lossless = filterOf("ImageSettings = { };");
    ASSERT_TRUE(lossless);
    EXPECT_FALSE(lossless->images.quality);
    EXPECT_FALSE(filterOf("TransferFunctions = { };")) << "colours alone";
}

TEST(PDFFilters, FiltersAreFoundByName)
{
    const TemporaryFolder folder;
    setenv("CADDIS_ROOT", folder.path().c_str(), 1);
    folder.write("Library/Filters/Small.qfilter",
        R"(<plist version="1.0"><dict><key>Name</key><string>Tiny</string><key>FilterData</key><dict>
        <key>ColorSettings</key><dict><key>ImageSettings</key><dict><key>ImageCompression</key>
        <string>ImageJPEGCompress</string><key>Compression Quality</key><real>0.2</real>
        <key>ImageScaleSettings</key><dict><key>ImageSizeMax</key><integer>50</integer><key>ImageSizeMin</key>
        <integer>20</integer><key>ImageScaleInterpolate</key><false/></dict></dict></dict></dict></dict></plist>)");
    folder.write("Library/Filters/Broken.qfilter", "no list");
    const auto document = documentOf(withPicture());
    const auto named = [&](const char16_t* name) {
        return pictureIn(dataRepresentationUsingQuartzFilterNamed(*document, String(name)));
    };
    EXPECT_EQ(named(u"Small"), "50x25/DCTDecode");
    EXPECT_EQ(named(u"Tiny"), "50x25/DCTDecode");
    EXPECT_EQ(named(u"Broken"), "nil");
    EXPECT_EQ(named(u"None"), "nil");
    EXPECT_EQ(named(u"../Filters/Small"), "nil") << "a name is no path";
    unsetenv("CADDIS_ROOT");
    EXPECT_EQ(named(u"Reduce File Size"), "200x100/DCTDecode") << "the filter that comes along";
}

} // namespace
} // namespace caddis
