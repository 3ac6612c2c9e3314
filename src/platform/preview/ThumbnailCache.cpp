#include "platform/preview/ThumbnailCache.h"

#include "platform/base/Format.h"
#include "platform/base/URL.h"
#include "platform/files/FileSystem.h"
#include "platform/preview/MD5.h"

#include <sys/stat.h>

namespace caddis {

namespace {

using namespace std::string_view_literals;

struct Bucket {
    const char16_t* name;
    double side; // Pixels.
};

constexpr Bucket buckets[]
    = { { u"normal", 128 }, { u"large", 256 }, { u"x-large", 512 }, { u"xx-large", 1024 } };
constexpr std::size_t LargestFile = 16 << 20;

// As the desktop's library writes it, which escapes one character more.
std::string sharedURI(const String& path)
{
    std::string uri;
    for (const char byte : URL::fileURLWithPath(path).absoluteString().utf8())
        uri += byte == ';' ? std::string("%3B") : std::string(1, byte);
    return uri;
}

std::optional<std::string> modificationTime(const String& path)
{
    struct stat status = {};
    const auto name = fileSystemRepresentation(path);
    if (!name || stat(name->c_str(), &status) != 0)
        return std::nullopt;
    return std::to_string(status.st_mtim.tv_sec);
}

std::size_t bigEndian32(std::string_view bytes)
{
    std::size_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number = number << 8 | static_cast<std::uint8_t>(bytes[i]);
    return number;
}

} // namespace

std::optional<std::string> textInPNG(const Data& png, std::string_view keyword)
{
    constexpr std::string_view Signature = "\x89PNG\r\n\x1A\n"sv;
    constexpr std::size_t HeaderSize = 8; // Length and kind.
    std::string_view rest = png.chars();
    if (!rest.starts_with(Signature))
        return std::nullopt;
    rest.remove_prefix(Signature.size());
    while (rest.size() >= HeaderSize) {
        const std::size_t length = bigEndian32(rest);
        const std::string_view kind = rest.substr(4, 4);
        const std::string_view body = rest.substr(HeaderSize, length);
        if (kind == "tEXt"sv && body.size() == length && body.starts_with(keyword)
            && body.substr(keyword.size()).starts_with('\0'))
            return std::string(body.substr(keyword.size() + 1));
        rest.remove_prefix(std::min(HeaderSize + length + 4, rest.size())); // The checksum comes last.
    }
    return std::nullopt;
}

std::optional<Data> cachedThumbnail(const String& cache, const String& path, double side)
{
    const auto time = modificationTime(path);
    if (!time)
        return std::nullopt;
    const std::string uri = sharedURI(path);
    const String name = String::fromLatin1(MD5(uri));
    for (const Bucket& bucket : buckets) {
        const bool isLast = &bucket == std::end(buckets) - 1;
        if (bucket.side < side && !isLast)
            continue;
        const String file = format(u"%@/thumbnails/%@/%@.png", cache, String(bucket.name), name);
        auto png
            = FileSystem::sizeOfFile(file) <= LargestFile ? FileSystem::contentsOfFile(file) : std::nullopt;
        if (png && textInPNG(*png, "Thumb::URI") == uri && textInPNG(*png, "Thumb::MTime") == time)
            return png;
    }
    return std::nullopt;
}

} // namespace caddis
