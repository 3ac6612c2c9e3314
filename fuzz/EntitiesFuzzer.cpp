// References to characters and back, on any units.
//
// Invariants: decoding never lengthens a text; in place and by value give the same; a text without & is
// handed back itself; decoding undoes each encoding of it; what is encoded has none of the signs that it
// replaces.

#include "Fuzz.h"
#include "markup/Entities.h"

#include <cstring>
#include <vector>

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The first byte says whether the rest is UTF-8 or raw units.
    std::vector<char16_t> raw(size / 2);
    if (!raw.empty())
        std::memcpy(raw.data(), data + size % 2, raw.size() * 2);
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const String text
        = size && data[0] == 0xFF ? String({ raw.data(), raw.size() }) : String::fromUtf8(bytes);

    const EntityOptions all[]
        = { {}, { .quotes = false }, { .onlyNumericEntities = true }, { .nonUmlauted = true } };
    const bool hasReferences = text.view().find(u'&') != std::u16string_view::npos;
    for (const EntityOptions& options : all) {
        const String decoded = stringByConvertingEntitiesToCharacters(text, options);
        INVARIANT(decoded.length() <= text.length());
        INVARIANT(hasReferences || decoded.isIdenticalTo(text));
        std::u16string units(text.view());
        units.resize(convertEntities2Characters(units, units.data(), options));
        INVARIANT(decoded == units);
    }

    const String standard = stringByConvertingCharactersToStandardEntities(text);
    INVARIANT(standard.view().find_first_of(u"\"<>") == std::u16string_view::npos);
    INVARIANT(standard.length() < 4 || stringByConvertingStandardEntitiesToCharacters(standard) == text);
    if (!hasReferences) {
        INVARIANT(
            stringByConvertingEntitiesToCharacters(stringByConvertingCharactersToEntities(text)) == text);
        const String ascii = stringByConvertingHighCharactersToEntities(text);
        INVARIANT(stringByConvertingEntitiesToCharacters(ascii) == text);
    }
    return 0;
}
