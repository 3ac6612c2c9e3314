#pragma once

#include "platform/base/Data.h"
#include "platform/base/Date.h"
#include "platform/base/String.h"
#include "platform/base/URL.h"

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace caddis {

class Value;

/// The null object that may stand inside a collection. "No value" is always std::optional.
struct Null {
    friend constexpr bool operator==(Null, Null) = default;
};

using Array = std::vector<Value>;

/// String keys and their values in the order in which the keys were first set.
///
/// One vector: at the sizes of a reply (at most some thirty keys) it is the fastest form to copy and to
/// search.
class Dictionary {
public:
    struct Entry;

    Dictionary() noexcept;
    Dictionary(std::initializer_list<Entry> entries);
    Dictionary(const Dictionary&);
    Dictionary(Dictionary&&) noexcept;
    Dictionary& operator=(const Dictionary&);
    Dictionary& operator=(Dictionary&&) noexcept;
    ~Dictionary();

    /// A list of pairs that ends at the first missing value, whatever follows it.
    static Dictionary fromPairs(
        std::initializer_list<std::pair<std::u16string_view, std::optional<Value>>> pairs);

    /// Takes over entries that may be hostile: where a key comes twice its last value counts, in the first
    /// one's place. Linear, unlike a loop over set.
    static Dictionary adopt(std::vector<Entry> entries);

    std::size_t count() const noexcept;
    bool isEmpty() const noexcept { return count() == 0; }
    const Entry* begin() const noexcept;
    const Entry* end() const noexcept;

    /// Null pointer when the key is missing; valid until the dictionary is changed.
    const Value* find(std::u16string_view key) const noexcept;
    Value* find(std::u16string_view key) noexcept;
    /// The value when it is present and a String.
    std::optional<String> stringForKey(std::u16string_view key) const;

    /// Replaces the value of a present key in its place.
    void set(const String& key, Value value);
    /// Removes the key when there is no value.
    void set(const String& key, std::optional<Value> value);
    void remove(std::u16string_view key);
    /// Removes every entry whose value is the null object.
    void removeNulls();

    friend bool operator==(const Dictionary& left, const Dictionary& right);

private:
    std::vector<Entry> m_entries;
};

/// What replies, metadata and messages are made of. The kinds of number stay apart because replies promise
/// them.
class Value {
public:
    /// std::uint64_t stands only for integers above the range of std::int64_t.
    using Variant = std::variant<Null, bool, std::int64_t, std::uint64_t, float, double, String, Data, Date,
        URL, Array, Dictionary>;

    Value() = default;
    template <typename T>
    requires(std::constructible_from<Variant,
                 T> && !std::integral<std::remove_cvref_t<T>> && !std::same_as<std::remove_cvref_t<T>, Value>)
        Value(T&& value) // NOLINT(google-explicit-constructor): a value may be written wherever one is wanted
        : m_variant(std::forward<T>(value))
    {
    }
    template <std::integral T>
    Value(T value) // NOLINT(google-explicit-constructor)
        : m_variant(fromInteger(value))
    {
    }

    /// Null pointer when the value is of another kind.
    template <typename T> const T* as() const noexcept { return std::get_if<T>(&m_variant); }
    template <typename T> T* as() noexcept { return std::get_if<T>(&m_variant); }
    template <typename T> bool is() const noexcept { return std::holds_alternative<T>(m_variant); }
    const Variant& variant() const noexcept { return m_variant; }

    friend bool operator==(const Value& left, const Value& right) = default;

private:
    template <std::integral T> static Variant fromInteger(T value)
    {
        if constexpr (std::same_as<T, bool>)
            return value;
        else if (std::in_range<std::int64_t>(value))
            return static_cast<std::int64_t>(value);
        else
            return static_cast<std::uint64_t>(value);
    }

    Variant m_variant;
};

struct Dictionary::Entry {
    String key;
    Value value;

    friend bool operator==(const Entry&, const Entry&) = default;
};

inline std::size_t Dictionary::count() const noexcept { return m_entries.size(); }

inline const Dictionary::Entry* Dictionary::begin() const noexcept { return m_entries.data(); }

inline const Dictionary::Entry* Dictionary::end() const noexcept
{
    return m_entries.data() + m_entries.size();
}

} // namespace caddis
