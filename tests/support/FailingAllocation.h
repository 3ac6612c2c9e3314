#pragma once

#include "platform/base/UnitBuffer.h"

namespace caddis {

/// While it lives, every UnitBuffer longer than its stack part fails to allocate.
class FailingAllocation {
public:
    FailingAllocation() { UnitBuffer::s_failing = true; }
    ~FailingAllocation() { UnitBuffer::s_failing = false; }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};

} // namespace caddis
