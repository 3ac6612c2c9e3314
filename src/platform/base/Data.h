#pragma once

#include "platform/base/Range.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace caddis {

/// Immutable bytes and whatever keeps them alive: an owned buffer, a mapped file, a descriptor's pages.
///
/// Handed on and sliced without copying the bytes; the last copy releases them. An empty Data is a value
/// like any other: "no data" is std::optional<Data>.
class Data {
public:
    Data() noexcept = default;

    static Data copyOf(std::string_view bytes);
    static Data adopt(std::vector<std::uint8_t> bytes);
    static Data adopt(std::string bytes);
    /// Takes over a block made by malloc.
    static Data adoptMalloc(void* block, std::size_t size);
    /// Bytes that live as long as `keeper` does.
    static Data keptBy(std::shared_ptr<const void> keeper, const void* bytes, std::size_t size);

    const std::uint8_t* bytes() const noexcept { return m_bytes; }
    std::size_t size() const noexcept { return m_size; }
    bool isEmpty() const noexcept { return m_size == 0; }
    std::span<const std::uint8_t> span() const noexcept { return { m_bytes, m_size }; }
    /// The bytes as characters, for readers of text formats.
    std::string_view chars() const noexcept { return { reinterpret_cast<const char*>(m_bytes), m_size }; }

    /// The part in `range`, which must lie inside; it shares the bytes.
    Data slice(Range range) const;

    friend bool operator==(const Data& left, const Data& right) noexcept
    {
        return left.chars() == right.chars();
    }

private:
    std::shared_ptr<const void> m_keeper;
    const std::uint8_t* m_bytes = nullptr;
    std::size_t m_size = 0;
};

} // namespace caddis
