#pragma once

#include <cstddef>
#include <memory>

namespace caddis {

/// A working copy of UTF-16 units: up to 256 of them on the stack, longer ones on the heap.
///
/// A failed allocation is a return value, so that "out of memory returns the receiver unchanged" is one line:
///
///     UnitBuffer buffer;
///     if (!buffer.tryAllocate(text.length()))
///         return text;
class UnitBuffer {
public:
    static constexpr std::size_t StackUnits = 256;

    UnitBuffer() noexcept = default;
    UnitBuffer(const UnitBuffer&) = delete;
    UnitBuffer& operator=(const UnitBuffer&) = delete;

    /// Room for `units` uninitialised units; false when there is no memory for them. Call it once.
    bool tryAllocate(std::size_t units) noexcept;

    char16_t* data() noexcept { return m_heap ? m_heap.get() : m_stack; }
    const char16_t* data() const noexcept { return m_heap ? m_heap.get() : m_stack; }
    char16_t& operator[](std::size_t index) noexcept { return data()[index]; }

private:
    friend class FailingAllocation;
    static bool s_failing; // Set by tests: every allocation from the heap fails.

    std::unique_ptr<char16_t[]> m_heap;
    char16_t m_stack[StackUnits];
};

} // namespace caddis
