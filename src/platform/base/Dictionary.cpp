#include "platform/base/Value.h"

#include <algorithm>
#include <unordered_map>

namespace caddis {

Dictionary::Dictionary() noexcept = default;
Dictionary::Dictionary(const Dictionary&) = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(const Dictionary&) = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
Dictionary::~Dictionary() = default;

Dictionary::Dictionary(std::initializer_list<Entry> entries)
{
    m_entries.reserve(entries.size());
    for (const Entry& entry : entries)
        set(entry.key, entry.value);
}

Dictionary Dictionary::fromPairs(
    std::initializer_list<std::pair<std::u16string_view, std::optional<Value>>> pairs)
{
    Dictionary result;
    for (const auto& [key, value] : pairs) {
        if (!value)
            break;
        result.set(String(key), *value);
    }
    return result;
}

Dictionary Dictionary::adopt(std::vector<Entry> entries)
{
    Dictionary result;
    std::unordered_map<String, std::size_t> positions(entries.size());
    for (Entry& entry : entries) {
        const auto [position, isNew] = positions.try_emplace(entry.key, result.count());
        if (isNew)
            result.m_entries.push_back(std::move(entry));
        else
            result.m_entries[position->second].value = std::move(entry.value);
    }
    return result;
}

const Value* Dictionary::find(std::u16string_view key) const noexcept
{
    const auto entry = std::ranges::find(m_entries, key, [](const Entry& each) { return each.key.view(); });
    return entry == m_entries.end() ? nullptr : &entry->value;
}

Value* Dictionary::find(std::u16string_view key) noexcept
{
    return const_cast<Value*>(std::as_const(*this).find(key));
}

std::optional<String> Dictionary::stringForKey(std::u16string_view key) const
{
    const Value* value = find(key);
    const String* string = value ? value->as<String>() : nullptr;
    return string ? std::optional(*string) : std::nullopt;
}

void Dictionary::set(const String& key, Value value)
{
    if (Value* present = find(key))
        *present = std::move(value);
    else
        m_entries.push_back({ key, std::move(value) });
}

void Dictionary::set(const String& key, std::optional<Value> value)
{
    if (value)
        set(key, std::move(*value));
    else
        remove(key);
}

void Dictionary::remove(std::u16string_view key)
{
    std::erase_if(m_entries, [&](const Entry& entry) { return entry.key == key; });
}

void Dictionary::removeNulls()
{
    std::erase_if(m_entries, [](const Entry& entry) { return entry.value.is<Null>(); });
}

bool operator==(const Dictionary& left, const Dictionary& right)
{
    return left.count() == right.count() && std::ranges::all_of(left, [&](const Dictionary::Entry& entry) {
        const Value* other = right.find(entry.key);
        return other && *other == entry.value;
    });
}

} // namespace caddis
