#pragma once

#include "platform/richtext/AttributedString.h"

#include <optional>
#include <string_view>

/// The documents of word processors as attributed strings: styles with what they inherit, lists with their
/// markers as text, tables, links, pictures as attachments, foot- and endnotes behind the text. Heads and
/// feet of pages, comments, and what was deleted in a tracked change are left out.
///
/// Everything is bounded by the file's size and fixed limits: markup by 64 MiB a part, attachments by 512 MiB
/// together, elements by 256 levels. Markup that breaks off gives the text until there.
namespace caddis {

/// Of a zip archive: DOCX (ECMA-376) or OpenDocument text. Nil when it is neither.
std::optional<AttributedString> attributedStringWithOfficePackage(const String& path);

/// Whether the front of an XML document is that of one of these kinds.
bool isOfficeXML(std::string_view bytes);
/// Of a single XML document: Word 2003's XML, or OpenDocument text in its flat form. Nil when it is neither.
std::optional<AttributedString> attributedStringWithOfficeXML(const Data& data);

/// Of the older binary Word format, which begins with D0 CF 11 E0: whatever of soffice, antiword and catdoc
/// is installed reads it, the first in this order that can, each in a bounded process of its own. The last
/// two give plain text. Nil when none can.
std::optional<AttributedString> attributedStringWithOldWordFile(const String& path);

} // namespace caddis
