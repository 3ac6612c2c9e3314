#include "platform/image/engine/Formats.h"

#include "platform/image/engine/Readers.h"

#include <algorithm>

namespace caddis::image {

namespace {

using namespace std::string_view_literals;

struct Signature {
    std::string_view bytes; // At the file's start; "?" stands for any byte.
    Format format;
};

constexpr Signature signatures[] = {
    { "\xFF\xD8\xFF", { u"public.jpeg", openJPEG } },
    { "\x89PNG\r\n\x1A\n", { u"public.png", openPNG } },
    { "GIF8?a", { u"com.compuserve.gif", openGIF } },
    { "II*\0"sv, { u"public.tiff", openTIFF } },
    { "MM\0*"sv, { u"public.tiff", openTIFF } },
    { "II+\0"sv, { u"public.tiff", openTIFF } },
    { "MM\0+"sv, { u"public.tiff", openTIFF } },
    { "RIFF????WEBP", { u"org.webmproject.webp", openWebP } },
    { "BM", { u"com.microsoft.bmp", openBMP } },
    { "\0\0\1\0"sv, { u"com.microsoft.ico", openICO } },
    { "\0\0\2\0"sv, { u"com.microsoft.cur", openICO } },
    { "icns", { u"com.apple.icns", openICNS } },
    { "8BPS", { u"com.adobe.photoshop-image", openPSD } },
    { "\0\0\0\x0CjP  \r\n\x87\n"sv, { u"public.jpeg-2000", openJPEG2000 } },
    { "\xFF\x4F\xFF\x51", { u"public.jpeg-2000", openJPEG2000 } },
    { "\xFF\x0A", { u"public.jpeg-xl", openJPEGXL } },
    { "\0\0\0\x0CJXL \r\n\x87\n"sv, { u"public.jpeg-xl", openJPEGXL } },
    { "????ftypavif", { u"public.avif", openHEIF } },
    { "????ftypavis", { u"public.avif", openHEIF } },
    { "????ftyphei?", { u"public.heic", openHEIF } },
    { "????ftyphev?", { u"public.heic", openHEIF } },
    { "????ftypmif1", { u"public.heif", openHEIF } },
    { "????ftypmsf1", { u"public.heif", openHEIF } },
    { "FUJIFILMCCD-RAW", { u"com.fuji.raw-image", openRAF } },
    { "IIRO", { u"com.olympus.raw-image", openRAW } },
    { "IIRS", { u"com.olympus.raw-image", openRAW } },
    { "MMOR", { u"com.olympus.raw-image", openRAW } },
    { "IIU\0"sv, { u"com.panasonic.raw-image", openRAW } },
    { "\0MRM"sv, { u"com.konicaminolta.raw-image", openRAW } },
    { "????ftypcrx ", { u"com.canon.cr3-raw-image", openRAW } },
    { "II\x1A\0\0\0HEAPCCDR"sv, { u"com.canon.crw-raw-image", openRAW } },
    { "\x0A?\x01", { u"com.zsoft.pcx", nullptr, "PCX" } },
    { "\xB1\x68\xDE\x3A", { u"com.zsoft.dcx", nullptr, "DCX" } },
    { "\x01\xDA", { u"com.sgi.sgi-image", nullptr, "SGI" } },
    { "DDS ", { u"com.microsoft.dds", nullptr, "DDS" } },
    { "\x76\x2F\x31\x01", { u"com.ilm.openexr-image", nullptr, "EXR" } },
    { "#?RADIANCE", { u"public.radiance", nullptr, "HDR" } },
    { "#?RGBE", { u"public.radiance", nullptr, "HDR" } },
    { "\x59\xA6\x6A\x95", { u"com.sun.raster", nullptr, "SUN" } },
    { "SIMPLE  =", { u"gov.nasa.fits", nullptr, "FITS" } },
    { "gimp xcf ", { u"org.gimp.xcf", nullptr, "XCF" } },
    { "SDPX", { u"org.smpte.dpx", nullptr, "DPX" } },
    { "XPDS", { u"org.smpte.dpx", nullptr, "DPX" } },
    { "\xFFWPC", { u"com.corel.wpg", nullptr, "WPG" } },
    { "\x8BJNG", { u"org.libpng.jng", nullptr, "JNG" } },
    { "\x1F\x8B\x08", { u"public.svg-image", openSVGZ } },
    { "????idsc", { u"com.apple.quicktime-image", openQTIF } },
    { "????idat", { u"com.apple.quicktime-image", openQTIF } },
    { "/* XPM */", { u"public.xpixmap", nullptr, "XPM" } },
};

constexpr Format portableMap { u"public.pbm", openPNM };
constexpr Format vector { u"public.svg-image", openSVG };
constexpr Format raw { u"public.camera-raw-image", openRAW };
constexpr Format pict { u"com.apple.pict", openPICT };
constexpr Format xbitmap { u"public.xbitmap", nullptr, "XBM" };
constexpr Format targa { u"com.truevision.tga-image", openTGA };

bool isAtStart(std::string_view signature, std::string_view bytes)
{
    return bytes.size() >= signature.size()
        && std::equal(signature.begin(), signature.end(), bytes.begin(),
            [](char wanted, char byte) { return wanted == '?' || wanted == byte; });
}

// A TGA file without a palette starts like a cursor file without cursors.
bool isEmptyIcon(std::string_view bytes) { return bytes.substr(4).starts_with("\0\0"sv); }

bool isSpace(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

bool isPNM(std::string_view bytes)
{
    if (bytes.size() < 8 || bytes[0] != 'P' || !isSpace(bytes[2]))
        return false;
    return (bytes[1] >= '1' && bytes[1] <= '7') || bytes[1] == 'F' || bytes[1] == 'f';
}

// A picture's version operator stands behind 512 bytes of anything, its size and its frame. Inside Macintosh,
// Imaging With QuickDraw, A.
bool isPICT(std::string_view bytes)
{
    const std::string_view version = bytes.substr(std::min<std::size_t>(bytes.size(), 522), 4);
    return version == "\0\x11\x02\xFF"sv || version.starts_with("\x11\x01");
}

// C source: "#define NAME_width 16".
bool isXBM(std::string_view bytes)
{
    const std::size_t width = bytes.substr(0, 1024).find("_width ");
    return bytes.starts_with("#define ") && width != bytes.npos;
}

} // namespace

bool isSVG(std::string_view bytes)
{
    constexpr std::size_t searched = 64 << 10;
    bytes = bytes.substr(0, searched);
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    const auto skipTo = [&](std::string_view end) {
        const std::size_t found = bytes.find(end);
        bytes.remove_prefix(found == bytes.npos ? bytes.size() : found + end.size());
    };
    while (!bytes.empty()) {
        if (isSpace(bytes.front()))
            bytes.remove_prefix(1);
        else if (bytes.starts_with("<!--"))
            skipTo("-->");
        else if (bytes.starts_with("<?"))
            skipTo("?>");
        else if (bytes.starts_with("<!"))
            skipTo(bytes.substr(0, bytes.find('>')).find('[') == bytes.npos ? ">" : "]>");
        else
            break;
    }
    const std::string_view name = bytes.substr(0, bytes.find_first_of(" \t\r\n>/"));
    return name == "<svg" || (name.starts_with('<') && name.ends_with(":svg"));
}

const Format* formatOf(std::string_view bytes)
{
    for (const Signature& signature : signatures)
        if (isAtStart(signature.bytes, bytes) && !(signature.format.open == openICO && isEmptyIcon(bytes)))
            return signature.format.open == openTIFF && isRawTIFF(bytes) ? &raw : &signature.format;
    if (isPNM(bytes))
        return &portableMap;
    if (isSVG(bytes))
        return &vector;
    if (isXBM(bytes))
        return &xbitmap;
    if (isPICT(bytes))
        return &pict;
    return isTGA(bytes) ? &targa : nullptr; // It has no signature, so it comes last.
}

std::unique_ptr<Reader> opened(const Format& format, const Data& data)
{
    return format.rareCoder ? openRare(format.rareCoder, data) : format.open(data);
}

} // namespace caddis::image
