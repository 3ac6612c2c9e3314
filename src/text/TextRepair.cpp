#include "text/TextRepair.h"

#include "platform/unicode/Normalization.h"

namespace caddis {
inline namespace NSStringOstraExtensions {

namespace {

bool isLineEnd(char16_t unit)
{
    return (unit >= u'\n' && unit <= u'\r') || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

bool isJunk(char16_t unit)
{
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    return isControl && unit != u'\t' && !isLineEnd(unit);
}

// How many units behind a soft hyphen end its line: blanks, then one line end. 0 when it stands inside the
// line.
std::size_t lineEndLength(std::u16string_view rest)
{
    const std::size_t blanks = std::min(rest.find_first_not_of(u" \t"), rest.size());
    if (blanks == rest.size() || !isLineEnd(rest[blanks]))
        return 0;
    return blanks + (rest.substr(blanks).starts_with(u"\r\n") ? 2 : 1);
}

} // namespace

void fixAndNormalizeString(MutableString& text)
{
    char16_t* const units = text.data();
    std::size_t kept = 0;
    for (std::size_t index = 0; index < text.length(); ++index) {
        const std::size_t joined = units[index] == 0xAD ? lineEndLength(text.view().substr(index + 1)) : 0;
        if (joined > 0)
            index += joined;
        else if (!isJunk(units[index]))
            units[kept++] = units[index];
    }
    text.truncate(kept);

    const String repaired = std::move(text).take();
    text = MutableString(repaired.length());
    text.append(precomposedStringWithCanonicalMapping(repaired));
}

} // namespace NSStringOstraExtensions
} // namespace caddis
