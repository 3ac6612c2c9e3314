#pragma once

#include "platform/base/Value.h"

namespace caddis {

/// How many values there are inside one another, arrays and dictionaries and the outermost one included.
inline std::size_t countOf(const Value& value)
{
    std::size_t count = 1;
    if (const auto* items = value.as<Array>()) {
        for (const Value& item : *items)
            count += countOf(item);
    } else if (const auto* entries = value.as<Dictionary>()) {
        for (const auto& entry : *entries)
            count += countOf(entry.value);
    }
    return count;
}

} // namespace caddis
