#pragma once

#include "markup/UpperAscii.h"
#include "platform/base/FunctionRef.h"
#include "platform/base/Range.h"
#include "platform/base/String.h"

/// The forgiving single-pass scanner under every markup reader.
///
/// A scan cuts a string into alternating text runs and tags and hands each pair to a handler.
/// `Hello <b class="x">world</b>!` is three calls:
///
///     text "Hello "   tag <b class="x">   name "b"
///     text "world"    tag </b>            name "b"
///     text "!"        tag empty           TagKind::Text
///
/// Runs and tags together are the whole string, in order. Nothing is malformed: what cannot be closed is
/// delivered as text. All positions are absolute UTF-16 indexes into the string.
namespace caddis {
inline namespace XmlExtensions {

enum class TagKind : unsigned {
    Text = 0, ///< the last call of a scan; it only delivers the trailing run
    Element = 1, ///< start, end or self-closing tag, <!DOCTYPE>, <?xml?>, or a whole script or style element
    Comment = 2, ///< begins with <!-
    Section = 3, ///< begins with <![
};

struct TagEvent {
    const String& string; ///< the string being scanned; never changed
    const char16_t* characters; ///< its units, valid for the whole scan
    char16_t* mutableCharacters; ///< the same units when the scan is Characters::Mutable, else null
    Range name {}; ///< from the tag's first letter on; none for comments, sections and the last call
    Range tag {}; ///< from < through >, for script and style elements through the closing tag's >
    Range text {}; ///< the run before the tag; may be empty
    TagKind kind = TagKind::Text;

    std::u16string_view units(Range range) const { return { characters + range.location, range.length }; }
    bool nameIs(UpperAscii wanted) const
    {
        return name.length == wanted.length() && wanted.equalsNoCase(units(name));
    }
    /// `</p>`: at least three units, the second a slash.
    bool isEndTag() const { return tag.length >= 3 && characters[tag.location + 1] == u'/'; }
    /// `<br/>`: at least three units, the next to last a slash.
    bool isSelfClosing() const { return tag.length >= 3 && characters[tag.end() - 2] == u'/'; }
    /// A tag of at least three units that opens an element.
    bool isStartTag() const { return tag.length >= 3 && !isEndTag() && !isSelfClosing(); }
    /// A script or style element that came as one tag, its content and closing tag in it.
    bool isWholeElement() const;
};

enum class Scan : bool { Continue = false, Stop = true };
enum class Characters { ReadOnly, Mutable };

/// A handler is any callable; its own members are its context record. It is called once per tag and once at
/// the end, may throw, and stops the scan by returning Scan::Stop; what the last two calls return counts no
/// more.
using TagHandlerFunction = FunctionRef<Scan(const TagEvent&)>;

/// Scans `string`; false, without any call, when it is empty or there is no memory for its private copy.
///
/// Characters::Mutable gives the handler a private, writable copy of the units for the scan, of which it may
/// change those of the present text run and tag and all before them.
bool GetTagsOfString(
    const String& string, TagHandlerFunction handler, Characters access = Characters::ReadOnly);

/// GetTagsOfString inside an exception guard: a handler's exception is logged and ends in false.
bool parseXmlWithHandler(
    const String& string, TagHandlerFunction handler, Characters access = Characters::ReadOnly);

} // namespace XmlExtensions
} // namespace caddis
