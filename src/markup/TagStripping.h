#pragma once

#include "markup/UpperAscii.h"
#include "platform/base/String.h"

#include <optional>
#include <span>

/// Taking tags out of markup. What has nothing to take out is returned itself, except by stripTags.
namespace caddis {
inline namespace XmlExtensions {

/// The text runs alone, each but one behind white space with one space before it: `<b>one</b><i>two</i>`
/// gives " one two". Comments and sections go too.
String stripTags(const String& text);

/// Without the tags of that name; what stands between them stays.
String stripTag(const String& text, UpperAscii name);

/// With all attributes gone from the tags of that name except their "HREF", or else their "SRC":
/// `<a class=x href='y'>` gives `<A HREF="y">`. A self-closing tag that has neither goes as a whole.
String stripAttributesOfTag(const String& text, UpperAscii name);

/// What elements begin with: `<script` stands for every start tag that begins so, in any case.
using TagEntries = std::span<const std::u16string_view>;

/// Without the elements that an entry begins, content and all.
String stripTagBodies(const String& text, TagEntries entries);
/// Only those elements, each behind the other with a line feed at its end. Nil: `text` or `entries` is empty.
std::optional<String> stripTagBodiesExcept(const String& text, TagEntries entries);

/// Each control character below U+0020 except tab, line feed and carriage return becomes a space.
String fixedXml(const String& text);

} // namespace XmlExtensions
} // namespace caddis
