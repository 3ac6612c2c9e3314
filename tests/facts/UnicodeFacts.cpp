#include "facts/Facts.h"

#include "text/CharacterTables.h"

#include <bit>
#include <cstdio>

namespace caddis::facts {

namespace {

std::size_t countOf(const CharacterSetRep& set)
{
    std::size_t count = 0;
    for (const unsigned char byte : set.bitmap())
        count += static_cast<std::size_t>(std::popcount(byte));
    return count;
}

String hexadecimal(const char* pattern, char16_t unit)
{
    char text[8];
    std::snprintf(text, sizeof text, pattern, static_cast<unsigned>(unit));
    return String::fromLatin1(text);
}

using SetAccessor = const CharacterSetRep& (*)();
const std::pair<const char*, SetAccessor> sets[] = {
    { "alpha", alphaCharacterSetRep },
    { "alphaNum", alphaNumCharacterSetRep },
    { "digit", digitCharacterSetRep },
    { "lower", lowerCharacterSetRep },
    { "upper", upperCharacterSetRep },
    { "space", spaceCharacterSetRep },
    { "white", whiteCharacterSetRep },
};

using UnitMapping = char16_t (*)(char16_t);
const std::pair<const char*, UnitMapping> mappings[] = {
    { "lower", toLower },
    { "upper", toUpper },
    { "fold", umlautsToAscii },
};

} // namespace

// NAME.count, upper:HEX, lower:HEX, fold:HEX, firstAlphaCharacter, lastAlphaCharacter.
Answer unicodeFact(const Question& question)
{
    const std::string key = question.key.utf8();
    for (const auto& [name, set] : sets) {
        if (key == std::string(name) + ".count")
            return decimal(countOf(set()));
    }
    for (const auto& [name, map] : mappings) {
        const std::string prefix = std::string(name) + ':';
        if (key.starts_with(prefix)) {
            const auto unit = static_cast<char16_t>(std::stoul(key.substr(prefix.size()), nullptr, 16));
            return hexadecimal("%04X", map(unit));
        }
    }
    if (key == "firstAlphaCharacter")
        return hexadecimal("0x%X", firstAlphaCharacter());
    if (key == "lastAlphaCharacter")
        return hexadecimal("0x%X", lastAlphaCharacter());
    return Answer::skip("no such key");
}

} // namespace caddis::facts
