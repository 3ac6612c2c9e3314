#pragma once

#include "platform/base/String.h"

/// HTML to plain text, for indexing, searching and display.
///
///     <h1>Title</h1><p>One <b>two</b><br>three<script>…</script>     becomes     Title⏎⏎One two⏎three
///
/// White space is collapsed, block elements are set apart by line feeds, and what a browser would not show is
/// left out: scripts, hidden elements, options, text areas, fallbacks for frames and scripts. Invalid markup
/// is read like any other. All functions return `html` itself when nothing was produced or no memory can be
/// had. Time is linear in the text; memory is one output buffer.
namespace caddis {
inline namespace Html2Text {

struct PlainTextOptions {
    bool reformat = false; ///< keep the line structure of preformatted text
    bool onlyBody = false; ///< leave out what stands outside the body, if there is one
    bool removeJunk
        = false; ///< drop overlong runs and paragraphs, the title, and text in its background's colour
    bool googleTags = false; ///< obey "googleon:" and "googleoff:" comments
    bool imageAlts = true; ///< write the "ALT", else the "TITLE", of images
};

struct EntityConversion {
    bool entities = true; ///< all entities
    bool stdEntities
        = true; ///< `&quot; &amp; &lt; &gt;` and their decimal forms; without `entities` only those
    bool nonUmlauted = false; ///< letters that entities give lose their accents

    bool any() const { return entities || stdEntities; }
};

struct PlainText {
    String text;
    bool didRemoveJunk = false;
};

String stringByConvertingHtml2PlainText(const String& html);
String stringByConvertingHtml2ReformattedPlainText(const String& html);
PlainText stringByConvertingHtml2PlainTextNonUmlauted(
    const String& html, bool nonUmlauted, PlainTextOptions options = {});
PlainText stringByConvertingHtml2PlainTextEntities(
    const String& html, EntityConversion conversion, PlainTextOptions options = {});

/// Only the body's text runs as they stand, one space before each: " a b" for `<body>a<b>b</b></body>`.
String stringByConvertingHtml2SimplifiedPlainText(const String& html);

} // namespace Html2Text
} // namespace caddis
