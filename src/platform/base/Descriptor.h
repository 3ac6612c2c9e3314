#pragma once

#include <unistd.h>
#include <utility>

namespace caddis {

/// An open file descriptor and its only owner.
class Descriptor {
public:
    Descriptor() noexcept = default;
    explicit Descriptor(int number) noexcept
        : m_number(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor()
    {
        if (isOpen())
            close(m_number);
    }

    int number() const noexcept { return m_number; }
    bool isOpen() const noexcept { return m_number >= 0; }

private:
    int m_number = -1;
};

} // namespace caddis
