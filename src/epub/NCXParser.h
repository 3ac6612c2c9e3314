#pragma once

#include "platform/base/Data.h"
#include "platform/base/MutableString.h"
#include "platform/base/Value.h"
#include "platform/xml/XMLParser.h"

#include <optional>
#include <vector>

namespace caddis {

/// Reads the table of contents out of an NCX document.
///
/// The result is an array of navigation entries. An entry is a Dictionary:
///
///     "content"   String: the target's member path, percent escapes removed, without "#" and what follows
///     "label"     String: the trimmed title
///     "children"  Array of navigation entries, where there are any
class NCXParser : private XMLParserDelegate {
public:
    /// Parses at once; a document that breaks off gives the entries up to there.
    explicit NCXParser(const Data& data);

    const Array& children() const { return m_children; }

private:
    // An entry while the tree grows. Entries lie in one vector and know their children by index.
    struct Entry {
        String content;
        String label;
        std::vector<std::size_t> children;
    };

    void didStartElement(std::string_view name, const XMLAttributes& attributes) override;
    void didEndElement(std::string_view name) override;
    void foundCharacters(const String& characters) override;
    void flush();
    Array childrenOf(const Entry& entry) const;

    int m_navLabel = 0; // How deep inside navLabel elements.
    std::optional<MutableString> m_label;
    std::optional<String> m_content;
    std::vector<Entry> m_entries { Entry() }; // The first is the root.
    std::vector<std::size_t> m_navPoints { 0 }; // The open entries, the root at the bottom.
    Array m_children;
};

} // namespace caddis
