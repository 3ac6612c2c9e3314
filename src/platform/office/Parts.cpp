#include "platform/office/Parts.h"

#include "platform/base/LeftOut.h"
#include "platform/files/FileSystem.h"
#include "platform/zip/ZipReader.h"

namespace caddis::office {

namespace {

constexpr std::size_t MostMarkup = 24ULL << 20;
constexpr std::size_t MostOthers = 64ULL << 20; // Or what the archive's own size speaks for.
constexpr std::size_t MostInflated = 4; // Times the archive, of what is packed already by its own format.

bool isMarkup(std::string_view name) { return name.ends_with(".xml") || name.ends_with(".rels"); }

// Up to `limit` bytes, or nothing of a member that is damaged before.
std::optional<Data> contentsOf(ZipReader& archive, const ZipReader::Member& member, std::size_t limit)
{
    if (member.isEncrypted || member.isSymbolicLink)
        return std::nullopt;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(std::min<std::size_t>(member.size, limit));
    const bool isWhole = archive.readMember([&](std::span<const std::uint8_t> piece) {
        const auto end
            = piece.begin() + static_cast<std::ptrdiff_t>(std::min(piece.size(), limit - bytes.size()));
        bytes.insert(bytes.end(), piece.begin(), end);
        return end == piece.end();
    });
    const bool isCut = !isWhole && bytes.size() == limit;
    if (isCut)
        noteLeftOut(u"the end of a part of the document that is very large");
    return isWhole || isCut ? std::optional(Data::adopt(std::move(bytes))) : std::nullopt;
}

} // namespace

std::optional<Parts> partsOfFile(const String& path)
{
    const auto archive = ZipReader::open(path);
    if (!archive)
        return std::nullopt;
    Parts parts;
    const auto size = FileSystem::sizeOfFile(path);
    std::size_t markup = MostMarkup;
    std::size_t others = std::max(MostOthers, MostInflated * static_cast<std::size_t>(size));
    archive->forEachMember([&](const ZipReader::Member& member) {
        const bool canBeCut = isMarkup(member.name);
        std::size_t& rest = canBeCut ? markup : others;
        if (rest == 0 || (!canBeCut && member.size > rest)) {
            noteLeftOut(u"parts of a document that is very large");
            return true;
        }
        if (auto contents = contentsOf(*archive, member, rest)) {
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
