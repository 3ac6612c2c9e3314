#pragma once

#include "html/HTMLImport.h"

namespace caddis {

/// The text of a file that is a page or a saved page (web archive); nil for any other one.
///
/// A page is told by its extension or by how it begins, a saved page by its contents. Rich text and property
/// lists under a page's name are none. `delegate` decides what is loaded for it, as in HTMLImportOptions.
std::optional<AttributedString> attributedStringWithMarkupFile(
    const String& path, WebResourceLoadDelegate* delegate);

} // namespace caddis
