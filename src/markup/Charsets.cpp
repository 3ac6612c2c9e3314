#include "markup/Charsets.h"

#include "platform/base/Log.h"
#include "platform/unicode/TextEncoding.h"
#include "text/CharacterTables.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

// A name is first looked up by the number in it, then by its words. The order of the words matters: the first
// one that fits decides.

namespace caddis {
inline namespace XmlExtensions {

namespace {

using enum CFStringEncoding;

constexpr std::size_t ShortestName = 3;

// In lower case, without anything but letters and digits.
std::u16string normalized(std::u16string_view name)
{
    std::u16string result;
    for (const char16_t unit : name) {
        if (alphaNumCharacterSetRep().contains(unit))
            result += toLower(unit);
    }
    return result;
}

struct NumberRow {
    unsigned number;
    CFStringEncoding encoding;
};

constexpr NumberRow numbers[] = {
    { 437, DOSLatinUS },
    // Kept on purpose: EUC-JP, although ISO 646 names plain ASCII.
    { 646, EUCJP },
    { 708, ISOLatinArabic },
    { 737, DOSGreek },
    { 775, DOSBalticRim },
    { 850, DOSLatin1 },
    { 851, DOSGreek1 },
    { 852, DOSLatin2 },
    { 855, DOSCyrillic },
    { 857, DOSTurkish },
    { 860, DOSPortuguese },
    { 861, DOSIcelandic },
    { 862, DOSHebrew },
    { 863, DOSCanadianFrench },
    { 864, DOSArabic },
    { 865, DOSNordic },
    { 866, DOSRussian },
    { 869, DOSGreek2 },
    { 874, DOSThai },
    { 932, DOSJapanese },
    { 936, DOSChineseSimplif },
    { 949, DOSKorean },
    { 950, DOSChineseTrad },
    { 1250, WindowsLatin2 },
    { 1251, WindowsCyrillic },
    { 1252, WindowsLatin1 },
    { 1253, WindowsGreek },
    { 1254, WindowsLatin5 },
    { 1255, WindowsHebrew },
    { 1256, WindowsArabic },
    { 1257, WindowsBalticRim },
    { 1258, WindowsVietnamese },
    { 1361, WindowsKoreanJohab },
    { 6461, EUCJP },
    { 8591, ISOLatin1 },
    { 8859, ISOLatin1 },
    { 80591, ISOLatin1 },
    { 85591, ISOLatin1 },
    { 85922, ISOLatin2 },
    { 88191, ISOLatin1 },
    { 88391, ISOLatin1 },
    { 88511, ISOLatin1 },
    { 88571, ISOLatin1 },
    { 88581, ISOLatin1 },
    { 88582, ISOLatin2 },
    { 88591, ISOLatin1 },
    { 88592, ISOLatin2 },
    { 88593, ISOLatin3 },
    { 88594, ISOLatin4 },
    { 88595, ISOLatinCyrillic },
    { 88596, ISOLatinArabic },
    { 88597, ISOLatinGreek },
    { 88598, ISOLatinHebrew },
    { 88599, ISOLatin5 },
    { 88611, ISOLatin1 },
    { 88691, ISOLatin1 },
    { 88791, ISOLatin1 },
    { 89091, ISOLatin1 },
    { 89599, ISOLatin5 },
    { 99591, ISOLatin1 },
    { 100591, ISOLatin1 },
    { 810091, ISOLatin1 },
    { 885910, ISOLatin6 },
    { 885911, ISOLatinThai },
    { 885913, ISOLatin7 },
    { 885914, ISOLatin8 },
    { 885915, ISOLatin9 },
    { 885916, ISOLatin10 },
};
static_assert(std::ranges::is_sorted(numbers, {}, &NumberRow::number));

// The number from the first digit on; 0 when there is none or it is too large to be meant.
unsigned numberIn(std::u16string_view name)
{
    constexpr unsigned Largest = 100'000'000;
    unsigned number = 0;
    for (std::size_t index = name.find_first_of(u"0123456789"); index < name.size(); ++index) {
        if (name[index] < u'0' || name[index] > u'9')
            break;
        number = number * 10 + (name[index] - u'0');
        if (number >= Largest)
            return 0;
    }
    return number;
}

CFStringEncoding encodingOfNumber(unsigned number, std::u16string_view name)
{
    if (number == 2022)
        return name == u"iso2022jp1" ? ISO2022JP1
            : name == u"iso2022jp2"  ? ISO2022JP2
            : name == u"iso2022jp3"  ? ISO2022JP3
                                     : ISO2022JP;
    // A digit that slipped into 8859-1.
    if (number >= 885101 && number <= 885391 && number % 10 == 1)
        return ISOLatin1;
    const NumberRow* const row = std::ranges::lower_bound(numbers, number, {}, &NumberRow::number);
    return row != std::end(numbers) && row->number == number ? row->encoding : InvalidId;
}

enum class Fit { Equals, StartsWith, Contains };

struct WordRow {
    std::u16string_view word;
    Fit fit;
    CFStringEncoding encoding;
};

bool fits(const WordRow& row, std::u16string_view name)
{
    switch (row.fit) {
    case Fit::Equals:
        return name == row.word;
    case Fit::StartsWith:
        return name.starts_with(row.word);
    case Fit::Contains:
        return name.find(row.word) != std::u16string_view::npos;
    }
    return false;
}

CFStringEncoding firstFit(std::span<const WordRow> rows, std::u16string_view name)
{
    const auto row
        = std::ranges::find_if(rows, [&](const WordRow& candidate) { return fits(candidate, name); });
    return row == rows.end() ? InvalidId : row->encoding;
}

constexpr WordRow words[] = {
    { u"latin10", Fit::Contains, ISOLatin10 },
    { u"latin1", Fit::Contains, ISOLatin1 },
    { u"latin", Fit::Equals, ISOLatin1 },
    { u"latin2", Fit::Contains, ISOLatin2 },
    { u"latin3", Fit::Contains, ISOLatin3 },
    { u"latin4", Fit::Contains, ISOLatin4 },
    { u"latin5", Fit::Contains, ISOLatin5 },
    { u"latin6", Fit::Contains, ISOLatin6 },
    { u"latin7", Fit::Contains, ISOLatin7 },
    { u"latin8", Fit::Contains, ISOLatin8 },
    { u"latin9", Fit::Contains, ISOLatin9 },
    { u"iso", Fit::Equals, ISOLatin1 },
    { u"visual", Fit::Equals, ISOLatinHebrew },
    { u"xkamcs", Fit::Equals, Kamenicky },
    { u"kamcs", Fit::Equals, Kamenicky },
    { u"kbkam", Fit::Equals, Kamenicky },
    { u"koi8cs2", Fit::Equals, KOI8CS2 },
    { u"csn369103", Fit::Equals, KOI8CS2 },
    { u"usascii", Fit::Equals, ASCII },
    { u"ascii", Fit::Equals, ASCII },
    // Kept on purpose: UTF-7 is read as ASCII.
    { u"utf7", Fit::Contains, ASCII },
    { u"gb2312", Fit::Contains, EUCCN },
    { u"gbk", Fit::StartsWith, GBK },
    { u"gb18030", Fit::Contains, GB18030 },
    // Kept on purpose: common misspellings are UTF-8.
    { u"utf", Fit::Equals, UTF8 },
    { u"utf8", Fit::Contains, UTF8 },
    { u"utf08", Fit::Contains, UTF8 },
    { u"uft8", Fit::Contains, UTF8 },
    { u"utf2d8", Fit::Contains, UTF8 },
    { u"utf9", Fit::Equals, UTF8 },
    { u"unicode", Fit::Equals, UTF8 },
    { u"utf16", Fit::Contains, Unicode },
    { u"shiftj", Fit::Contains, ShiftJIS },
    { u"sjis", Fit::Contains, ShiftJIS },
    { u"koi8", Fit::StartsWith, KOI8R },
    { u"big5", Fit::Contains, Big5 },
    { u"euckr", Fit::Contains, EUCKR },
    { u"eucj", Fit::Contains, EUCJP },
    { u"euccn", Fit::Contains, EUCCN },
    { u"euctw", Fit::Contains, EUCTW },
    { u"ksc56011987", Fit::Equals, KSC5601_87 },
    { u"ksc560187", Fit::Equals, KSC5601_87 },
    { u"ksc560192", Fit::StartsWith, KSC5601_92_Johab },
    // Kept on purpose: "en" is shorter than any name and never gets here.
    { u"en", Fit::Equals, UTF8 },
    { u"enus", Fit::Equals, UTF8 },
    { u"engb", Fit::Equals, UTF8 },
    { u"none", Fit::Equals, ASCII },
};

CFStringEncoding encodingOfWords(std::u16string_view name)
{
    if (name.starts_with(u"windows"))
        return WindowsLatin1;
    if (name.starts_with(u"mac"))
        return macEncodingNamed(name.substr(3));
    if (name.starts_with(u"xmac"))
        return macEncodingNamed(name.substr(4));
    return firstFit(words, name);
}

// Names that say nothing and are not worth a line in the log.
bool saysNothing(std::u16string_view name)
{
    if (name.size() <= 1)
        return name.empty() || std::u16string_view(u"/0<>").find(name.front()) != std::u16string_view::npos;
    constexpr std::u16string_view Automatic = u"AUTO";
    return std::ranges::equal(name, Automatic, {}, toUpper);
}

} // namespace

CFStringEncoding charset2CFStringEncoding(std::u16string_view name)
{
    const std::u16string plain = normalized(name);
    if (plain.size() < ShortestName)
        return InvalidId;
    const unsigned number = numberIn(plain);
    const CFStringEncoding numbered = number ? encodingOfNumber(number, plain) : InvalidId;
    return numbered == InvalidId ? encodingOfWords(plain) : numbered;
}

NSStringEncoding charset2NSStringEncoding(std::u16string_view name)
{
    const CFStringEncoding encoding = charset2CFStringEncoding(name);
    // The platform's own number for this one is that of its DOS relative only.
    if (encoding == ShiftJIS)
        return NSStringEncoding::ShiftJIS;
    if (isEncodingAvailable(encoding))
        return convertEncodingToNSStringEncoding(encoding);
    if (!saysNothing(name))
        log(u"Unknown/Unsupported encoding: %@", name);
    return NSStringEncoding::InvalidId;
}

} // namespace XmlExtensions
} // namespace caddis
