#include "platform/unicode/EncodingList.h"

#include <algorithm>
#include <iterator>

namespace caddis::encodings {

namespace {

// Names: ICU 72 (`uconv -l`) and glibc 2.36 (`iconv -l`). iconv stands in where ICU has no table. For the
// Chinese, Japanese and Korean Mac OS encodings the nearest Windows code page does; they differ in a few
// private-use characters. ICU's Mac Cyrillic is the current one with the Ukrainian letters.
constexpr Row rows[] = {
    // clang-format off
    { CFStringEncoding::MacRoman, Engine::ICU8, "macintosh" },
    { CFStringEncoding::MacJapanese, Engine::ICU, "ibm-943_P15A-2003", true },
    { CFStringEncoding::MacChineseTrad, Engine::ICU, "windows-950-2000" },
    { CFStringEncoding::MacKorean, Engine::ICU, "windows-949-2000" },
    { CFStringEncoding::MacArabic, Engine::Own },
    { CFStringEncoding::MacHebrew, Engine::Own },
    { CFStringEncoding::MacGreek, Engine::ICU8, "x-mac-greek" },
    { CFStringEncoding::MacCyrillic, Engine::ICU8, "x-mac-cyrillic" },
    { CFStringEncoding::MacThai, Engine::Own },
    { CFStringEncoding::MacChineseSimp, Engine::ICU, "windows-936-2000" },
    { CFStringEncoding::MacCentralEurRoman, Engine::ICU8, "x-mac-centraleurroman" },
    { CFStringEncoding::MacSymbol, Engine::Own },
    { CFStringEncoding::MacDingbats, Engine::Own },
    { CFStringEncoding::MacTurkish, Engine::ICU8, "x-mac-turkish" },
    { CFStringEncoding::MacCroatian, Engine::Own },
    { CFStringEncoding::MacIcelandic, Engine::Own },
    { CFStringEncoding::MacRomanian, Engine::Own },
    { CFStringEncoding::MacFarsi, Engine::Own },
    { CFStringEncoding::MacUkrainian, Engine::ICU8, "x-mac-cyrillic" },
    { CFStringEncoding::Unicode, Engine::Utf16 },
    { CFStringEncoding::UTF8, Engine::Utf8 },
    { CFStringEncoding::UTF16BE, Engine::Utf16BE },
    { CFStringEncoding::UTF16LE, Engine::Utf16LE },
    { CFStringEncoding::UTF32, Engine::ICU, "UTF-32" },
    { CFStringEncoding::UTF32BE, Engine::ICU, "UTF-32BE" },
    { CFStringEncoding::UTF32LE, Engine::ICU, "UTF-32LE" },
    { CFStringEncoding::UTF7, Engine::ICU, "UTF-7" },
    { CFStringEncoding::ISOLatin1, Engine::Latin1 },
    { CFStringEncoding::ISOLatin2, Engine::ICU8, "ISO-8859-2" },
    { CFStringEncoding::ISOLatin3, Engine::ICU8, "ISO-8859-3" },
    { CFStringEncoding::ISOLatin4, Engine::ICU8, "ISO-8859-4" },
    { CFStringEncoding::ISOLatinCyrillic, Engine::ICU8, "ISO-8859-5" },
    { CFStringEncoding::ISOLatinArabic, Engine::ICU8, "ISO-8859-6" },
    { CFStringEncoding::ISOLatinGreek, Engine::ICU8, "ISO-8859-7" },
    { CFStringEncoding::ISOLatinHebrew, Engine::ICU8, "ISO-8859-8" },
    { CFStringEncoding::ISOLatin5, Engine::ICU8, "ISO-8859-9" },
    { CFStringEncoding::ISOLatin6, Engine::ICU8, "ISO-8859-10" },
    { CFStringEncoding::ISOLatinThai, Engine::ICU8, "ISO-8859-11" },
    { CFStringEncoding::ISOLatin7, Engine::ICU8, "ISO-8859-13" },
    { CFStringEncoding::ISOLatin8, Engine::ICU8, "ISO-8859-14" },
    { CFStringEncoding::ISOLatin9, Engine::ICU8, "ISO-8859-15" },
    { CFStringEncoding::ISOLatin10, Engine::Iconv8, "ISO-8859-16" },
    { CFStringEncoding::DOSLatinUS, Engine::ICU8, "ibm-437", true },
    { CFStringEncoding::DOSGreek, Engine::ICU8, "ibm-737", true },
    { CFStringEncoding::DOSBalticRim, Engine::ICU8, "ibm-775", true },
    { CFStringEncoding::DOSLatin1, Engine::ICU8, "ibm-850", true },
    { CFStringEncoding::DOSGreek1, Engine::ICU8, "ibm-851", true },
    { CFStringEncoding::DOSLatin2, Engine::ICU8, "ibm-852", true },
    { CFStringEncoding::DOSCyrillic, Engine::ICU8, "ibm-855", true },
    { CFStringEncoding::DOSTurkish, Engine::ICU8, "ibm-857", true },
    { CFStringEncoding::DOSPortuguese, Engine::ICU8, "ibm-860", true },
    { CFStringEncoding::DOSIcelandic, Engine::ICU8, "ibm-861", true },
    { CFStringEncoding::DOSHebrew, Engine::ICU8, "ibm-862", true },
    { CFStringEncoding::DOSCanadianFrench, Engine::ICU8, "ibm-863", true },
    { CFStringEncoding::DOSArabic, Engine::ICU8, "ibm-864", true },
    { CFStringEncoding::DOSNordic, Engine::ICU8, "ibm-865", true },
    { CFStringEncoding::DOSRussian, Engine::ICU8, "ibm-866", true },
    { CFStringEncoding::DOSGreek2, Engine::ICU8, "ibm-869", true },
    { CFStringEncoding::DOSThai, Engine::ICU8, "windows-874-2000" },
    { CFStringEncoding::DOSJapanese, Engine::ICU, "windows-31j", true },
    { CFStringEncoding::DOSChineseSimplif, Engine::ICU, "windows-936-2000" },
    { CFStringEncoding::DOSKorean, Engine::ICU, "windows-949-2000" },
    { CFStringEncoding::DOSChineseTrad, Engine::ICU, "windows-950-2000" },
    { CFStringEncoding::WindowsLatin1, Engine::ICU8, "windows-1252" },
    { CFStringEncoding::WindowsLatin2, Engine::ICU8, "windows-1250" },
    { CFStringEncoding::WindowsCyrillic, Engine::ICU8, "windows-1251" },
    { CFStringEncoding::WindowsGreek, Engine::ICU8, "windows-1253" },
    { CFStringEncoding::WindowsLatin5, Engine::ICU8, "windows-1254" },
    { CFStringEncoding::WindowsHebrew, Engine::ICU8, "windows-1255" },
    { CFStringEncoding::WindowsArabic, Engine::ICU8, "windows-1256" },
    { CFStringEncoding::WindowsBalticRim, Engine::ICU8, "windows-1257" },
    { CFStringEncoding::WindowsVietnamese, Engine::ICU8, "windows-1258" },
    { CFStringEncoding::WindowsKoreanJohab, Engine::Iconv, "JOHAB" },
    { CFStringEncoding::ASCII, Engine::Ascii },
    { CFStringEncoding::GB2312, Engine::ICU, "ibm-1383_P110-1999" },
    { CFStringEncoding::GBK, Engine::ICU, "windows-936-2000" },
    { CFStringEncoding::GB18030, Engine::ICU, "GB18030" },
    { CFStringEncoding::KSC5601_87, Engine::ICU, "EUC-KR" },
    { CFStringEncoding::KSC5601_92_Johab, Engine::Iconv, "JOHAB" },
    { CFStringEncoding::ISO2022JP, Engine::ICU, "ISO-2022-JP" },
    { CFStringEncoding::ISO2022JP2, Engine::ICU, "ISO-2022-JP-2" },
    { CFStringEncoding::ISO2022JP1, Engine::ICU, "ISO-2022-JP-1" },
    { CFStringEncoding::ISO2022JP3, Engine::Iconv, "ISO-2022-JP-3" },
    { CFStringEncoding::ISO2022CN, Engine::ICU, "ISO-2022-CN" },
    { CFStringEncoding::ISO2022CNExt, Engine::ICU, "ISO-2022-CN-EXT" },
    { CFStringEncoding::ISO2022KR, Engine::ICU, "ISO-2022-KR" },
    { CFStringEncoding::EUCJP, Engine::ICU, "EUC-JP" },
    { CFStringEncoding::EUCCN, Engine::ICU, "GB2312" },
    { CFStringEncoding::EUCTW, Engine::ICU, "ibm-964" },
    { CFStringEncoding::EUCKR, Engine::ICU, "EUC-KR" },
    { CFStringEncoding::ShiftJIS, Engine::ICU, "Shift_JIS", true },
    { CFStringEncoding::KOI8R, Engine::ICU8, "KOI8-R" },
    { CFStringEncoding::Big5, Engine::ICU, "Big5" },
    { CFStringEncoding::HZGB2312, Engine::ICU, "HZ-GB-2312" },
    { CFStringEncoding::Big5HKSCS, Engine::ICU, "Big5-HKSCS" },
    { CFStringEncoding::VISCII, Engine::Iconv8, "VISCII" },
    { CFStringEncoding::KOI8U, Engine::ICU8, "KOI8-U" },
    { CFStringEncoding::UTF7IMAP, Engine::ICU, "IMAP-mailbox-name" },
    { CFStringEncoding::NextStepLatin, Engine::Own },
    { CFStringEncoding::EBCDICCP037, Engine::ICU8, "ibm-37" },
    { CFStringEncoding::Kamenicky, Engine::Own },
    { CFStringEncoding::KOI8CS2, Engine::Own },
    // clang-format on
};
static_assert(std::size(rows) <= RowLimit);

} // namespace

const Row* rowOf(CFStringEncoding encoding)
{
    const Row* const row = std::ranges::find(rows, encoding, &Row::encoding);
    return row == std::end(rows) ? nullptr : row;
}

std::size_t numberOf(const Row& row) { return static_cast<std::size_t>(&row - rows); }

} // namespace caddis::encodings
