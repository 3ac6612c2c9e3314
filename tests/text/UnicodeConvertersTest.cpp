#include "text/UnicodeConverters.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <array>

namespace caddis {
namespace {

using Status = ConversionStatus;

// The status and what was written, into a buffer of `capacity` units.
std::pair<Status, String> fromUtf8(std::string_view bytes, std::size_t capacity)
{
    std::array<char16_t, 16> units {};
    const Conversion done = convertUTF8ToUnicode(bytes, std::span(units).first(capacity));
    return { done.status, String({ units.data(), done.length }) };
}

std::pair<Status, std::string> toUtf8(std::u16string_view units, std::size_t capacity)
{
    std::array<char, 16> bytes {};
    const Conversion done = convertUnicodeToUTF8(units, std::span(bytes).first(capacity));
    return { done.status, std::string(bytes.data(), done.length) };
}

TEST(UnicodeConverters, FillTheCallersBufferWithWholeCharacters)
{
    EXPECT_EQ(fromUtf8("na\xC3\xAFve", 16), std::pair(Status::Success, u"na\u00EFve"_s));
    EXPECT_EQ(fromUtf8("na\xC3\xAFve", 5), std::pair(Status::Success, u"na\u00EFve"_s));
    EXPECT_EQ(fromUtf8("a\xF0\x9F\x98\x80z", 2), std::pair(Status::DestinationFull, u"a"_s));
    EXPECT_EQ(toUtf8(u"na\u00EFve", 6), std::pair(Status::Success, std::string("na\xC3\xAFve")));
    EXPECT_EQ(toUtf8(u"na\u00EFve", 3), std::pair(Status::DestinationFull, std::string("na")));
    EXPECT_EQ(toUtf8(u"x", 0), std::pair(Status::DestinationFull, std::string()));
}

TEST(UnicodeConverters, TellIllFormedSourcesAndUnknownEncodings)
{
    EXPECT_EQ(fromUtf8("a\xFFz", 16), std::pair(Status::IllFormedSource, u"a\uFFFDz"_s));
    EXPECT_EQ(fromUtf8("a\xFFz", 2), std::pair(Status::DestinationFull, u"a\uFFFD"_s));
    EXPECT_EQ(toUtf8(std::u16string_view(u"\xD800", 1), 16),
        std::pair(Status::IllFormedSource, std::string("\xEF\xBF\xBD")));
    std::array<char16_t, 8> units {};
    const Conversion latin = convertEncodingToUnicode("\x93", CFStringEncoding::WindowsLatin1, units);
    EXPECT_EQ(latin.status, Status::Success);
    EXPECT_EQ(units[0], 0x201C);
    const Conversion unknown = convertEncodingToUnicode("a", CFStringEncoding(0xFFFFFF), units);
    EXPECT_EQ(unknown.status, Status::UnknownEncoding);
    EXPECT_EQ(unknown.length, 0U);
}

} // namespace
} // namespace caddis
