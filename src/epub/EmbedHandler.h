#pragma once

#include "markup/TagScanner.h"
#include "platform/base/Data.h"
#include "platform/base/MutableString.h"
#include "platform/base/URL.h"

#include <optional>

namespace caddis {

/// Turns one document of an unpacked book into its part of a single HTML document: pictures and style sheets
/// are embedded, links to other documents lead to their anchors.
///
/// A handler for the tag scanner. Of the first document everything inside its html element is copied, of the
/// others what is inside their body. The text behind the last tag is not.
struct EmbedHandler {
    /// A few pictures named a million times must not fill the memory: when so much is embedded, further ones
    /// are left out.
    static constexpr std::size_t MostEmbeddedBytes = 256 << 20;

    const URL& baseURL; ///< of the document, inside the unpacked copy
    const String& bookFolder; ///< the unpacked copy, links resolved: nothing outside it is read
    std::size_t& embeddedBytes; ///< of the whole book; see MostEmbeddedBytes
    MutableString output; ///< this document's part
    std::optional<String> anchorName; ///< cleared once it is written
    bool notFirst = false; ///< another document stands before this one
    bool copying = false;

    Scan operator()(const TagEvent& event);

private:
    void copyTag(const TagEvent& event);
    void embedImage(const TagEvent& event);
    void rewriteLink(const TagEvent& event);
    void embedStyleSheet(const TagEvent& event);
    std::optional<URL> fileURLOfAttribute(const TagEvent& event, UpperAscii name) const;
    std::optional<Data> contentsOfURL(const URL& url);
};

} // namespace caddis
