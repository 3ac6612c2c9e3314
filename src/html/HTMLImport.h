#pragma once

#include "platform/base/URL.h"
#include "platform/richtext/AttributedString.h"
#include "platform/web/WebArchive.h"
#include "platform/web/WebResourceLoadDelegate.h"

#include <optional>

/// HTML to attributed text, as the platform's text system imports it.
namespace caddis {

/// The import's document options, each under its key.
struct HTMLImportOptions {
    /// "UseWebKit": there is one importer, which is always used.
    bool useWebKit = true;
    /// "Timeout", in seconds: what has not been loaded by then is done without. Not positive: 60.
    float timeout = 0;
    /// "WebResourceLoadDelegate": decides what is loaded; nil: everything is. Borrowed.
    WebResourceLoadDelegate* webResourceLoadDelegate = nullptr;
    /// "BaseURL": what the page's references are relative to, unless the page says so itself.
    std::optional<URL> baseURL {};
    /// NSTextEncodingNameDocumentOption: failing that, or when it is not known, the page's own.
    String textEncodingName {};
    /// Where resources are looked for first; borrowed.
    const WebArchive* archive = nullptr;
};

/// The text of a page, with its documentAttributes. Any bytes give a text, if need be an empty one.
///
/// Styles come from style sheets, style attributes and the like; scripts don't run. Pictures and other
/// objects are attachments. What is loaded: style sheets, pictures, objects and frames, at most 1,000 of
/// them, 64 MiB each and 256 MiB together; "file" and "data" URLs are read here, "http" and "https" by
/// RemoteLoader.h, and no others. Time and memory are linear in the page and what it loads.
AttributedString attributedStringWithHTML(const Data& html, const HTMLImportOptions& options = {});

/// The text of a saved page, whose resources all come from the archive. Nil when its main resource is no
/// markup.
std::optional<AttributedString> attributedStringWithWebArchive(
    const WebArchive& archive, HTMLImportOptions options = {});

} // namespace caddis
