#pragma once

#include "bundles/support/Xml.h"
#include "platform/base/FunctionRef.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace caddis::bundles {

/// A document that is a zip archive: its parts by name, inflated in pieces.
///
/// Against bombs: all parts together give at most MaximumInflated bytes, and an archive with more than
/// MaximumParts members is no document.
class ZipPackage {
public:
    static constexpr std::size_t MaximumInflated = 128 * 1024 * 1024;
    static constexpr std::size_t MaximumParts = 65'536;

    /// Null when the file is no such archive.
    static std::unique_ptr<ZipPackage> open(const std::string& path);
    ~ZipPackage();
    ZipPackage(const ZipPackage&) = delete;
    ZipPackage& operator=(const ZipPackage&) = delete;

    /// In the order of the archive's directory.
    const std::vector<std::string>& names() const { return m_names; }

    /// Hands the part over in pieces until the sink answers false; true when it came to its end.
    bool read(const std::string& name, FunctionRef<bool(std::string_view)> sink);
    /// The first `limit` bytes of a part; nil when there is no such part.
    std::optional<std::string> read(const std::string& name, std::size_t limit);
    /// Reads a part as XML until the handler is done or the host wants no more.
    bool parseXml(const std::string& name, XmlHandler& handler, const Attributes& attributes);

private:
    struct Archive;
    explicit ZipPackage(std::unique_ptr<Archive> archive);

    std::unique_ptr<Archive> m_archive;
    std::vector<std::string> m_names;
    std::size_t m_left = MaximumInflated;
};

} // namespace caddis::bundles
