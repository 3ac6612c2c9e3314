#pragma once

#include "platform/base/Data.h"

#include <string_view>

namespace caddis::image {

/// Numbers at places in bytes that may be too short: what lies outside is 0, runs are cut at the end.
class Bytes {
public:
    explicit Bytes(const Data& data)
        : m_bytes(data.chars())
    {
    }
    explicit Bytes(std::string_view bytes)
        : m_bytes(bytes)
    {
    }

    std::size_t size() const { return m_bytes.size(); }
    bool has(std::size_t place, std::size_t count) const
    {
        return place <= size() && count <= size() - place;
    }
    std::uint32_t u8(std::size_t place) const
    {
        return place < size() ? static_cast<std::uint8_t>(m_bytes[place]) : 0;
    }
    std::uint32_t le16(std::size_t place) const { return u8(place) | u8(place + 1) << 8; }
    std::uint32_t be16(std::size_t place) const { return u8(place) << 8 | u8(place + 1); }
    std::uint32_t le32(std::size_t place) const { return le16(place) | le16(place + 2) << 16; }
    std::uint32_t be32(std::size_t place) const { return be16(place) << 16 | be16(place + 2); }
    std::string_view run(std::size_t place, std::size_t count) const
    {
        return place < size() ? m_bytes.substr(place, count) : std::string_view();
    }
    bool isAt(std::size_t place, std::string_view wanted) const
    {
        return run(place, wanted.size()) == wanted;
    }
    const std::uint8_t* at(std::size_t place) const
    {
        return reinterpret_cast<const std::uint8_t*>(m_bytes.data()) + place;
    }

private:
    std::string_view m_bytes;
};

} // namespace caddis::image
