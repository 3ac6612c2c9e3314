#include "platform/office/Parts.h"

#include "platform/base/LeftOut.h"
#include "platform/zip/ZipReader.h"

namespace caddis::office {

namespace {

constexpr std::size_t LongestMarkup = 64ULL << 20;
constexpr std::size_t MostBytes = 512ULL << 20;

bool isMarkup(std::string_view name) { return name.ends_with(".xml") || name.ends_with(".rels"); }

std::optional<Data> contentsOf(ZipReader& archive, const ZipReader::Member& member, std::size_t limit)
{
    if (member.isEncrypted || member.isSymbolicLink)
        return std::nullopt;
    if (member.size > limit) {
        noteLeftOut(u"a part of the document that is very large");
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(member.size);
    const bool isWhole = archive.readMember([&](std::span<const std::uint8_t> piece) {
        bytes.insert(bytes.end(), piece.begin(), piece.end());
        return bytes.size() <= limit;
    });
    return isWhole ? std::optional(Data::adopt(std::move(bytes))) : std::nullopt;
}

} // namespace

std::optional<Parts> partsOfFile(const String& path)
{
    const auto archive = ZipReader::open(path);
    if (!archive)
        return std::nullopt;
    Parts parts;
    std::size_t rest = MostBytes;
    archive->forEachMember([&](const ZipReader::Member& member) {
        const std::size_t limit = isMarkup(member.name) ? std::min(rest, LongestMarkup) : rest;
        if (auto contents = contentsOf(*archive, member, limit)) {
            rest -= contents->size();
            parts.emplace(member.name, std::move(*contents));
        }
        return true;
    });
    return parts;
}

const Data* partNamed(const Parts& parts, std::string_view name)
{
    const auto found = parts.find(name);
    return found == parts.end() ? nullptr : &found->second;
}

} // namespace caddis::office
