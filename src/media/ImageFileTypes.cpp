#include "media/ImageFileTypes.h"

#include "platform/base/Paths.h"
#include "platform/files/HFSType.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {

namespace {

struct TypeAndExtension {
    std::u16string_view type;
    std::u16string_view extension;
};

constexpr TypeAndExtension hfsTypes[] = {
    { u"'PDF '", u"pdf" },
    { u"'TIFF'", u"tiff" },
    { u"'BMPf'", u"bmp" },
    { u"'BMP '", u"bmp" },
    { u"'GIFf'", u"gif" },
    { u"'JPEG'", u"jpeg" },
    { u"'PICT'", u"pict" },
    { u"'PNGf'", u"png" },
    { u"'qtif'", u"qtif" },
    { u"'TPIC'", u"tga" },
    { u"'.SGI'", u"sgi" },
    { u"'8BPS'", u"psd" },
    { u"'PNTG'", u"pntg" },
    { u"'jp2 '", u"jp2" },
    { u"'FPix'", u"fpix" },
};

// Looked for in the subtype of a MIME type, in this order.
constexpr TypeAndExtension keywords[] = {
    { u"postscript", u"ps" },
    { u"photoshop", u"psd" },
    { u"portable-anymap", u"pnm" },
    { u"portable-bitmap", u"pbm" },
    { u"portable-graymap", u"pgm" },
    { u"portable-pixmap", u"ppm" },
    { u"xbitmap", u"xbm" },
    { u"xpixmap", u"xpm" },
    { u"xwindowdump", u"xwd" },
    { u"svg-xml", u"svg" },
    { u"cis-cod", u"cod" },
    { u"vasa", u"mcf" },
    { u"cmu-raster", u"ras" },
    { u"freehand", u"fh" },
};

struct Signature {
    std::string_view bytes;
    std::u16string_view extension;
};

constexpr Signature signatures[] = {
    { "%PDF", u"pdf" },
    { "ftypjp2", u"jp2" },
    { "\x89PNG", u"png" },
    { "GIF87", u"gif" },
    { "GIF89", u"gif" },
    { "JFIF", u"jpeg" },
    { "JPEG", u"jpeg" },
    { "TIFF", u"tiff" },
    { "Photoshop", u"psd" },
};

// What the image module reads, by its usual extensions.
constexpr const char16_t* readable[] = { u"pdf", u"jpeg", u"jpg", u"jfif", u"jif", u"mpo", u"png", u"apng",
    u"gif", u"tiff", u"tif", u"webp", u"heic", u"heif", u"hif", u"avif", u"jp2", u"jpf", u"jpx", u"j2k",
    u"j2c", u"jxl", u"svg", u"bmp", u"dib", u"ico", u"cur", u"icns", u"psd", u"psb", u"tga", u"pnm", u"pbm",
    u"pgm", u"ppm", u"pam", u"pfm", u"pict", u"pct", u"pic", u"pcx", u"dcx", u"sgi", u"rgb", u"bw", u"dds",
    u"exr", u"hdr", u"ras", u"sun", u"fits", u"xcf", u"dpx", u"wpg", u"xbm", u"xpm", u"jng", u"dng", u"cr2",
    u"crw", u"nef", u"arw", u"pef", u"orf", u"rw2", u"raf", u"mrw", u"srw", u"3fr", u"erf" };

constexpr std::size_t SearchedBytes = 1024;

bool isOneOf(std::u16string_view extension, std::initializer_list<std::u16string_view> wanted)
{
    return std::any_of(
        wanted.begin(), wanted.end(), [&](auto other) { return isEqualNoCase(extension, other); });
}

std::optional<String> extensionForSubtype(std::u16string_view subtype)
{
    if (subtype.size() < 2)
        return std::nullopt;
    if (subtype.starts_with(u"x-")) {
        if (subtype.size() <= 3)
            return std::nullopt;
        subtype.remove_prefix(2);
    }
    if (const std::size_t dot = subtype.rfind(u'.'); dot != subtype.npos)
        subtype.remove_prefix(dot + 1);
    for (const auto& [keyword, extension] : keywords)
        if (containsNoCase(subtype, keyword))
            return String(extension);
    return String(subtype);
}

} // namespace

