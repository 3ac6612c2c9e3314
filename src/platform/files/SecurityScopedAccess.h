#pragma once

#include "platform/base/URL.h"

#include <optional>

namespace caddis {

/// Access to a file held for the duration of a request.
///
/// It starts when the file can be opened and read, or when nothing stands there yet but its folder does (a
/// file about to be written); it ends with the object.
class SecurityScopedAccess {
public:
    static std::optional<SecurityScopedAccess> start(const URL& url);
    SecurityScopedAccess(SecurityScopedAccess&& other) noexcept;
    SecurityScopedAccess& operator=(SecurityScopedAccess&& other) noexcept;
    ~SecurityScopedAccess();

private:
    explicit SecurityScopedAccess(int descriptor)
        : m_descriptor(descriptor)
    {
    }

    int m_descriptor;
};

} // namespace caddis
