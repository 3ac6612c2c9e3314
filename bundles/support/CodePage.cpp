#include "bundles/support/CodePage.h"

#include "bundles/support/LittleEndian.h"
#include "platform/unicode/TextEncoding.h"

#include <algorithm>

namespace caddis::bundles {

namespace {

struct Row {
    unsigned codePage;
    CFStringEncoding encoding;
};
constexpr Row Rows[] = {
    { 437, CFStringEncoding::DOSLatinUS },
    { 850, CFStringEncoding::DOSLatin1 },
    { 852, CFStringEncoding::DOSLatin2 },
    { 866, CFStringEncoding::DOSRussian },
    { 874, CFStringEncoding::DOSThai },
    { 932, CFStringEncoding::DOSJapanese },
    { 936, CFStringEncoding::DOSChineseSimplif },
    { 949, CFStringEncoding::DOSKorean },
    { 950, CFStringEncoding::DOSChineseTrad },
    { 1200, CFStringEncoding::UTF16LE },
    { 1201, CFStringEncoding::UTF16BE },
    { 1250, CFStringEncoding::WindowsLatin2 },
    { 1251, CFStringEncoding::WindowsCyrillic },
    { 1253, CFStringEncoding::WindowsGreek },
    { 1254, CFStringEncoding::WindowsLatin5 },
    { 1255, CFStringEncoding::WindowsHebrew },
    { 1256, CFStringEncoding::WindowsArabic },
    { 1257, CFStringEncoding::WindowsBalticRim },
    { 1258, CFStringEncoding::WindowsVietnamese },
    { 10000, CFStringEncoding::MacRoman },
    { 10001, CFStringEncoding::MacJapanese },
    { 10007, CFStringEncoding::MacCyrillic },
    { 10029, CFStringEncoding::MacCentralEurRoman },
    { 20866, CFStringEncoding::KOI8R },
    { 28591, CFStringEncoding::ISOLatin1 },
    { 28592, CFStringEncoding::ISOLatin2 },
    { 28605, CFStringEncoding::ISOLatin9 },
    { 51932, CFStringEncoding::EUCJP },
    { 54936, CFStringEncoding::GB18030 },
    { 65001, CFStringEncoding::UTF8 },
};

} // namespace

String textInCodePage(std::string_view bytes, unsigned codePage)
{
    const auto* const row
        = std::ranges::find_if(Rows, [&](const Row& candidate) { return candidate.codePage == codePage; });
    const auto encoding = row == std::end(Rows) ? CFStringEncoding::WindowsLatin1 : row->encoding;
    return decodeText(bytes, encoding).value_or(String());
}

String textInUtf16(std::string_view bytes)
{
    std::u16string units(bytes.size() / 2, u'\0');
    std::memcpy(units.data(), bytes.data(), 2 * units.size());
    return String(units);
}

std::string_view untilZero(std::string_view bytes) { return bytes.substr(0, bytes.find('\0')); }

std::optional<double> secondsOfFileTime(std::uint64_t time)
{
    constexpr double PerSecond = 1e7;
    constexpr double From1601To1970 = 11'644'473'600;
    constexpr double Year10000 = 253'402'300'800;
    const double seconds = static_cast<double>(time) / PerSecond - From1601To1970;
    return time == 0 || seconds >= Year10000 ? std::nullopt : std::optional(seconds);
}

} // namespace caddis::bundles
