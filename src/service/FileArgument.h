#pragma once

#include "platform/base/Value.h"
#include "platform/files/SecurityScopedAccess.h"

#include <optional>

namespace caddis {

/// The file that a request names, in one of three forms: bookmark data, a URL, or a path.
///
/// Bookmark data is resolved to a URL; a URL is accessed for as long as the reference lives, and gives a path
/// only when access could be started. Any other kind of value, and a bookmark that cannot be resolved, is no
/// path: the request then fails in its own way.
class FileArgument {
public:
    /// Logs "%@" with the error of a bookmark that cannot be resolved.
    explicit FileArgument(const std::optional<Value>& argument);

    const std::optional<String>& path() const { return m_path; }

private:
    void access(const URL& url);

    std::optional<SecurityScopedAccess> m_access;
    std::optional<String> m_path;
};

} // namespace caddis
