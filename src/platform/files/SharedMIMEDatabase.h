#pragma once

#include "platform/base/String.h"

#include <optional>
#include <string_view>
#include <unordered_map>

namespace caddis {

/// The desktop's shared MIME database, as far as extensions name types.
///
/// Source: the "globs2" files of the Shared MIME-info Database specification, one line per pattern:
///
///     weight ":" type ":" "*.extension" [":" flags]
///
/// Of several types for one extension the heaviest counts, and of equal ones the first. Other patterns are
/// passed over.
class SharedMIMEDatabase {
public:
    /// From the mime folders below XDG_DATA_HOME and XDG_DATA_DIRS, the user's first; read at the first call
    /// and kept.
    static const SharedMIMEDatabase& system();

    /// Adds the lines of one globs2 file; what is no such line is passed over.
    void add(std::string_view globs2);

    /// Nil for an unknown extension; it is given without its dot, in lower case.
    std::optional<String> typeForExtension(const String& extension) const;

private:
    struct Entry {
        int weight;
        String type;
    };

    std::unordered_map<String, Entry> m_types;
};

} // namespace caddis
