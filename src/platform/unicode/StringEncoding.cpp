#include "platform/unicode/StringEncoding.h"

namespace caddis {

namespace {

constexpr std::uint32_t OtherEncoding = 0x80000000;

struct Pair {
    CFStringEncoding encoding;
    NSStringEncoding number;
};

// Compared as they stand.
constexpr Pair exact[] = {
    { CFStringEncoding::UTF8, NSStringEncoding::UTF8 },
    { CFStringEncoding::ASCII, NSStringEncoding::ASCII },
    { CFStringEncoding::Unicode, NSStringEncoding::Unicode },
    { CFStringEncoding::Kamenicky, NSStringEncoding::Kamenicky },
    { CFStringEncoding::KOI8CS2, NSStringEncoding::KOI8CS2 },
};

// Compared by their lower twelve bits.
constexpr Pair byBase[] = {
    { CFStringEncoding::MacRoman, NSStringEncoding::MacOSRoman },
    { CFStringEncoding::WindowsLatin1, NSStringEncoding::WindowsCP1252 },
    { CFStringEncoding::DOSJapanese, NSStringEncoding::ShiftJIS },
    { CFStringEncoding::WindowsCyrillic, NSStringEncoding::WindowsCP1251 },
    { CFStringEncoding::WindowsGreek, NSStringEncoding::WindowsCP1253 },
    { CFStringEncoding::WindowsLatin5, NSStringEncoding::WindowsCP1254 },
    { CFStringEncoding::WindowsLatin2, NSStringEncoding::WindowsCP1250 },
    { CFStringEncoding::ISOLatin1, NSStringEncoding::ISOLatin1 },
    { CFStringEncoding::EUCJP, NSStringEncoding::JapaneseEUC },
    { CFStringEncoding::MacSymbol, NSStringEncoding::Symbol },
    { CFStringEncoding::ISOLatin2, NSStringEncoding::ISOLatin2 },
    { CFStringEncoding::ISO2022JP, NSStringEncoding::ISO2022JP },
    { CFStringEncoding::NextStepLatin, NSStringEncoding::NEXTSTEP },
};

} // namespace

NSStringEncoding convertEncodingToNSStringEncoding(CFStringEncoding encoding)
{
    if (encoding == CFStringEncoding::InvalidId)
        return NSStringEncoding::InvalidId;
    for (const Pair& pair : exact) {
        if (pair.encoding == encoding)
            return pair.number;
    }
    const auto value = static_cast<std::uint32_t>(encoding);
    for (const Pair& pair : byBase) {
        if (static_cast<std::uint32_t>(pair.encoding) == (value & 0xFFF))
            return pair.number;
    }
    return static_cast<NSStringEncoding>(OtherEncoding | value);
}

CFStringEncoding convertNSStringEncodingToEncoding(NSStringEncoding encoding)
{
    if (encoding == NSStringEncoding::InvalidId)
        return CFStringEncoding::InvalidId;
    for (const Pair& pair : exact) {
        if (pair.number == encoding)
            return pair.encoding;
    }
    for (const Pair& pair : byBase) {
        if (pair.number == encoding)
            return pair.encoding;
    }
    const auto value = static_cast<std::uint64_t>(encoding);
    const bool isOther = value >= OtherEncoding && value < (std::uint64_t { 1 } << 32);
    return isOther ? static_cast<CFStringEncoding>(value - OtherEncoding) : CFStringEncoding::InvalidId;
}

} // namespace caddis
