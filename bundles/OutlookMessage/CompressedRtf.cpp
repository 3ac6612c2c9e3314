#include "bundles/OutlookMessage/CompressedRtf.h"

#include "bundles/support/LittleEndian.h"
#include "platform/base/LeftOut.h"

#include <algorithm>
#include <array>

namespace caddis::bundles {

namespace {

// Sizes of both forms, kind and checksum; then the text.
constexpr std::size_t HeadSize = 16;
constexpr std::uint32_t CompressedKind = 0x75465A4C;
constexpr std::uint32_t StoredKind = 0x414C454D;
constexpr std::size_t MaximumText = 16 * 1024 * 1024;
constexpr std::size_t WindowSize = 4096;

// What the window holds at first (MS-OXRTFCP 2.1.3.1.2).
constexpr std::string_view WindowStart
    = "{\\rtf1\\ansi\\mac\\deff0\\deftab720{\\fonttbl;}{\\f0\\fnil \\froman \\fswiss \\fmodern \\fscript "
      "\\fdecor MS Sans SerifSymbolArialTimes New RomanCourier{\\colortbl\\red0\\green0\\blue0\r\n\\par "
      "\\pard\\plain\\f0\\fs20\\b\\i\\u\\tab\\tx";

// The last 4096 characters; each that is added goes to the text as well.
struct Window {
    std::array<char, WindowSize> characters {};
    std::size_t place = WindowStart.size();
    std::string text {};

    void add(char character)
    {
        characters[place] = character;
        place = (place + 1) % WindowSize;
        text += character;
    }
};

} // namespace

std::optional<std::string> decompressRtf(std::string_view bytes)
{
    const std::uint32_t kind = u32(bytes, 8);
    const std::size_t size = std::min<std::size_t>(u32(bytes, 4), MaximumText);
    if (size < u32(bytes, 4))
        noteLeftOut(u"text beyond 16 MiB");
    if (kind == StoredKind)
        return std::string(part(bytes, HeadSize, size));
    if (kind != CompressedKind)
        return std::nullopt;
    Window window;
    std::ranges::copy(WindowStart, window.characters.begin());
    std::size_t at = HeadSize;
    while (at < bytes.size() && window.text.size() < size) {
        // Eight items follow: a character each, or where its bit is set 12 bits of place and 4 of length.
        unsigned flags = static_cast<unsigned char>(bytes[at++]);
        for (int item = 0; item < 8 && at < bytes.size(); ++item, flags >>= 1U) {
            if ((flags & 1U) == 0) {
                window.add(bytes[at++]);
                continue;
            }
            const auto high = static_cast<unsigned char>(bytes[at]);
            const unsigned low = at + 1 < bytes.size() ? static_cast<unsigned char>(bytes[at + 1]) : 0;
            at += 2;
            const std::size_t from = (unsigned(high) << 4U) | (low >> 4U);
            if (from == window.place) // the end
                return std::move(window.text);
            for (std::size_t i = 0; i < (low & 0xFU) + 2; ++i)
                window.add(window.characters[(from + i) % WindowSize]);
        }
    }
    return std::move(window.text);
}

} // namespace caddis::bundles
