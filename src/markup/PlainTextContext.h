#pragma once

#include "markup/Html2Text.h"
#include "text/CharacterTables.h"

#include <cstdint>

namespace caddis {

/// The state of one conversion, shared by the driver, the handlers and the text-run routine.
struct PlainTextContext {
    /// Deep enough that no tags of a document lead out of its body.
    static constexpr std::int64_t WholeDocument = 0x3FFFFFFFFFFFFFFF;
    /// Bits of `indexFlags`.
    static constexpr std::uint64_t Index = 1, Snippet = 2, Anchor = 4, AllFlags = 7;

    char16_t* start; ///< the first unit of the output
    char16_t* cursor = start; ///< where the next unit is written
    char16_t* paragraphStart = start; ///< behind the last line or paragraph break
    std::u16string_view bodyBackground {}; ///< "BGCOLOR" of the last body tag
    EntityConversion conversion {};
    PlainTextOptions options {};
    bool inMarquee = false;
    bool inTextarea = false;
    bool inNoframes = false; ///< also inside iframe
    bool inNoscript = false;
    bool inOption = false; ///< of a select
    bool textSinceBreak = false; ///< text was written since the last break
    bool flowing = true; ///< false inside pre, code and plaintext: white space there is not trimmed
    bool pendingSpace = false; ///< the last run ended in white space; a space is owed before the next text
    bool produced = false;
    bool hiddenFont = false; ///< the font has the body's colour or is 1 to 4 points large
    bool feedDateFont = false; ///< inside a font of class "feed_date"
    bool didRemoveJunk = false;
    std::uint64_t hiddenDiv = 0; ///< open div elements from the hidden one on
    std::uint64_t hiddenSpan = 0;
    std::int64_t bodyDepth = options.onlyBody ? 0 : WholeDocument; ///< text is written only from 1 on
    std::int64_t linkDepth = 0; ///< open a and h1 to h9 elements
    std::uint64_t indexFlags = AllFlags;

    bool endsInWhite() const { return cursor != start && whiteCharacterSetRep().contains(cursor[-1]); }
    void write(char16_t unit) { *cursor++ = unit; }
};

/// Writes a text run, collapsed and with the space that is owed, by the rules of flowing or preformatted
/// text. It needs room for one unit more than the run has.
void appendRangeToPlainText(PlainTextContext& context, std::u16string_view run);

/// The run's units with its entities converted as the context says; runs of less than 4 units stay. The
/// result may stand behind the context's cursor, one unit apart, and is valid until something is written.
std::u16string_view convertedEntities(const PlainTextContext& context, std::u16string_view run);

} // namespace caddis
