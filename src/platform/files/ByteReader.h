#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace caddis {

/// Reads little-endian numbers and runs of bytes in order; nil, and nothing taken, when too few bytes are
/// left.
class ByteReader {
public:
    /// An offset behind the end leaves nothing to read.
    explicit ByteReader(std::string_view bytes, std::size_t offset = 0)
        : m_rest(bytes.substr(offset < bytes.size() ? offset : bytes.size()))
    {
    }

    bool isAtEnd() const { return m_rest.empty(); }
    std::optional<std::uint16_t> u16() { return number<std::uint16_t>(); }
    std::optional<std::uint32_t> u32() { return number<std::uint32_t>(); }
    std::optional<std::uint64_t> u64() { return number<std::uint64_t>(); }

    std::optional<std::string_view> bytes(std::size_t count)
    {
        if (count > m_rest.size())
            return std::nullopt;
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(count);
        return taken;
    }
    /// To the end when fewer are left.
    void skip(std::size_t count) { m_rest.remove_prefix(count < m_rest.size() ? count : m_rest.size()); }

private:
    // The machine is little-endian, as the formats are.
    template <typename Number> std::optional<Number> number()
    {
        const auto taken = bytes(sizeof(Number));
        if (!taken)
            return std::nullopt;
        Number value;
        std::memcpy(&value, taken->data(), sizeof value);
        return value;
    }

    std::string_view m_rest;
};

} // namespace caddis
