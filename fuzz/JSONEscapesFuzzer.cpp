// JSON and JavaScript escapes, both ways; the bytes are the units.
//
// Invariants: decoding what was encoded gives the text back; decoding never makes a text longer; a text that
// comes back equal is the same object.

#include "Fuzz.h"
#include "markup/JSONEscapes.h"

#include <cstring>

using caddis::String;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::u16string units(size / 2, u'\0');
    if (!units.empty())
        std::memcpy(units.data(), data, units.size() * 2);
    for (const String& text :
        { String(units), String::fromLatin1({ reinterpret_cast<const char*>(data), size }) }) {
        const String encoded = caddis::stringByConvertingCharactersToJSON(text);
        INVARIANT(encoded == text ? encoded.isIdenticalTo(text) : encoded.length() > text.length());
        INVARIANT(caddis::stringByConvertingJSONToCharacters(encoded) == text);
        for (const bool javaScript : { false, true }) {
            const String decoded = caddis::stringByConvertingJSONToCharacters(text, javaScript);
            INVARIANT(decoded == text ? decoded.isIdenticalTo(text) : decoded.length() < text.length());
        }
    }
    return 0;
}
