#include "platform/base/String.h"

#include "platform/base/MutableString.h"
#include "platform/base/Utf.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace caddis {

std::size_t String::Storage::bytesFor(std::size_t units)
{
    if (units > (NotFound - sizeof(Storage)) / sizeof(char16_t))
        throw std::bad_alloc();
    return sizeof(Storage) + units * sizeof(char16_t);
}

String::Storage* String::Storage::allocate(std::size_t units)
{
    void* memory = std::malloc(bytesFor(units));
    if (!memory)
        throw std::bad_alloc();
    return new (memory) Storage { 1, units };
}

String::String(std::u16string_view units)
{
    if (units.empty())
        return;
    m_storage = Storage::allocate(units.size());
    std::memcpy(m_storage->units(), units.data(), units.size() * sizeof(char16_t));
}

String::String(const String& other) noexcept
    : m_storage(other.m_storage)
{
    if (m_storage)
        __atomic_fetch_add(&m_storage->references, 1, __ATOMIC_RELAXED);
}

String& String::operator=(const String& other) noexcept
{
    String copy(other);
    std::swap(m_storage, copy.m_storage);
    return *this;
}

String& String::operator=(String&& other) noexcept
{
    if (this != &other) {
        release();
        m_storage = std::exchange(other.m_storage, nullptr);
    }
    return *this;
}

void String::release() noexcept
{
    if (m_storage && __atomic_fetch_sub(&m_storage->references, 1, __ATOMIC_ACQ_REL) == 1)
        std::free(m_storage);
}

String String::fromUtf8(std::string_view bytes)
{
    MutableString result(bytes.size());
    char16_t* units = result.appendUninitialized(bytes.size());
    result.truncate(utf8ToUtf16(bytes, units));
    return std::move(result).take();
}

std::optional<String> String::fromStrictUtf8(std::string_view bytes)
{
    MutableString result(bytes.size());
    char16_t* units = result.appendUninitialized(bytes.size());
    const auto length = strictUtf8ToUtf16(bytes, units);
    if (!length)
        return std::nullopt;
    result.truncate(*length);
    return std::move(result).take();
}

String String::fromLatin1(std::string_view bytes)
{
    MutableString result(bytes.size());
    char16_t* units = result.appendUninitialized(bytes.size());
    std::ranges::transform(bytes, units, [](char byte) { return static_cast<unsigned char>(byte); });
    return std::move(result).take();
}

std::string String::utf8() const { return utf16ToUtf8(view()); }

bool String::isWellFormed() const { return firstLoneSurrogate(view()) == NotFound; }

String String::substring(Range range) const
{
    if (range.location == 0 && range.length == length())
        return *this;
    return String(view(range));
}

} // namespace caddis
