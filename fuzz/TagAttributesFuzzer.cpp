// The attribute, style and header readers on any units.
//
// Invariants: a value lies inside its tag, is not empty and does not end in white space; the text of a
// value found in a range is the one found in the tag alone.

#include "Fuzz.h"
#include "markup/HeaderFields.h"
#include "markup/TagAttributes.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const String text = String::fromUtf8({ reinterpret_cast<const char*>(data), size });
    const std::size_t start = text.length() / 8;
    const Range tag { start, text.length() - start };
    for (const UpperAscii name : { UpperAscii("A"), UpperAscii("HREF"), UpperAscii("CONTENT") }) {
        for (const Reading reading : { Reading::Strict, Reading::Lenient }) {
            const auto range = rangeOfAttributeOfTagCharacters(text, tag, name, reading);
            if (!range)
                continue;
            INVARIANT(range->location > tag.location + name.length() && range->end() <= tag.end());
            INVARIANT(range->length > 0 && !whiteCharacterSetRep().contains(text[range->end() - 1]));
        }
        const auto range = rangeOfAttributeOfTagCharacters(text, tag, name);
        const auto value = attributeOfTagCharacters(text.view(tag), name);
        INVARIANT(range.has_value() == value.has_value() && (!range || *value == text.view(*range)));
        const auto field = rangeOfHeaderFieldNamed(text, name);
        INVARIANT(!field || (field->length > 0 && field->end() <= text.length()));
        const auto property = attributeOfStyleWithName(text, name);
        INVARIANT(!property || property->length() < text.length());
    }
    const auto measure = getTagWidth(text);
    INVARIANT(!measure || measure->width > 0);
    backgroundStyleURLOfTagCharacters(text);
    return 0;
}
