#pragma once

#include "platform/richtext/AttributedString.h"

#include <optional>

namespace caddis {

/// The text of a document of any kind that is known here, with its documentAttributes:
///
/// - RTFD, as a folder or as one block; RTF
/// - documents of word processors: DOCX, OpenDocument text (flat too), Word 2003's XML, DOC
/// (OfficeDocument.h)
/// - otherwise plain text in any encoding (PlainText.h), in Helvetica 12
///
/// Contents decide, not names. Nil when the file can't be read, and for bytes that are no text: a PDF, and
/// those with a NUL among the first 4096 which neither a byte-order mark nor their order explains.
std::optional<AttributedString> attributedStringWithPath(const String& path);

} // namespace caddis
