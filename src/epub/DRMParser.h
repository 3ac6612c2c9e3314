#pragma once

#include "platform/base/Data.h"
#include "platform/xml/XMLParser.h"

#include <optional>

namespace caddis {

/// Tells by a book's rights document which scheme of rights management it carries.
class DRMParser : private XMLParserDelegate {
public:
    /// Parses at once.
    explicit DRMParser(const Data& data);

    /// "Apple", "Kobo", "Barnes & Noble" or "Adobe"; nil when the document names none.
    const std::optional<String>& DRM() const { return m_drm; }

private:
    void didStartElement(std::string_view name, const XMLAttributes& attributes) override;
    void didEndElement(std::string_view) override { }
    void foundCharacters(const String& characters) override;

    std::optional<String> m_drm;
    bool m_isOperatorURL = false;
};

} // namespace caddis
