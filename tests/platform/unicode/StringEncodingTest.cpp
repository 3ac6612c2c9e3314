#include "platform/unicode/StringEncoding.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

TEST(StringEncoding, NumbersGoBothWays)
{
    const std::pair<CFStringEncoding, NSStringEncoding> pairs[] = {
        { CFStringEncoding::UTF8, NSStringEncoding::UTF8 },
        { CFStringEncoding::Unicode, NSStringEncoding::Unicode },
        { CFStringEncoding::MacRoman, NSStringEncoding::MacOSRoman },
        { CFStringEncoding::WindowsLatin1, NSStringEncoding::WindowsCP1252 },
        { CFStringEncoding::EUCJP, NSStringEncoding::JapaneseEUC },
        { CFStringEncoding::DOSJapanese, NSStringEncoding::ShiftJIS },
        { CFStringEncoding::UTF16LE, NSStringEncoding::UTF16LittleEndian },
        { CFStringEncoding::Kamenicky, NSStringEncoding::Kamenicky },
        { CFStringEncoding::Big5, NSStringEncoding { 0x80000A03 } },
        { CFStringEncoding::ShiftJIS, NSStringEncoding { 0x80000A01 } },
        { CFStringEncoding::InvalidId, NSStringEncoding::InvalidId },
    };
    for (const auto& [encoding, number] : pairs) {
        EXPECT_EQ(convertEncodingToNSStringEncoding(encoding), number);
        EXPECT_EQ(convertNSStringEncodingToEncoding(number), encoding);
    }
}

TEST(StringEncoding, OtherNumbersStandForNothing)
{
    for (const std::uint64_t number : { 0ULL, 16ULL, 31ULL, 0x7FFFFFFFULL, 0x180000A03ULL })
        EXPECT_EQ(
            convertNSStringEncodingToEncoding(NSStringEncoding { number }), CFStringEncoding::InvalidId);
}

} // namespace
} // namespace caddis
