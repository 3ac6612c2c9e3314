#pragma once

#include "platform/base/Log.h"

namespace caddis {
inline namespace NSObjectOstraExtensions {

/// Whether the object's class answers the selector, which each class says of itself. Logs
/// "Class %@ does not respond to selector %@." when it does not.
template <typename Object> bool safeRespondsToSelector(const Object&, std::u16string_view selector)
{
    const bool responds = Object::respondsToSelector(selector);
    if (!responds)
        log(u"Class %@ does not respond to selector %@.", Object::ClassName, selector);
    return responds;
}

} // namespace NSObjectOstraExtensions
} // namespace caddis
