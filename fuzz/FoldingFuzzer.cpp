// Folding of any units.
//
// Invariants: the length stays, behind form C where that is part of it; folding twice is folding once; ASCII
// text is ASCII; a text that does not change is handed back itself; the tests agree with the conversions.

#include "Fuzz.h"
#include "platform/unicode/Normalization.h"
#include "text/Folding.h"

#include <cstring>

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::u16string units(size / 2, u'\0');
    std::memcpy(units.data(), data, units.size() * sizeof(char16_t));
    const String text(units);
    const String composed = precomposedStringWithCanonicalMapping(text);

    const auto check = [](const String& source, String (*fold)(const String&), const String& base) {
        String folded = fold(source);
        INVARIANT(folded.length() == base.length());
        INVARIANT(folded.isIdenticalTo(source) || folded != source);
        return folded;
    };
    const String folded = check(text, nonUmlautedString, text);
    INVARIANT(nonUmlautedString(folded).isIdenticalTo(folded));
    INVARIANT(isUmlautedString(text) == (folded != text));
    INVARIANT(isNonUmlautedEqualToStringNoCase(text, folded));
    check(text, lowercaseNonUmlautedString, text);
    check(text, uppercaseNonUmlautedNormalizedString, composed);

    const String ascii = check(text, lowercaseAsciiString, composed);
    for (const char16_t unit : ascii)
        INVARIANT(unit < 0x80);
    INVARIANT(isAsciiEqualToStringNoCase(ascii, composed));
    return 0;
}
