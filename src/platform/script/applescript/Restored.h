#pragma once

#include <utility>

namespace caddis::applescript {

/// Gives a variable back its value however the block is left.
template <typename T> class Restored {
public:
    explicit Restored(T& variable)
        : m_variable(variable)
        , m_value(variable)
    {
    }
    ~Restored() { m_variable = std::move(m_value); }
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;

private:
    T& m_variable;
    T m_value;
};

} // namespace caddis::applescript
