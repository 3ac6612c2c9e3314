#pragma once

#include "platform/script/applescript/Symbols.h"

#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>

namespace caddis::applescript {

/// Names and their numbers, which run from `first` on.
class NameTable {
public:
    explicit NameTable(Symbol first)
        : m_first(static_cast<std::uint32_t>(first))
    {
    }
    NameTable(const NameTable&) = delete;
    NameTable& operator=(const NameTable&) = delete;

    std::optional<Symbol> find(std::u16string_view key) const
    {
        const auto found = m_symbols.find(key);
        return found != m_symbols.end() ? std::optional(found->second) : std::nullopt;
    }
    /// `key` is new; `spelling` is how sources write it.
    Symbol add(const String& key, const String& spelling);
    const String& spelling(Symbol symbol) const
    {
        return m_names[static_cast<std::uint32_t>(symbol) - m_first].spelling;
    }

private:
    struct Name {
        String key;
        String spelling;
    };

    const std::uint32_t m_first;
    std::deque<Name> m_names;
    std::unordered_map<std::u16string_view, Symbol> m_symbols; // into the names' keys
};

/// An empty table for the names of one script.
std::unique_ptr<NameTable> makeNamesOfScript();

} // namespace caddis::applescript
