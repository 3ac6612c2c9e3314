#pragma once

#include "platform/base/Range.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace caddis {

class MutableString;

/// An immutable, shared run of UTF-16 units.
///
/// One pointer wide; the count and the units are one allocation, and a copy only counts. The empty string
/// is the null pointer, so it costs nothing and all empty strings are the same one. Any units may stand in
/// it, U+0000 and lone surrogates included: they only become U+FFFD when the text leaves as UTF-8.
///
/// Copies may be used from several threads at once.
class String {
public:
    constexpr String() noexcept = default;
    explicit String(std::u16string_view units);
    String(const String& other) noexcept;
    String(String&& other) noexcept
        : m_storage(std::exchange(other.m_storage, nullptr))
    {
    }
    String& operator=(const String& other) noexcept;
    String& operator=(String&& other) noexcept;
    ~String() { release(); }

    /// Each maximal ill-formed part becomes one U+FFFD. A byte-order mark stays.
    static String fromUtf8(std::string_view bytes);
    /// Nil for ill-formed UTF-8.
    static std::optional<String> fromStrictUtf8(std::string_view bytes);
    /// One unit per byte, U+0000 to U+00FF.
    static String fromLatin1(std::string_view bytes);

    /// The text as UTF-8; each lone surrogate becomes U+FFFD.
    std::string utf8() const;
    /// Whether UTF-8 carries the text without loss: no lone surrogate in it.
    bool isWellFormed() const;

    std::size_t length() const noexcept { return m_storage ? m_storage->length : 0; }
    bool isEmpty() const noexcept { return !m_storage; }
    const char16_t* data() const noexcept;
    const char16_t* begin() const noexcept { return data(); }
    const char16_t* end() const noexcept { return data() + length(); }
    char16_t operator[](std::size_t index) const noexcept { return data()[index]; }
    std::u16string_view view() const noexcept { return { data(), length() }; }
    std::u16string_view view(Range range) const noexcept { return { data() + range.location, range.length }; }
    operator std::u16string_view() const noexcept { return view(); } // NOLINT(google-explicit-constructor)

    /// The units in `range`, which must lie inside. Same: the whole range gives the string itself.
    String substring(Range range) const;
    String substringFrom(std::size_t index) const { return substring({ index, length() - index }); }
    String substringTo(std::size_t index) const { return substring({ 0, index }); }

    /// Whether both share their units: what "returns the receiver itself" promises.
    bool isIdenticalTo(const String& other) const noexcept { return m_storage == other.m_storage; }

    friend bool operator==(const String& left, const String& right) noexcept
    {
        return left.m_storage == right.m_storage || left.view() == right.view();
    }
    friend bool operator==(const String& left, std::u16string_view right) noexcept
    {
        return left.view() == right;
    }
    friend std::strong_ordering operator<=>(const String& left, const String& right) noexcept
    {
        return left.view() <=> right.view();
    }

private:
    friend class MutableString;

    // The head of one allocation; `length` units follow it. `references` is handled with atomic builtins
    // (not std::atomic) so that the record may be moved by realloc while only one owner knows it.
    struct Storage {
        std::uint32_t references;
        std::size_t length;

        char16_t* units() noexcept { return reinterpret_cast<char16_t*>(this + 1); }
        const char16_t* units() const noexcept { return reinterpret_cast<const char16_t*>(this + 1); }
        static std::size_t bytesFor(std::size_t units);
        static Storage* allocate(std::size_t units);
    };

    explicit String(Storage* adopted) noexcept
        : m_storage(adopted)
    {
    }
    void release() noexcept;

    // One object in the whole program, which a literal u"" is not: begin() and end() have to agree.
    static constexpr char16_t s_noUnits = u'\0';

    Storage* m_storage = nullptr;
};

inline const char16_t* String::data() const noexcept { return m_storage ? m_storage->units() : &s_noUnits; }

inline namespace literals {
inline String operator""_s(const char16_t* units, std::size_t length)
{
    return String(std::u16string_view(units, length));
}
} // namespace literals

} // namespace caddis

template <> struct std::hash<caddis::String> {
    std::size_t operator()(const caddis::String& string) const noexcept
    {
        return std::hash<std::u16string_view> {}(string.view());
    }
};
