#pragma once

#include "platform/base/Exception.h"

#include <type_traits>

namespace caddis {

/// What `work` returns; nil, or false, when it throws one of the platform's exceptions, of which nothing is
/// said. Other exceptions pass: running out of memory ends the helper.
template <typename Work> std::invoke_result_t<Work&> barrier(Work&& work)
{
    try {
        return work();
    } catch (const Exception&) {
        return std::invoke_result_t<Work&>();
    }
}

} // namespace caddis
