#include "platform/zip/DirectoryCorrections.h"

#include "platform/files/ByteReader.h"

#include <algorithm>
#include <cstring>

namespace caddis {

namespace {

constexpr std::uint32_t Mark = 0xFFFFFFFF;
constexpr std::string_view LocatorSignature = "PK\6\7";
constexpr std::string_view Zip64EndSignature = "PK\6\6";
constexpr std::string_view EndSignature = "PK\5\6";
constexpr std::string_view MemberSignature = "PK\1\2";
constexpr std::size_t LocatorSearchSize = 65536 + 42; // The longest comment, the end record and the locator.
constexpr std::size_t MemberHeaderSize = 46;
constexpr std::uint16_t Zip64Extra = 1;

// Where the directory begins; nil when the archive has no Zip64 end record.
std::optional<std::uint64_t> directoryOffset(std::string_view archive)
{
    const std::size_t searched = std::min(archive.size(), LocatorSearchSize);
    const std::size_t locator = archive.substr(archive.size() - searched).rfind(LocatorSignature);
    if (locator == archive.npos)
        return std::nullopt;
    const auto end = ByteReader(archive, archive.size() - searched + locator + 8).u64();
    if (!end || *end >= archive.size() || !archive.substr(*end).starts_with(Zip64EndSignature))
        return std::nullopt;
    return ByteReader(archive, *end + 48).u64();
}

// The data of the Zip64 extra field, empty without one.
std::string_view zip64Data(std::string_view extraFields)
{
    ByteReader reader(extraFields);
    while (const auto id = reader.u16()) {
        const auto size = reader.u16();
        const auto data = size ? reader.bytes(*size) : std::nullopt;
        if (data && *id == Zip64Extra)
            return *data;
    }
    return {};
}

// The numbers of this disk and of the directory's become 0.
void correctDiskNumbers(std::string_view archive, CorrectedFields& corrections)
{
    const std::size_t searched = std::min(archive.size(), LocatorSearchSize);
    const std::size_t end = archive.substr(archive.size() - searched).rfind(EndSignature);
    if (end == archive.npos)
        return;
    const std::uint64_t field = archive.size() - searched + end + 4;
    if (ByteReader(archive, field).u32().value_or(0) != 0)
        corrections.emplace(field, std::array<std::uint8_t, 4> {});
}

// The marked sizes and offsets of the members.
void correctMembers(std::string_view bytes, CorrectedFields& corrections)
{
    std::uint64_t position = directoryOffset(bytes).value_or(bytes.size());
    while (position < bytes.size() && bytes.substr(position).starts_with(MemberSignature)
        && bytes.size() - position >= MemberHeaderSize) {
        const std::size_t nameSize = *ByteReader(bytes, position + 28).u16();
        const std::size_t extraSize = *ByteReader(bytes, position + 30).u16();
        const std::size_t commentSize = *ByteReader(bytes, position + 32).u16();
        const std::size_t extraOffset = std::min(position + MemberHeaderSize + nameSize, bytes.size());
        ByteReader numbers(zip64Data(bytes.substr(extraOffset, extraSize)));
        // Uncompressed size, compressed size, offset: each is in the extra field when its own field has the
        // mark.
        for (const std::size_t field : { 24U, 20U, 42U }) {
            const auto number
                = ByteReader(bytes, position + field).u32() == Mark ? numbers.u64() : std::nullopt;
            if (!number || *number >= Mark)
                continue;
            std::array<std::uint8_t, 4> corrected {};
            std::memcpy(corrected.data(), &*number, corrected.size());
            corrections.emplace(position + field, corrected);
        }
        position += MemberHeaderSize + nameSize + extraSize + commentSize;
    }
}

} // namespace

CorrectedFields directoryCorrections(const Data& archive)
{
    CorrectedFields corrections;
    correctMembers(archive.chars(), corrections);
    correctDiskNumbers(archive.chars(), corrections);
    return corrections;
}

} // namespace caddis
