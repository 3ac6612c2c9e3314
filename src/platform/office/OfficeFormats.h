#pragma once

#include "platform/office/Parts.h"
#include "platform/richtext/AttributedString.h"

/// Inside this folder: one reader for each format, for whoever has the parts already.
namespace caddis::office {

/// Nil without a main part that has a body.
std::optional<AttributedString> attributedStringWithOfficeOpenParts(const Parts& parts);
std::optional<AttributedString> attributedStringWithWordML(const Data& document);

/// Nil unless it is a text: neither sheets nor drawings are.
std::optional<AttributedString> attributedStringWithOpenDocumentParts(const Parts& parts);
std::optional<AttributedString> attributedStringWithFlatOpenDocument(const Data& document);

} // namespace caddis::office
