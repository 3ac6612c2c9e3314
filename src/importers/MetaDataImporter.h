#pragma once

#include "platform/base/Value.h"

#include <optional>

namespace caddis {

/// Gives the metadata attributes of files (keys such as "kMDItemTitle") by the kind of the file.
class MetaDataImporter {
public:
    /// The attributes; nil for a file of a kind that nothing here reads. A book is read by EPUBParser, and a
    /// damaged one has few or no attributes.
    std::optional<Dictionary> metaDataOfFileAtPath(const String& path);

    /// Whether the file exists and is of a kind that is read.
    bool supportsFileAtPath(const String& path);
};

} // namespace caddis
