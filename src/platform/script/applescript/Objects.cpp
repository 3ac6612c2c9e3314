#include "platform/script/applescript/Objects.h"

#include "platform/script/applescript/Failure.h"

#include <algorithm>

namespace caddis::applescript {

Datum Datum::text(const String& value)
{
    Heap::current().require(value.length() * sizeof(char16_t));
    return make<Text>(value);
}

// Below U+0300 no unit combines with another. CR LF stays two characters: scripts cut line ends by hand.
bool Text::isSimple()
{
    if (m_simple == Simple::Unknown) {
        const bool simple = std::ranges::all_of(m_value, [](char16_t unit) { return unit < 0x300; });
        m_simple = simple ? Simple::Yes : Simple::No;
    }
    return m_simple == Simple::Yes;
}

void List::append(Datum value)
{
    const std::size_t before = m_items.capacity();
    if (m_items.size() == before)
        Heap::current().require((before + 1) * sizeof(Datum));
    m_items.push_back(std::move(value));
    charge((m_items.capacity() - before) * sizeof(Datum));
}

void List::prepend(Datum value)
{
    append(std::move(value));
    std::rotate(m_items.begin(), m_items.end() - 1, m_items.end());
}

void List::dropReferences()
{
    refund(m_items.capacity() * sizeof(Datum));
    std::vector<Datum>().swap(m_items);
}

const Datum* Record::find(Symbol label) const
{
    for (const auto& [name, value] : m_fields) {
        if (name == label)
            return &value;
    }
    return nullptr;
}

void Record::set(Symbol label, Datum value)
{
    for (auto& [name, old] : m_fields) {
        if (name == label) {
            old = std::move(value);
            return;
        }
    }
    const std::size_t before = bytes();
    if (m_fields.size() == m_fields.capacity())
        Heap::current().require(before + sizeof(Field));
    m_fields.emplace_back(label, std::move(value));
    charge(bytes() - before);
}

void Record::dropReferences()
{
    refund(bytes());
    std::vector<Field>().swap(m_fields);
}

} // namespace caddis::applescript
