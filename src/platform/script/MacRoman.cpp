#include "platform/script/MacRoman.h"

#include "platform/base/MutableString.h"

namespace caddis {

namespace {

// Bytes 0x80 to 0xFF (the Unicode consortium's APPLE/ROMAN.TXT).
constexpr std::u16string_view HighHalf = u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü"
                                         u"†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
                                         u"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
                                         u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
static_assert(HighHalf.size() == 128);

} // namespace

String stringFromMacRoman(std::string_view bytes)
{
    MutableString text(bytes.size());
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        text.append(byte < 0x80 ? char16_t { byte } : HighHalf[byte - 0x80U]);
    }
    return std::move(text).take();
}

std::optional<unsigned char> macRomanByte(char16_t unit)
{
    if (unit < 0x80)
        return static_cast<unsigned char>(unit);
    const std::size_t index = HighHalf.find(unit);
    if (index == std::u16string_view::npos)
        return std::nullopt;
    return static_cast<unsigned char>(index + 0x80);
}

} // namespace caddis
