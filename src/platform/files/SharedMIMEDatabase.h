#pragma once

#include "platform/base/String.h"
#include "platform/files/MIMECache.h"

#include <optional>
#include <vector>

namespace caddis {

/// The desktop's shared MIME database: the caches in the mime folders below XDG_DATA_HOME and XDG_DATA_DIRS,
/// the user's first.
class SharedMIMEDatabase {
public:
    /// Opened at the first call and kept.
    static const SharedMIMEDatabase& system();

    explicit SharedMIMEDatabase(std::vector<MIMECache> caches)
        : m_caches(std::move(caches))
    {
    }

    /// Nil for an unknown extension; it is given without its dot, in lower case. The first cache that knows
    /// it decides.
    std::optional<String> typeForExtension(const String& extension) const;

    /// The type and what it is a kind of, from near to far: other names are replaced by the type's own. At
    /// most 64 types.
    std::vector<String> lineageOf(const String& type) const;

private:
    std::vector<MIMECache> m_caches;
};

} // namespace caddis
