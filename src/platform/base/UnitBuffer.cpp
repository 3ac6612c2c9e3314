#include "platform/base/UnitBuffer.h"

#include <limits>
#include <new>

namespace caddis {

bool UnitBuffer::s_failing = false;

bool UnitBuffer::tryAllocate(std::size_t units) noexcept
{
    if (units <= StackUnits)
        return true;
    if (s_failing || units > std::numeric_limits<std::size_t>::max() / sizeof(char16_t))
        return false;
    m_heap.reset(new (std::nothrow) char16_t[units]);
    return m_heap != nullptr;
}

} // namespace caddis
