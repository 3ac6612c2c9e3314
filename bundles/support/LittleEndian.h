#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Numbers in records of old formats; 0 where they would reach behind the bytes.
namespace caddis::bundles {

template <typename Number> Number numberAt(std::string_view bytes, std::size_t offset)
{
    static_assert(std::endian::native == std::endian::little);
    Number value {};
    if (offset <= bytes.size() && sizeof value <= bytes.size() - offset)
        std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

inline std::uint16_t u16(std::string_view bytes, std::size_t offset)
{
    return numberAt<std::uint16_t>(bytes, offset);
}
inline std::uint32_t u32(std::string_view bytes, std::size_t offset)
{
    return numberAt<std::uint32_t>(bytes, offset);
}
inline std::uint64_t u64(std::string_view bytes, std::size_t offset)
{
    return numberAt<std::uint64_t>(bytes, offset);
}

/// `length` bytes from an offset; what lies behind the end is missing.
inline std::string_view part(
    std::string_view bytes, std::size_t offset, std::size_t length = std::string_view::npos)
{
    return offset < bytes.size() ? bytes.substr(offset, length) : std::string_view();
}

} // namespace caddis::bundles
