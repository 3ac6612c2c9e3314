#include "platform/preview/EmbeddedThumbnail.h"

#include "platform/base/Format.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/preview/AsciiCase.h"
#include "platform/zip/ZipReader.h"

#include <algorithm>

namespace caddis {

namespace {

// Where they lie, best first, in lower case.
constexpr std::string_view places[] = {
    "thumbnails/thumbnail.png", // OpenDocument 1.3, part 2, 3.7
    "docprops/thumbnail.jpeg", // ECMA-376, part 2, as the usual programs name it
    "docprops/thumbnail.jpg", "docprops/thumbnail.png",
    "mergedimage.png", // OpenRaster: the picture itself
    "preview.jpg", // pages, numbers, key
    "quicklook/preview.pdf", "quicklook/preview.jpg", "quicklook/preview.png", "quicklook/thumbnail.jpg",
    "quicklook/thumbnail.png", "preview-web.jpg", "previews/preview.png", "preview.png",
    "metadata/thumbnail.png", // 3MF
    "metadata/thumbnail.jpeg", // XPS
};
constexpr std::size_t MostThumbnails = 3;
constexpr std::uint64_t LargestMember = 64 << 20; // Bytes.

bool isPictureName(std::string_view name)
{
    return std::ranges::any_of(
        std::initializer_list<std::string_view> { ".jpg", ".jpeg", ".png", ".gif", ".webp" },
        [&](std::string_view extension) { return name.ends_with(extension); });
}

// The names of the members to read, best first. In a comic, which is nothing but pictures, it is the first
// page by name.
std::vector<std::string> chosenMembers(ZipReader& archive, bool isComic)
{
    std::vector<std::pair<std::size_t, std::string>> ranked;
    std::string firstPage;
    archive.forEachMember([&](const ZipReader::Member& member) {
        const std::string name = lowered(member.name);
        const auto* const place = std::ranges::find(places, name);
        if (place != std::end(places) && member.size <= LargestMember)
            ranked.emplace_back(1 + place - std::begin(places), member.name);
        if (isComic && isPictureName(name) && (firstPage.empty() || member.name < firstPage))
            firstPage = member.name;
        return ranked.size() < std::size(places);
    });
    if (!firstPage.empty())
        ranked.emplace_back(0, std::move(firstPage));
    std::ranges::sort(ranked);
    ranked.resize(std::min(ranked.size(), MostThumbnails));
    std::vector<std::string> names(ranked.size());
    std::ranges::transform(ranked, names.begin(), [](const auto& member) { return member.second; });
    return names;
}

Data contentsOfMember(ZipReader& archive)
{
    std::vector<std::uint8_t> bytes;
    const bool isWhole = archive.readMember([&](std::span<const std::uint8_t> piece) {
        bytes.insert(bytes.end(), piece.begin(), piece.end());
        return bytes.size() <= LargestMember;
    });
    return isWhole ? Data::adopt(std::move(bytes)) : Data();
}

std::vector<Data> thumbnailsInArchive(ZipReader& archive, bool isComic)
{
    const auto names = chosenMembers(archive, isComic);
    std::vector<Data> thumbnails(names.size());
    std::size_t missing = names.size();
    archive.forEachMember([&](const ZipReader::Member& member) {
        const auto name = std::ranges::find(names, member.name);
        if (name == names.end())
            return true;
        thumbnails[static_cast<std::size_t>(name - names.begin())] = contentsOfMember(archive);
        return --missing > 0;
    });
    return thumbnails;
}

std::vector<Data> thumbnailsInPackage(const String& path)
{
    const String name = stringByDeletingPathExtension(lastPathComponent(path));
    std::vector<Data> thumbnails;
    for (const String& place : { u"QuickLook/Thumbnail.png"_s, u"QuickLook/Thumbnail.jpg"_s,
             u"QuickLook/Preview.png"_s, u"QuickLook/Preview.jpg"_s, u"QuickLook/Preview.pdf"_s,
             u"preview.jpg"_s, format(u"%@.pdf", name) }) {
        const String file = stringByAppendingPathComponent(path, place);
        if (FileSystem::sizeOfFile(file) > LargestMember || thumbnails.size() == MostThumbnails)
            continue;
        if (auto data = FileSystem::contentsOfFile(file))
            thumbnails.push_back(*std::move(data));
    }
    return thumbnails;
}

} // namespace

std::vector<Data> embeddedThumbnails(const String& path)
{
    if (FileSystem::isDirectory(path))
        return thumbnailsInPackage(path);
    const auto archive = ZipReader::open(path);
    if (!archive)
        return {};
    return thumbnailsInArchive(*archive, lowered(pathExtension(path).utf8()) == "cbz");
}

} // namespace caddis
