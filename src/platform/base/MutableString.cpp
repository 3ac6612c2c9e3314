#include "platform/base/MutableString.h"

#include "platform/base/Utf.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace caddis {

MutableString::MutableString(MutableString&& other) noexcept
    : m_storage(std::exchange(other.m_storage, nullptr))
    , m_length(std::exchange(other.m_length, 0))
    , m_capacity(std::exchange(other.m_capacity, 0))
{
}

MutableString& MutableString::operator=(MutableString&& other) noexcept
{
    std::swap(m_storage, other.m_storage);
    std::swap(m_length, other.m_length);
    std::swap(m_capacity, other.m_capacity);
    return *this;
}

MutableString::~MutableString() { std::free(m_storage); }

MutableString& MutableString::append(std::u16string_view units)
{
    if (!units.empty())
        std::memcpy(appendUninitialized(units.size()), units.data(), units.size() * sizeof(char16_t));
    return *this;
}

MutableString& MutableString::appendUtf8(std::string_view bytes)
{
    const std::size_t before = m_length;
    char16_t* units = appendUninitialized(bytes.size());
    truncate(before + utf8ToUtf16(bytes, units));
    return *this;
}

void MutableString::reserve(std::size_t capacity)
{
    if (capacity <= m_capacity)
        return;
    void* memory = std::realloc(m_storage, String::Storage::bytesFor(capacity));
    if (!memory)
        throw std::bad_alloc();
    m_storage = static_cast<String::Storage*>(memory);
    m_capacity = capacity;
}

void MutableString::grow(std::size_t needed)
{
    if (needed > NotFound - m_length)
        throw std::bad_alloc();
    reserve(std::max({ m_length + needed, m_capacity + m_capacity / 2, std::size_t { 32 } }));
}

String MutableString::take() &&
{
    if (m_length == 0)
        return {};
    // A result that is kept for long must not hold on to a working buffer several times its size.
    if (m_capacity - m_length > m_length / 4 + 32) {
        if (void* smaller = std::realloc(m_storage, String::Storage::bytesFor(m_length)))
            m_storage = static_cast<String::Storage*>(smaller);
    }
    m_storage->references = 1;
    m_storage->length = m_length;
    m_length = 0;
    m_capacity = 0;
    return String(std::exchange(m_storage, nullptr));
}

} // namespace caddis
