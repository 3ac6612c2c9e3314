// What a name or an address says of a region's encoding: the Mac OS encodings by script, the legacy encodings
// by country.

#include "markup/Charsets.h"
#include "platform/base/URL.h"
#include "platform/unicode/TextEncoding.h"
#include "text/CharacterTables.h"

#include <algorithm>

namespace caddis {
inline namespace XmlExtensions {

namespace {

using enum CFStringEncoding;

struct Row {
    std::u16string_view name;
    CFStringEncoding encoding;
};

// The platform's names behind "x-mac-", letters only, and the spellings in use beside them. The numbers
// without a name are scripts that no converter here reads.
constexpr Row macNames[] = {
    { u"", MacRoman },
    { u"intosh", MacRoman },
    { u"roman", MacRoman },
    { u"romanlatin1", MacRomanLatin1 },
    { u"japanese", MacJapanese },
    { u"tradchinese", MacChineseTrad },
    { u"chinesetrad", MacChineseTrad },
    { u"simpchinese", MacChineseSimp },
    { u"chinesesimp", MacChineseSimp },
    { u"korean", MacKorean },
    { u"arabic", MacArabic },
    { u"hebrew", MacHebrew },
    { u"greek", MacGreek },
    { u"cyrillic", MacCyrillic },
    { u"devanagari", CFStringEncoding { 9 } },
    { u"gurmukhi", CFStringEncoding { 10 } },
    { u"gujarati", CFStringEncoding { 11 } },
    { u"oriya", CFStringEncoding { 12 } },
    { u"bengali", CFStringEncoding { 13 } },
    { u"tamil", CFStringEncoding { 14 } },
    { u"telugu", CFStringEncoding { 15 } },
    { u"kannada", CFStringEncoding { 16 } },
    { u"malayalam", CFStringEncoding { 17 } },
    { u"sinhalese", CFStringEncoding { 18 } },
    { u"burmese", CFStringEncoding { 19 } },
    { u"khmer", CFStringEncoding { 20 } },
    { u"thai", MacThai },
    { u"laotian", CFStringEncoding { 22 } },
    { u"georgian", CFStringEncoding { 23 } },
    { u"armenian", CFStringEncoding { 24 } },
    { u"tibetan", CFStringEncoding { 26 } },
    { u"mongolian", CFStringEncoding { 27 } },
    { u"ethiopic", CFStringEncoding { 28 } },
    { u"centraleurroman", MacCentralEurRoman },
    { u"centraleurope", MacCentralEurRoman },
    { u"ce", MacCentralEurRoman },
    { u"latin2", MacCentralEurRoman },
    { u"vietnamese", CFStringEncoding { 30 } },
    { u"symbol", MacSymbol },
    { u"dingbats", MacDingbats },
    { u"turkish", MacTurkish },
    { u"croatian", MacCroatian },
    { u"icelandic", MacIcelandic },
    { u"iceland", MacIcelandic },
    { u"romanian", MacRomanian },
    { u"romania", MacRomanian },
    { u"celtic", CFStringEncoding { 39 } },
    { u"gaelic", CFStringEncoding { 40 } },
    { u"farsi", MacFarsi },
    { u"ukrainian", MacUkrainian },
    { u"ukraine", MacUkrainian },
    { u"inuit", CFStringEncoding { 0xEC } },
};

// The encodings that browsers fall back on in the languages of these countries (HTML Standard,
// "locale-specific default"), by top-level domain.
constexpr Row countries[] = {
    { u"ae", WindowsArabic },
    { u"bg", WindowsCyrillic },
    { u"by", WindowsCyrillic },
    { u"cn", GB18030 },
    { u"cz", WindowsLatin2 },
    { u"ee", WindowsBalticRim },
    { u"eg", WindowsArabic },
    { u"gr", ISOLatinGreek },
    { u"hk", Big5 },
    { u"hr", WindowsLatin2 },
    { u"hu", ISOLatin2 },
    { u"il", WindowsHebrew },
    { u"ir", WindowsArabic },
    { u"jp", ShiftJIS },
    { u"kr", EUCKR },
    { u"lt", WindowsBalticRim },
    { u"lv", WindowsBalticRim },
    { u"mk", WindowsCyrillic },
    { u"pl", ISOLatin2 },
    { u"rs", WindowsCyrillic },
    { u"ru", WindowsCyrillic },
    { u"sa", WindowsArabic },
    { u"si", ISOLatin2 },
    { u"sk", WindowsLatin2 },
    { u"su", WindowsCyrillic },
    { u"th", DOSThai },
    { u"tr", WindowsLatin5 },
    { u"tw", Big5 },
    { u"ua", WindowsCyrillic },
    { u"vn", WindowsVietnamese },
};

template <std::size_t Size> CFStringEncoding lookUp(const Row (&rows)[Size], std::u16string_view name)
{
    const Row* const row = std::ranges::find(rows, name, &Row::name);
    return row == std::end(rows) ? InvalidId : row->encoding;
}

} // namespace

CFStringEncoding macEncodingNamed(std::u16string_view rest) { return lookUp(macNames, rest); }

NSStringEncoding defaultURLEncoding(const String& url)
{
    const auto parsed = URL::fromString(url);
    const String host = parsed ? parsed->host() : String();
    const std::size_t dot = host.view().rfind(u'.');
    if (dot == std::u16string_view::npos)
        return NSStringEncoding::InvalidId;
    std::u16string country(host.view().substr(dot + 1));
    std::ranges::transform(country, country.begin(), toLower);
    return convertEncodingToNSStringEncoding(lookUp(countries, country));
}

} // namespace XmlExtensions
} // namespace caddis
