#include "platform/files/BookData.h"

#include "platform/base/MutableString.h"
#include "platform/files/ByteReader.h"

namespace caddis {

namespace {

constexpr std::size_t HeaderSize = 48;
constexpr std::uint32_t TableMark = 0xFFFFFFFE;
constexpr std::uint32_t PathComponents = 0x1004;
constexpr std::uint32_t TextType = 0x0101;
constexpr std::uint32_t ArrayType = 0x0601;
constexpr int MostTables = 64; // A chain of tables that runs in a circle must end.
constexpr std::uint32_t LongestPath = 4096; // PATH_MAX: no component array can be longer.

struct Record {
    std::uint32_t type;
    std::string_view data;
};

std::optional<Record> recordAt(std::string_view body, std::uint32_t offset)
{
    ByteReader reader(body, offset);
    const auto length = reader.u32();
    const auto type = reader.u32();
    const auto data = length ? reader.bytes(*length) : std::nullopt;
    return type && data ? std::optional(Record { *type, *data }) : std::nullopt;
}

// The offset of the record that a table, or one it is chained to, has under `key`.
std::optional<std::uint32_t> offsetForKey(std::string_view body, std::uint32_t key)
{
    std::optional<std::uint32_t> table = ByteReader(body, 0).u32();
    for (int visited = 0; table && visited < MostTables; ++visited) {
        ByteReader reader(body, *table);
        reader.skip(4);
        if (reader.u32() != TableMark)
            return std::nullopt;
        reader.skip(4);
        const auto next = reader.u32();
        const auto count = reader.u32();
        for (std::uint32_t index = 0; count && index < *count && !reader.isAtEnd(); ++index) {
            const auto entryKey = reader.u32();
            const auto offset = reader.u32();
            reader.skip(4);
            if (entryKey == key)
                return offset;
        }
        table = next && *next ? next : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

bool isBookData(const Data& bookmark)
{
    return bookmark.chars().starts_with("book") || bookmark.chars().starts_with("alis");
}

std::optional<String> pathOfBookData(const Data& bookmark)
{
    if (!isBookData(bookmark) || bookmark.size() <= HeaderSize)
        return std::nullopt;
    const std::string_view body = bookmark.chars().substr(HeaderSize);
    const auto offset = offsetForKey(body, PathComponents);
    const auto components = offset ? recordAt(body, *offset) : std::nullopt;
    if (!components || components->type != ArrayType || components->data.size() > LongestPath)
        return std::nullopt;
    MutableString path;
    ByteReader reader(components->data);
    while (const auto componentOffset = reader.u32()) {
        const auto component = recordAt(body, *componentOffset);
        const auto name = component && component->type == TextType && component->data.size() <= LongestPath
            ? String::fromStrictUtf8(component->data)
            : std::nullopt;
        if (!name || name->isEmpty()
            || name->view().find_first_of(std::u16string_view(u"/\0", 2)) != name->view().npos)
            return std::nullopt;
        path.append(u'/').append(*name);
    }
    return path.isEmpty() ? std::nullopt : std::optional(std::move(path).take());
}

} // namespace caddis
