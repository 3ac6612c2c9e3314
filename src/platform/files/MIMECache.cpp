#include "platform/files/MIMECache.h"

namespace caddis {

namespace {

constexpr std::uint32_t Version11 = 0x00010001, Version12 = 0x00010002;
constexpr std::uint64_t AliasList = 4, ParentList = 8, SuffixTree = 16; // places in the header
constexpr std::size_t PairSize = 8, NodeSize = 12;
constexpr std::uint32_t WeightMask = 0xFF;
constexpr std::size_t MaximumText = 256;
constexpr std::uint64_t MaximumParents = 64;

} // namespace

std::optional<MIMECache> MIMECache::open(const Data& bytes)
{
    MIMECache cache(bytes);
    const std::uint32_t version = cache.number(0);
    return version == Version11 || version == Version12 ? std::optional(cache) : std::nullopt;
}

std::uint32_t MIMECache::number(std::uint64_t place) const
{
    if (place > m_bytes.size() || m_bytes.size() - place < 4)
        return 0;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8U | static_cast<unsigned char>(m_bytes[place + i]);
    return value;
}

// Empty when it does not end.
std::string_view MIMECache::text(std::uint64_t place) const
{
    if (place >= m_bytes.size())
        return {};
    const std::string_view window = m_bytes.substr(place, MaximumText);
    const auto end = window.find('\0');
    return end == window.npos ? std::string_view() : window.substr(0, end);
}

MIMECache::List MIMECache::bounded(std::uint64_t count, std::uint64_t place, std::size_t entrySize) const
{
    const std::uint64_t room = place < m_bytes.size() ? (m_bytes.size() - place) / entrySize : 0;
    return { std::min(count, room), place };
}

MIMECache::List MIMECache::list(std::uint64_t place, std::size_t entrySize) const
{
    return bounded(number(place), place + 4, entrySize);
}

// The place of the entry whose first number leads to the key.
std::optional<std::uint64_t> MIMECache::find(
    const List& list, std::size_t entrySize, std::string_view key) const
{
    std::uint64_t low = 0;
    for (std::uint64_t high = list.count; low < high;) {
        const std::uint64_t middle = (low + high) / 2;
        const std::uint64_t place = list.place + middle * entrySize;
        const int order = text(number(place)).compare(key);
        if (order == 0)
            return place;
        if (order < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return std::nullopt;
}

MIMECache::List MIMECache::childrenFor(const List& nodes, std::uint32_t character) const
{
    std::uint64_t low = 0;
    for (std::uint64_t high = nodes.count; low < high;) {
        const std::uint64_t middle = (low + high) / 2;
        const std::uint64_t place = nodes.place + middle * NodeSize;
        const std::uint32_t found = number(place);
        if (found == character)
            return bounded(number(place + 4), number(place + 8), NodeSize);
        if (found < character)
            low = middle + 1;
        else
            high = middle;
    }
    return {};
}

std::optional<std::string> MIMECache::typeForExtension(std::string_view extension) const
{
    const std::uint64_t root = number(SuffixTree);
    List nodes = bounded(number(root), number(root + 4), NodeSize);
    for (std::size_t left = extension.size(); left > 0; --left)
        nodes = childrenFor(nodes, static_cast<unsigned char>(extension[left - 1]));
    nodes = childrenFor(nodes, '.');
    std::string_view type;
    std::uint32_t weight = 0;
    // What ends here stands before what goes on.
    for (std::uint64_t i = 0; i < nodes.count && number(nodes.place + i * NodeSize) == 0; ++i) {
        const std::uint64_t place = nodes.place + i * NodeSize;
        if (const std::uint32_t found = number(place + 8) & WeightMask; type.empty() || found > weight) {
            type = text(number(place + 4));
            weight = found;
        }
    }
    return type.empty() ? std::nullopt : std::optional(std::string(type));
}

std::optional<std::string> MIMECache::typeForAlias(std::string_view alias) const
{
    const auto place = find(list(number(AliasList), PairSize), PairSize, alias);
    return place ? std::optional(std::string(text(number(*place + 4)))) : std::nullopt;
}

std::vector<std::string> MIMECache::parentsOf(std::string_view type) const
{
    std::vector<std::string> parents;
    const auto place = find(list(number(ParentList), PairSize), PairSize, type);
    if (!place)
        return parents;
    const List listed = list(number(*place + 4), 4);
    for (std::uint64_t i = 0; i < std::min(listed.count, MaximumParents); ++i)
        parents.emplace_back(text(number(listed.place + 4 * i)));
    return parents;
}

} // namespace caddis
