#pragma once

#include "platform/unicode/PlainText.h"

#include <optional>

/// Text bundles (textbundle.org): a folder "name.textbundle" with the text in a file "text.md", "text.txt" …,
/// what it shows in "assets/", and "info.json"; or that folder in a zip archive, "name.textpack". Which of
/// both a path names is told by its end, in any case.
namespace caddis {
inline namespace MarkDown {

/// The text and its encoding, found as stringWithContentsOfFile (TextFile.h) does with `encoding`.
///
/// In a folder the first entry "text.…" (by name, case does not count) is the text. A pack is unpacked into a
/// temporary folder for the time of the call; of several texts in it the last one counts. Nil for any other
/// path, a bundle without a text, a text that can't be read, and a pack that can't be unpacked (Compression.h
/// says why that may be) or has more than 256 MiB in it.
std::optional<PlainText> stringWithContentsOfTextBundleFile(const String& path, NSStringEncoding encoding);

/// Puts the bundle as a folder, assets included, at `toPath`, where nothing may be yet: copies what lies at
/// "name.textbundle"; unpacks a pack and takes its first bundle, and makes the folder above when it is
/// missing. True when the bundle stands there. What else lies in the folder above is never touched.
bool decompressTextBundleFile(const String& path, const String& toPath);

} // namespace MarkDown
} // namespace caddis
