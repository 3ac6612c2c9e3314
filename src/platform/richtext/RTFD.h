#pragma once

#include "platform/richtext/AttributedString.h"

#include <optional>

/// RTFD: a folder with the text, "TXT.rtf", and the attachments beside it; or the same as one block of bytes
/// (FlatRTFD.h).
namespace caddis {

/// Nil without a member "TXT.rtf" that is RTF.
std::optional<AttributedString> attributedStringWithRTFDFileWrapper(const FileWrapper& folder);
/// Nil when the bytes are neither flat RTFD nor RTF.
std::optional<AttributedString> initWithRTFD(const Data& data);

/// The text and its attachments, the latter under names that a folder can have and that differ. `attributes`
/// are written to the head of the text.
FileWrapper RTFDFileWrapperFromString(const AttributedString& text, const Dictionary& attributes);
/// The same as one block. Nil when it would be longer than 2 GiB.
std::optional<Data> RTFDFromString(const AttributedString& text, const Dictionary& attributes);

} // namespace caddis
