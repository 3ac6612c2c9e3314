#pragma once

#include "platform/base/String.h"

namespace caddis {

/// A growing run of UTF-16 units that becomes a String without a copy.
///
///     MutableString result(text.length());
///     result.append(u"<").append(name).append(u'>');
///     return std::move(result).take();
///
/// Growth is geometric; running out of memory throws std::bad_alloc.
class MutableString {
public:
    MutableString() noexcept = default;
    /// Room for `capacity` units before the first growth.
    explicit MutableString(std::size_t capacity) { reserve(capacity); }
    MutableString(MutableString&& other) noexcept;
    MutableString& operator=(MutableString&& other) noexcept;
    MutableString(const MutableString&) = delete;
    MutableString& operator=(const MutableString&) = delete;
    ~MutableString();

    MutableString& append(std::u16string_view units);
    MutableString& append(char16_t unit)
    {
        *appendUninitialized(1) = unit;
        return *this;
    }
    /// Each ill-formed part becomes U+FFFD.
    MutableString& appendUtf8(std::string_view bytes);
    /// `count` more units whose values the caller writes; valid until the next growth.
    char16_t* appendUninitialized(std::size_t count);

    void reserve(std::size_t capacity);
    /// Drops all units from index `length` on; `length` must not exceed the present one.
    void truncate(std::size_t length) noexcept { m_length = length; }
    void clear() noexcept { truncate(0); }

    std::size_t length() const noexcept { return m_length; }
    bool isEmpty() const noexcept { return m_length == 0; }
    char16_t* data() noexcept { return m_storage ? m_storage->units() : nullptr; }
    char16_t operator[](std::size_t index) const noexcept { return m_storage->units()[index]; }
    std::u16string_view view() const noexcept;

    /// Hands the units over and leaves this one empty. Much unused room is given back to the allocator.
    String take() &&;

private:
    void grow(std::size_t needed);

    String::Storage* m_storage = nullptr;
    std::size_t m_length = 0;
    std::size_t m_capacity = 0;
};

inline std::u16string_view MutableString::view() const noexcept
{
    return { m_storage ? m_storage->units() : u"", m_length };
}

inline char16_t* MutableString::appendUninitialized(std::size_t count)
{
    if (count > m_capacity - m_length)
        grow(count);
    char16_t* end = data() + m_length;
    m_length += count;
    return end;
}

} // namespace caddis
