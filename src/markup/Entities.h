#pragma once

#include "platform/base/String.h"

/// Character references, both ways.
///
/// To characters: `&quot &amp &lt &gt &apos &nbsp`, numeric references, and the names of EntityTable.
///
///     &lt;b&gt; caf&eacute; &#8211; &#x41;   becomes   <b> café – A
///
/// The six names may lack their `;` and may be followed by anything (`&ampx` is `&x`). So may numeric
/// references. A name of the table may lack it where nothing is ambiguous: a Latin-1 name that no letter,
/// digit or `=` follows (`&copy 2001`, but not the `&copy=` of a link). What is no reference stays as it
/// stands, and what was made is not read again: `&amp;lt;` is `&lt;`. Numbers up to U+10FFFF count, 0
/// excepted.
///
/// All functions return `text` itself where nothing had to change or no memory can be had. Up to 256 units
/// they allocate nothing but the result. One pass; time is linear in the text whatever it holds.
namespace caddis {
inline namespace XmlExtensions {

struct EntityOptions {
    bool quotes = true; ///< `&quot` counts
    bool onlyNumericEntities = false; ///< names stay
    bool nonUmlauted = false; ///< letters that references give lose their accents
};

/// Texts shorter than four units stay as they are.
String stringByConvertingEntitiesToCharacters(const String& text, EntityOptions options = {});
String stringByConvertingEntitiesToCharactersNonUmlauted(const String& text, bool nonUmlauted);
/// Only `&quot &amp &lt &gt &apos`.
String stringByConvertingStandardEntitiesToCharacters(const String& text);

/// The same on raw units. `out` has room for `text.size()` units, the most that can result, and may be the
/// text's own storage. Returns the number of units written.
std::size_t convertEntities2Characters(std::u16string_view text, char16_t* out, EntityOptions options = {});

/// Each character that has a row in EntityTable becomes `&name;`. The markup's own signs stay.
String stringByConvertingCharactersToEntities(const String& text);
/// `"`, `&`, `<` and `>` become `&quot;`, `&amp;`, `&lt;` and `&gt;`.
String stringByConvertingCharactersToStandardEntities(const String& text);
/// Each character above 127 becomes its decimal number, `&#8364;`; a surrogate pair is one character.
String stringByConvertingHighCharactersToEntities(const String& text);

} // namespace XmlExtensions
} // namespace caddis
