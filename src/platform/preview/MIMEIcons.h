#pragma once

#include "platform/base/String.h"

#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace caddis {

/// The names of icons for MIME types, as the shared MIME database has them (Shared MIME-info Database
/// specification, 2.10 and 2.11).
class MIMEIcons {
public:
    explicit MIMEIcons(std::span<const String> dataFolders);

    /// The icon of the type itself first, then ever more general ones:
    /// "application-pdf", "x-office-document", "application-x-generic", "text-x-generic".
    std::vector<std::string> namesForType(const String& type) const;

private:
    using Names = std::unordered_map<String, std::string>;

    Names m_icons;
    Names m_genericIcons;
};

} // namespace caddis
