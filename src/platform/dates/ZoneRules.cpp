#include "platform/dates/ZoneRules.h"

#include "platform/base/String.h"

#include <algorithm>

namespace caddis {

namespace {

// RFC 8536 3.2 allows offsets of -25 to 26 hours.
constexpr int LeastOffset = -25 * 3600;
constexpr int MostOffset = 26 * 3600;

// Takes big-endian numbers and blocks off the front; too few bytes make it fail for good.
class Bytes {
public:
    explicit Bytes(std::span<const std::byte> bytes)
        : m_rest(bytes)
    {
    }

    bool failed() const { return m_failed; }
    std::span<const std::byte> rest() const { return m_rest; }
    std::span<const std::byte> take(std::uint64_t count)
    {
        if (count > m_rest.size()) {
            m_failed = true;
            return {};
        }
        const auto block = m_rest.first(static_cast<std::size_t>(count));
        m_rest = m_rest.subspan(static_cast<std::size_t>(count));
        return block;
    }
    std::uint32_t number()
    {
        const auto four = take(4);
        return four.empty() ? 0 : static_cast<std::uint32_t>(signedNumber(four));
    }
    // A two's-complement number as wide as the block.
    static std::int64_t signedNumber(std::span<const std::byte> block)
    {
        std::uint64_t value = std::to_integer<std::uint8_t>(block[0]) & 0x80 ? ~std::uint64_t { 0 } : 0;
        for (const std::byte byte : block)
            value = value << 8 | std::to_integer<std::uint8_t>(byte);
        return static_cast<std::int64_t>(value);
    }

private:
    std::span<const std::byte> m_rest;
    bool m_failed = false;
};

struct Header {
    std::uint8_t version = 0;
    std::uint64_t utIndicators = 0, standardIndicators = 0, leapSeconds = 0, transitions = 0, types = 0,
                  nameBytes = 0;

    bool read(Bytes& bytes)
    {
        static constexpr char Magic[] = { 'T', 'Z', 'i', 'f' };
        const auto head = bytes.take(20);
        if (head.empty() || !std::ranges::equal(head.first(4), std::as_bytes(std::span(Magic))))
            return false;
        version = std::to_integer<std::uint8_t>(head[4]);
        for (std::uint64_t* count :
            { &utIndicators, &standardIndicators, &leapSeconds, &transitions, &types, &nameBytes })
            *count = bytes.number();
        return !bytes.failed();
    }
    std::uint64_t bytesBehindTypes(std::uint64_t timeSize) const
    {
        return nameBytes + leapSeconds * (timeSize + 4) + standardIndicators + utIndicators;
    }
    std::uint64_t dataBytes(std::uint64_t timeSize) const
    {
        return transitions * (timeSize + 1) + types * 6 + bytesBehindTypes(timeSize);
    }
};

// The last line, between two line feeds; empty where there is no rule.
std::optional<PosixZoneRule> readFooter(std::span<const std::byte> bytes)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::size_t end = text.size() > 1 && text[0] == '\n' ? text.find('\n', 1) : text.npos;
    if (end == text.npos)
        return std::nullopt;
    return PosixZoneRule::parse(String::fromLatin1(text.substr(1, end - 1)));
}

} // namespace

std::optional<ZoneRules> ZoneRules::fromFile(std::span<const std::byte> file)
{
    Bytes bytes(file);
    Header header;
    if (!header.read(bytes))
        return std::nullopt;
    // From version 2 on, the same data follow once more with 64-bit times.
    const std::uint64_t timeSize = header.version ? 8 : 4;
    if (header.version && (bytes.take(header.dataBytes(4)), bytes.failed() || !header.read(bytes)))
        return std::nullopt;

    const auto times = bytes.take(header.transitions * timeSize);
    const auto indexes = bytes.take(header.transitions);
    const auto types = bytes.take(header.types * 6);
    bytes.take(header.bytesBehindTypes(timeSize));
    if (bytes.failed() || header.types == 0)
        return std::nullopt;

    ZoneRules rules;
    bool sound = true;
    const auto offsetOfType = [&](std::uint64_t type) {
        const std::int64_t offset
            = type < header.types ? Bytes::signedNumber(types.subspan(type * 6, 4)) : MostOffset + 1;
        sound = sound && offset >= LeastOffset && offset <= MostOffset;
        return static_cast<int>(offset);
    };
    rules.m_initialOffset = offsetOfType(0);
    rules.m_transitions.reserve(header.transitions);
    for (std::size_t index = 0; sound && index < header.transitions; ++index) {
        const std::int64_t from = Bytes::signedNumber(times.subspan(index * timeSize, timeSize));
        sound = index == 0 || from > rules.m_transitions.back().from;
        rules.m_transitions.push_back({ from, offsetOfType(std::to_integer<std::uint8_t>(indexes[index])) });
    }
    if (!sound)
        return std::nullopt;
    if (header.version)
        rules.m_future = readFooter(bytes.rest());
    return rules;
}

ZoneRules ZoneRules::fromRule(const PosixZoneRule& rule)
{
    ZoneRules rules;
    rules.m_future = rule;
    return rules;
}

int ZoneRules::offsetAt(std::int64_t unixSeconds) const
{
    const auto next = std::ranges::upper_bound(m_transitions, unixSeconds, {}, &Transition::from);
    if (next == m_transitions.end() && m_future)
        return m_future->offsetAt(unixSeconds);
    return next == m_transitions.begin() ? m_initialOffset : std::prev(next)->offset;
}

} // namespace caddis
