#pragma once

#include "platform/richtext/AttributedString.h"

#include <optional>

/// Rich Text Format, as the platform writes and reads it (RTF 1.9.1 with its own control words).
namespace caddis {

/// Nil unless the bytes begin as RTF does. Whatever follows gives a text: unknown groups are passed over,
/// open ones are closed at the end.
///
/// Attachments are taken from `package`'s members by name, never from a path that the text names; without a
/// member of its name one is left out. Footnotes, headers, pictures and hidden text are left out.
///
/// Bounded: time and memory by the document's size, groups deeper than 1,000 share their innermost state.
std::optional<AttributedString> attributedStringWithRTF(
    const Data& rtf, const FileWrapper* package = nullptr);

enum class RTFAttachments {
    LeftOut, ///< plain RTF can't hold them
    Named, ///< as the members of an RTFD document
};

/// The text as RTF. `attributes` are those of the document that are written to its head; CharacterEncoding,
/// CocoaRTFVersion and Converted are not. The names of attachments are those in `memberNames`, by index.
Data RTFFromString(const AttributedString& text, const Dictionary& attributes,
    RTFAttachments attachments = RTFAttachments::LeftOut, const std::vector<String>& memberNames = {});

} // namespace caddis
