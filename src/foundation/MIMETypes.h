#pragma once

#include "platform/base/String.h"

#include <optional>

namespace caddis {
inline namespace NSStringOstraExtensions {

/// The MIME type of files with this extension (without its dot, in any case); nil for an unknown one.
///
/// What books and pages are made of stands in a table of our own (after the IANA registry's media types); all
/// else is asked of the system's shared MIME database, which is read at the first question and may be
/// missing.
std::optional<String> MIMETypeForExtension(const String& extension);

/// Whether documents of this type are HTML or XML: "text/html", "text/xml", "application/xml", and what ends
/// in "+xml". Parameters ("; charset=…") do not matter.
bool isMarkupMIMEType(const String& type);

} // namespace NSStringOstraExtensions
} // namespace caddis
