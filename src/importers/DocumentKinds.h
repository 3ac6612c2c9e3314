#pragma once

#include "platform/base/Value.h"

#include <optional>

/// Kinds of documents whose importers give poor text or none.
namespace caddis {

/// What an importer gave, put right by the file's ending: placeholders of ".mellel" removed, the markup of
/// ".mht" as text, the notes of ".scap" joined, and the text of HTML contents where there is no text.
Dictionary refinedMetaData(Dictionary metaData, const String& path);

/// The text of a file that no importer knows: outlines (".oo3", ".ooutline"), chat logs (".chatlog") and text
/// bundles. Nil for others, and for those without text.
std::optional<String> textOfDocument(const String& path);

} // namespace caddis