inline namespace NSBitmapImageRepOstraExtensions {

std::optional<String> pathExtensionForBitmapImageFileType(std::int64_t type)
{
    static constexpr std::u16string_view extensions[] = { u"tiff", u"bmp", u"gif", u"jpg", u"png", u"jp2" };
    if (type < 0 || type >= std::ssize(extensions))
        return std::nullopt;
    return String(extensions[type]);
}

} // namespace NSBitmapImageRepOstraExtensions

inline namespace NSImageOstraExtensions {

std::optional<String> pathExtensionForType(const String& type)
{
    const std::u16string_view text = type;
    if (text.empty())
        return std::nullopt;
    if (text.size() == 6 && text.front() == u'\'' && text.back() == u'\'') {
        const auto* found = std::find_if(std::begin(hfsTypes), std::end(hfsTypes),
            [&](const TypeAndExtension& row) { return row.type == text; });
        return found == std::end(hfsTypes) ? std::nullopt : std::optional(String(found->extension));
    }
    const std::size_t slash = text.find(u'/');
    if (slash == text.npos || slash != text.rfind(u'/'))
        return type;
    return extensionForSubtype(text.substr(slash + 1));
}

const std::vector<String>& ImageFileTypes()
{
    static const std::vector<String> types = [] {
        std::vector<String> all;
        for (const char16_t* extension : readable) {
            std::u16string upper(extension);
            for (char16_t& unit : upper)
                unit = unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
            all.emplace_back(extension);
            all.emplace_back(upper);
        }
        for (const char16_t* extension : { u"jpe", u"JPE", u"ps", u"PS", u"eps", u"EPS", u"ai", u"AI" })
            all.emplace_back(extension);
        return all;
    }();
    return types;
}

bool isImageExtension(const String& extension, const String& type)
{
    const auto& types = ImageFileTypes();
    const auto isKnown = [&](const String& wanted) {
        return std::any_of(
            types.begin(), types.end(), [&](const String& one) { return isEqualNoCase(one, wanted); });
    };
    const auto extensionOfType = type.length() == 6 ? pathExtensionForType(type) : std::nullopt;
    return isKnown(extension) || (extensionOfType && isKnown(*extensionOfType));
}

bool isImageFile(const String& path) { return isImageExtension(pathExtension(path), HFSTypeOfFile(path)); }

// Kept on purpose: a signature may stand anywhere, and the first of the list counts, not the one nearest the
// start.
std::optional<String> pathExtensionForData(const Data& data)
{
    if (data.size() < 4)
        return std::nullopt;
    const std::string_view start = data.chars().substr(0, SearchedBytes);
    for (const auto& [bytes, extension] : signatures)
        if (start.find(bytes) != start.npos)
            return String(extension);
    return std::nullopt;
}

bool isRealPDFExtension(const String& extension, const String& type)
{
    return isEqualNoCase(extension, u"PDF") || type == u"'PDF '";
}

bool isRealPDFFile(const String& path)
{
    return isRealPDFExtension(pathExtension(path), HFSTypeOfFile(path));
}

bool isPostScriptExtension(const String& extension) { return isOneOf(extension, { u"PS", u"EPS", u"AI" }); }

bool isPostScriptFile(const String& path) { return isPostScriptExtension(pathExtension(path)); }

bool isPDFExtension(const String& extension, const String& type)
{
    return isRealPDFExtension(extension, type) || isPostScriptExtension(extension);
}

bool isPDFFile(const String& path) { return isPDFExtension(pathExtension(path), HFSTypeOfFile(path)); }

bool isWebImageExtension(const String& extension)
{
    return isOneOf(extension, { u"jpeg", u"jpg", u"jpe", u"jp2", u"gif", u"png" });
}

std::vector<String> PDFFileTypes()
{
    return { u"'PDF '"_s, u"pdf"_s, u"PDF"_s, u"ps"_s, u"PS"_s, u"eps"_s, u"EPS"_s, u"ai"_s, u"AI"_s };
}

} // namespace NSImageOstraExtensions

} // namespace caddis
