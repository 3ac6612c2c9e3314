#pragma once

#include "importers/MetaDataImporter.h"
#include "platform/base/Value.h"

#include <optional>

namespace caddis {

/// The service object: what the application asks of the helper.
///
/// It knows values only, neither connections nor messages; OstraImExport.h has its operations as they stand
/// on the wire. A `file` argument is a file reference as FileArgument reads it; nil stands for a missing
/// argument or result. Failure of the work is a result (nil, false or an empty reply), never an exception.
///
/// One thread calls it, one operation at a time.
class CaddisHelper {
public:
    using File = std::optional<Value>;

    /// Ends the process with status 0 at once: no reply, no clean-up.
    [[noreturn]] void terminate();
    /// Does nothing; that it returns is the answer.
    void ping() { }

    /// The text of PDF data: see _attributedStringWithPDF. Nil for what is no PDF data.
    std::optional<Dictionary> attributedStringWithPDF(bool attributed, const std::optional<Value>& pdf);
    /// Attribute names and their values, without null objects; nil when nothing is known of the file.
    std::optional<Dictionary> metaDataForFile(const File& file);
    /// Whether metadata can be had for files of this kind.
    bool supportsFile(const File& file);

private:
    MetaDataImporter m_mdimporter;
};

} // namespace caddis
