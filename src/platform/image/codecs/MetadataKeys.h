#pragma once

#include <string_view>

namespace caddis::image {

/// How an entry's value is told.
enum class Form {
    Text,
    Number, ///< an integer, or a rational as a double
    Numbers, ///< an array of such
    Bytes, ///< an array of the bytes as integers
    Version, ///< "0232": an array of the digits as integers, leading zeros left out
    Degrees, ///< three rationals as one double
    Time, ///< three rationals as "hh:mm:ss"
    Texts, ///< an array of all the entries of that key
};

struct MetadataKey {
    const char* key; ///< Exiv2's
    const char16_t* group; ///< the dictionary that it goes into
    const char16_t* name; ///< its key there
    Form form;
};

// Of Exif: CIPA DC-008 (2.32). Of IPTC: IIM 4.2, record 2.
inline constexpr MetadataKey metadataKeys[] = {
    { "Exif.Image.Compression", u"{TIFF}", u"Compression", Form::Number },
    { "Exif.Image.PhotometricInterpretation", u"{TIFF}", u"PhotometricInterpretation", Form::Number },
    { "Exif.Image.DocumentName", u"{TIFF}", u"DocumentName", Form::Text },
    { "Exif.Image.ImageDescription", u"{TIFF}", u"ImageDescription", Form::Text },
    { "Exif.Image.Make", u"{TIFF}", u"Make", Form::Text },
    { "Exif.Image.Model", u"{TIFF}", u"Model", Form::Text },
    { "Exif.Image.Orientation", u"{TIFF}", u"Orientation", Form::Number },
    { "Exif.Image.XResolution", u"{TIFF}", u"XResolution", Form::Number },
    { "Exif.Image.YResolution", u"{TIFF}", u"YResolution", Form::Number },
    { "Exif.Image.ResolutionUnit", u"{TIFF}", u"ResolutionUnit", Form::Number },
    { "Exif.Image.Software", u"{TIFF}", u"Software", Form::Text },
    { "Exif.Image.DateTime", u"{TIFF}", u"DateTime", Form::Text },
    { "Exif.Image.Artist", u"{TIFF}", u"Artist", Form::Text },
    { "Exif.Image.HostComputer", u"{TIFF}", u"HostComputer", Form::Text },
    { "Exif.Image.Copyright", u"{TIFF}", u"Copyright", Form::Text },

    { "Exif.Photo.ExposureTime", u"{Exif}", u"ExposureTime", Form::Number },
    { "Exif.Photo.FNumber", u"{Exif}", u"FNumber", Form::Number },
    { "Exif.Photo.ExposureProgram", u"{Exif}", u"ExposureProgram", Form::Number },
    { "Exif.Photo.ISOSpeedRatings", u"{Exif}", u"ISOSpeedRatings", Form::Numbers },
    { "Exif.Photo.ExifVersion", u"{Exif}", u"ExifVersion", Form::Version },
    { "Exif.Photo.DateTimeOriginal", u"{Exif}", u"DateTimeOriginal", Form::Text },
    { "Exif.Photo.DateTimeDigitized", u"{Exif}", u"DateTimeDigitized", Form::Text },
    { "Exif.Photo.SubSecTimeOriginal", u"{Exif}", u"SubsecTimeOriginal", Form::Text },
    { "Exif.Photo.ComponentsConfiguration", u"{Exif}", u"ComponentsConfiguration", Form::Bytes },
    { "Exif.Photo.CompressedBitsPerPixel", u"{Exif}", u"CompressedBitsPerPixel", Form::Number },
    { "Exif.Photo.ShutterSpeedValue", u"{Exif}", u"ShutterSpeedValue", Form::Number },
    { "Exif.Photo.ApertureValue", u"{Exif}", u"ApertureValue", Form::Number },
    { "Exif.Photo.BrightnessValue", u"{Exif}", u"BrightnessValue", Form::Number },
    { "Exif.Photo.ExposureBiasValue", u"{Exif}", u"ExposureBiasValue", Form::Number },
    { "Exif.Photo.MaxApertureValue", u"{Exif}", u"MaxApertureValue", Form::Number },
    { "Exif.Photo.SubjectDistance", u"{Exif}", u"SubjectDistance", Form::Number },
    { "Exif.Photo.MeteringMode", u"{Exif}", u"MeteringMode", Form::Number },
    { "Exif.Photo.LightSource", u"{Exif}", u"LightSource", Form::Number },
    { "Exif.Photo.Flash", u"{Exif}", u"Flash", Form::Number },
    { "Exif.Photo.FocalLength", u"{Exif}", u"FocalLength", Form::Number },
    { "Exif.Photo.SubjectArea", u"{Exif}", u"SubjectArea", Form::Numbers },
    { "Exif.Photo.UserComment", u"{Exif}", u"UserComment", Form::Text },
    { "Exif.Photo.FlashpixVersion", u"{Exif}", u"FlashPixVersion", Form::Version },
    { "Exif.Photo.ColorSpace", u"{Exif}", u"ColorSpace", Form::Number },
    { "Exif.Photo.PixelXDimension", u"{Exif}", u"PixelXDimension", Form::Number },
    { "Exif.Photo.PixelYDimension", u"{Exif}", u"PixelYDimension", Form::Number },
    { "Exif.Photo.SensingMethod", u"{Exif}", u"SensingMethod", Form::Number },
    { "Exif.Photo.FileSource", u"{Exif}", u"FileSource", Form::Number },
    { "Exif.Photo.SceneType", u"{Exif}", u"SceneType", Form::Number },
    { "Exif.Photo.CustomRendered", u"{Exif}", u"CustomRendered", Form::Number },
    { "Exif.Photo.ExposureMode", u"{Exif}", u"ExposureMode", Form::Number },
    { "Exif.Photo.WhiteBalance", u"{Exif}", u"WhiteBalance", Form::Number },
    { "Exif.Photo.DigitalZoomRatio", u"{Exif}", u"DigitalZoomRatio", Form::Number },
    { "Exif.Photo.FocalLengthIn35mmFilm", u"{Exif}", u"FocalLenIn35mmFilm", Form::Number },
    { "Exif.Photo.SceneCaptureType", u"{Exif}", u"SceneCaptureType", Form::Number },
    { "Exif.Photo.GainControl", u"{Exif}", u"GainControl", Form::Number },
    { "Exif.Photo.Contrast", u"{Exif}", u"Contrast", Form::Number },
    { "Exif.Photo.Saturation", u"{Exif}", u"Saturation", Form::Number },
    { "Exif.Photo.Sharpness", u"{Exif}", u"Sharpness", Form::Number },
    { "Exif.Photo.SubjectDistanceRange", u"{Exif}", u"SubjectDistRange", Form::Number },
    { "Exif.Photo.ImageUniqueID", u"{Exif}", u"ImageUniqueID", Form::Text },
    { "Exif.Photo.BodySerialNumber", u"{Exif}", u"BodySerialNumber", Form::Text },
    { "Exif.Photo.LensSpecification", u"{Exif}", u"LensSpecification", Form::Numbers },
    { "Exif.Photo.LensMake", u"{Exif}", u"LensMake", Form::Text },
    { "Exif.Photo.LensModel", u"{Exif}", u"LensModel", Form::Text },
    { "Exif.Photo.LensSerialNumber", u"{Exif}", u"LensSerialNumber", Form::Text },

    { "Exif.GPSInfo.GPSVersionID", u"{GPS}", u"GPSVersion", Form::Bytes },
    { "Exif.GPSInfo.GPSLatitudeRef", u"{GPS}", u"LatitudeRef", Form::Text },
    { "Exif.GPSInfo.GPSLatitude", u"{GPS}", u"Latitude", Form::Degrees },
    { "Exif.GPSInfo.GPSLongitudeRef", u"{GPS}", u"LongitudeRef", Form::Text },
    { "Exif.GPSInfo.GPSLongitude", u"{GPS}", u"Longitude", Form::Degrees },
    { "Exif.GPSInfo.GPSAltitudeRef", u"{GPS}", u"AltitudeRef", Form::Number },
    { "Exif.GPSInfo.GPSAltitude", u"{GPS}", u"Altitude", Form::Number },
    { "Exif.GPSInfo.GPSTimeStamp", u"{GPS}", u"TimeStamp", Form::Time },
    { "Exif.GPSInfo.GPSDateStamp", u"{GPS}", u"DateStamp", Form::Text },
    { "Exif.GPSInfo.GPSSpeedRef", u"{GPS}", u"SpeedRef", Form::Text },
    { "Exif.GPSInfo.GPSSpeed", u"{GPS}", u"Speed", Form::Number },
    { "Exif.GPSInfo.GPSTrackRef", u"{GPS}", u"TrackRef", Form::Text },
    { "Exif.GPSInfo.GPSTrack", u"{GPS}", u"Track", Form::Number },
    { "Exif.GPSInfo.GPSImgDirectionRef", u"{GPS}", u"ImgDirectionRef", Form::Text },
    { "Exif.GPSInfo.GPSImgDirection", u"{GPS}", u"ImgDirection", Form::Number },
    { "Exif.GPSInfo.GPSDestBearingRef", u"{GPS}", u"DestBearingRef", Form::Text },
    { "Exif.GPSInfo.GPSDestBearing", u"{GPS}", u"DestBearing", Form::Number },
    { "Exif.GPSInfo.GPSMapDatum", u"{GPS}", u"MapDatum", Form::Text },
    { "Exif.GPSInfo.GPSHPositioningError", u"{GPS}", u"HPositioningError", Form::Number },

    { "Iptc.Application2.ObjectName", u"{IPTC}", u"ObjectName", Form::Text },
    { "Iptc.Application2.Keywords", u"{IPTC}", u"Keywords", Form::Texts },
    { "Iptc.Application2.Byline", u"{IPTC}", u"Byline", Form::Texts },
    { "Iptc.Application2.BylineTitle", u"{IPTC}", u"BylineTitle", Form::Text },
    { "Iptc.Application2.City", u"{IPTC}", u"City", Form::Text },
    { "Iptc.Application2.SubLocation", u"{IPTC}", u"SubLocation", Form::Text },
    { "Iptc.Application2.ProvinceState", u"{IPTC}", u"Province/State", Form::Text },
    { "Iptc.Application2.CountryCode", u"{IPTC}", u"Country/PrimaryLocationCode", Form::Text },
    { "Iptc.Application2.CountryName", u"{IPTC}", u"Country/PrimaryLocationName", Form::Text },
    { "Iptc.Application2.Headline", u"{IPTC}", u"Headline", Form::Text },
    { "Iptc.Application2.Credit", u"{IPTC}", u"Credit", Form::Text },
    { "Iptc.Application2.Source", u"{IPTC}", u"Source", Form::Text },
    { "Iptc.Application2.Copyright", u"{IPTC}", u"CopyrightNotice", Form::Text },
    { "Iptc.Application2.Caption", u"{IPTC}", u"Caption/Abstract", Form::Text },
    { "Iptc.Application2.Writer", u"{IPTC}", u"Writer/Editor", Form::Text },
    { "Iptc.Application2.DateCreated", u"{IPTC}", u"DateCreated", Form::Text },
    { "Iptc.Application2.TimeCreated", u"{IPTC}", u"TimeCreated", Form::Text },
    { "Iptc.Application2.DigitizationDate", u"{IPTC}", u"DigitalCreationDate", Form::Text },
    { "Iptc.Application2.DigitizationTime", u"{IPTC}", u"DigitalCreationTime", Form::Text },
    { "Iptc.Application2.Category", u"{IPTC}", u"Category", Form::Text },
    { "Iptc.Application2.SuppCategory", u"{IPTC}", u"SupplementalCategory", Form::Text },
    { "Iptc.Application2.SpecialInstructions", u"{IPTC}", u"SpecialInstructions", Form::Text },
    { "Iptc.Application2.Urgency", u"{IPTC}", u"Urgency", Form::Text },
};

} // namespace caddis::image
