#include "bundles/support/Importer.h"
#include "bundles/support/Properties.h"

#include <exiv2/exiv2.hpp>

namespace caddis::bundles {

namespace {

enum class Kind { String, Strings, Integer, Real, Date };

// Exiv2's keys and what they become; of two rows with one attribute the later one wins where both are there.
struct Row {
    const char* key;
    const char* attribute;
    Kind kind = Kind::String;
};

constexpr Row ExifRows[] = {
    { "Exif.Image.Make", "kMDItemAcquisitionMake" },
    { "Exif.Image.Model", "kMDItemAcquisitionModel" },
    { "Exif.Image.ImageDescription", "kMDItemDescription" },
    { "Exif.Image.Copyright", "kMDItemCopyright" },
    { "Exif.Image.Software", "kMDItemCreator" },
    { "Exif.Image.DateTime", "kMDItemContentModificationDate", Kind::Date },
    { "Exif.Image.XResolution", "kMDItemResolutionWidthDPI", Kind::Real },
    { "Exif.Image.YResolution", "kMDItemResolutionHeightDPI", Kind::Real },
    { "Exif.Photo.DateTimeOriginal", "kMDItemContentCreationDate", Kind::Date },
    { "Exif.Photo.ExposureTime", "kMDItemExposureTimeSeconds", Kind::Real },
    { "Exif.Photo.FNumber", "kMDItemFNumber", Kind::Real },
    { "Exif.Photo.ISOSpeedRatings", "kMDItemISOSpeed", Kind::Integer },
    { "Exif.Photo.FocalLength", "kMDItemFocalLength", Kind::Real },
    { "Exif.Photo.ExposureMode", "kMDItemExposureMode", Kind::Integer },
    { "Exif.Photo.WhiteBalance", "kMDItemWhiteBalance", Kind::Integer },
    { "Exif.GPSInfo.GPSAltitude", "kMDItemAltitude", Kind::Real },
};
constexpr Row IptcRows[] = {
    { "Iptc.Application2.ObjectName", "kMDItemTitle" },
    { "Iptc.Application2.Headline", "kMDItemHeadline" },
    { "Iptc.Application2.Caption", "kMDItemDescription" },
    { "Iptc.Application2.SpecialInstructions", "kMDItemInstructions" },
    { "Iptc.Application2.City", "kMDItemCity" },
    { "Iptc.Application2.ProvinceState", "kMDItemStateOrProvince" },
    { "Iptc.Application2.CountryName", "kMDItemCountry" },
    { "Iptc.Application2.Copyright", "kMDItemCopyright" },
};
constexpr Row XmpRows[] = {
    { "Xmp.dc.title", "kMDItemTitle" },
    { "Xmp.dc.description", "kMDItemDescription" },
    { "Xmp.dc.rights", "kMDItemCopyright" },
    { "Xmp.xmp.Rating", "kMDItemStarRating", Kind::Integer },
    { "Xmp.photoshop.Headline", "kMDItemHeadline" },
    { "Xmp.photoshop.City", "kMDItemCity" },
    { "Xmp.photoshop.State", "kMDItemStateOrProvince" },
    { "Xmp.photoshop.Country", "kMDItemCountry" },
};

// Language alternatives read as "lang=\"x-default\" Text".
std::string withoutLanguage(const std::string& text)
{
    const auto space = text.starts_with("lang=") ? text.find(' ') : text.npos;
    return space == text.npos ? text : text.substr(space + 1);
}

void set(const Row& row, const Exiv2::Metadatum& datum, Attributes& attributes)
{
    if (datum.count() == 0)
        return;
    switch (row.kind) {
    case Kind::String:
        return attributes.setString(row.attribute, withoutLanguage(datum.toString()));
    case Kind::Strings:
        return attributes.addString(row.attribute, datum.toString());
    case Kind::Integer:
        return attributes.setInteger(row.attribute, datum.toLong());
    case Kind::Real:
        return attributes.setReal(row.attribute, datum.toFloat());
    case Kind::Date:
        return attributes.setDate(row.attribute, readDate(datum.toString()));
    }
}

template <typename Key, typename Container, std::size_t Count>
void setRows(const Row (&rows)[Count], const Container& data, Attributes& attributes)
{
    for (const Row& row : rows) {
        const auto found = data.findKey(Key(row.key));
        if (found != data.end())
            set(row, *found, attributes);
    }
}

// Keywords and authors may stand in both places; the newer one, XMP, counts then.
void setLists(const Exiv2::Image& image, Attributes& attributes)
{
    const auto addXmp = [&](const char* key, const char* attribute) {
        const auto found = image.xmpData().findKey(Exiv2::XmpKey(key));
        if (found == image.xmpData().end())
            return false;
        for (long i = 0; i < found->count(); ++i)
            attributes.addString(attribute, found->toString(i));
        return found->count() > 0;
    };
    const auto addIptc = [&](std::string_view key, const char* attribute) {
        for (const Exiv2::Iptcdatum& datum : image.iptcData()) {
            if (datum.key() == key)
                attributes.addString(attribute, datum.toString());
        }
    };
    if (!addXmp("Xmp.dc.subject", "kMDItemKeywords"))
        addIptc("Iptc.Application2.Keywords", "kMDItemKeywords");
    const auto artist = image.exifData().findKey(Exiv2::ExifKey("Exif.Image.Artist"));
    if (addXmp("Xmp.dc.creator", "kMDItemAuthors"))
        return;
    if (artist != image.exifData().end())
        attributes.addString("kMDItemAuthors", artist->toString());
    else
        addIptc("Iptc.Application2.Byline", "kMDItemAuthors");
}

// Degrees from degrees, minutes and seconds; south and west are negative.
std::optional<double> coordinate(const Exiv2::ExifData& exif, const std::string& key)
{
    const auto value = exif.findKey(Exiv2::ExifKey(key));
    const auto hemisphere = exif.findKey(Exiv2::ExifKey(key + "Ref"));
    if (value == exif.end() || value->count() < 3)
        return std::nullopt;
    const double degrees = value->toFloat(0) + value->toFloat(1) / 60.0 + value->toFloat(2) / 3600.0;
    const bool isNegative
        = hemisphere != exif.end() && (hemisphere->toString() == "S" || hemisphere->toString() == "W");
    return isNegative ? -degrees : degrees;
}

void setPlace(const Exiv2::ExifData& exif, Attributes& attributes)
{
    const auto latitude = coordinate(exif, "Exif.GPSInfo.GPSLatitude");
    const auto longitude = coordinate(exif, "Exif.GPSInfo.GPSLongitude");
    if (!latitude || !longitude)
        return;
    attributes.setReal("kMDItemLatitude", *latitude);
    attributes.setReal("kMDItemLongitude", *longitude);
}

// Orientations from 5 on turn the picture by a quarter (EXIF 2.3, 4.6.4).
void setSize(const Exiv2::Image& image, Attributes& attributes)
{
    const auto found = image.exifData().findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    const bool isTurned = found != image.exifData().end() && found->count() > 0 && found->toLong() >= 5;
    const std::int64_t width = image.pixelWidth();
    const std::int64_t height = image.pixelHeight();
    if (width <= 0 || height <= 0)
        return;
    attributes.setInteger("kMDItemPixelWidth", width);
    attributes.setInteger("kMDItemPixelHeight", height);
    attributes.setInteger("kMDItemPixelCount", width * height);
    attributes.setInteger("kMDItemOrientation", (height > width) != isTurned ? 1 : 0);
}

void setFlash(const Exiv2::ExifData& exif, Attributes& attributes)
{
    const auto flash = exif.findKey(Exiv2::ExifKey("Exif.Photo.Flash"));
    if (flash != exif.end() && flash->count() > 0)
        attributes.setBoolean("kMDItemFlashOnOff", (flash->toLong() & 1) != 0);
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    [[maybe_unused]] static const bool isReady = Exiv2::XmpParser::initialize() && Exiv2::enableBMFF(true);
    try {
        const auto image = Exiv2::ImageFactory::open(path);
        image->readMetadata();
        setSize(*image, attributes);
        setRows<Exiv2::ExifKey>(ExifRows, image->exifData(), attributes);
        setRows<Exiv2::IptcKey>(IptcRows, image->iptcData(), attributes);
        setRows<Exiv2::XmpKey>(XmpRows, image->xmpData(), attributes);
        setLists(*image, attributes);
        setPlace(image->exifData(), attributes);
        setFlash(image->exifData(), attributes);
        return true;
    } catch (const Exiv2::AnyError&) {
        return false; // no picture, or a damaged one
    }
}

} // namespace caddis::bundles
