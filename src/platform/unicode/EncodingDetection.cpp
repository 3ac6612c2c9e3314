#include "platform/base/Log.h"
#include "platform/unicode/PlainText.h"

#include <algorithm>
#include <dlfcn.h>
#include <iterator>
#include <memory>
#include <uchardet.h>

namespace caddis {

namespace {

constexpr std::size_t WindowSize = 64 * 1024; // Some 15 ms, whatever the file's size.
constexpr std::size_t WindowContext = 1024; // ASCII letters beside the others tell languages apart.

// The detector's library, loaded when the first text needs it: nearly all are UTF-8, and linking it would
// make every start of the helper pay for its language tables. Never unloaded.
struct Detector {
    decltype(&uchardet_new) make = nullptr;
    decltype(&uchardet_handle_data) feed = nullptr;
    decltype(&uchardet_data_end) end = nullptr;
    decltype(&uchardet_get_charset) charset = nullptr;
    decltype(&uchardet_delete) destroy = nullptr;

    Detector()
    {
        void* library = dlopen("libuchardet.so.0", RTLD_NOW | RTLD_LOCAL);
        if (!library || !find(library, "uchardet_new", make) || !find(library, "uchardet_handle_data", feed)
            || !find(library, "uchardet_data_end", end) || !find(library, "uchardet_get_charset", charset)
            || !find(library, "uchardet_delete", destroy)) {
            make = nullptr;
            log(u"Can't detect text encodings: %s", std::string(dlerror()));
        }
    }
    bool isAvailable() const { return make != nullptr; }

private:
    template <typename Function> static bool find(void* library, const char* name, Function& function)
    {
        function = reinterpret_cast<Function>(dlsym(library, name));
        return function != nullptr;
    }
};

struct Charset {
    std::string_view name;
    CFStringEncoding encoding;
};

// Every name that uchardet 0.0.7 gives, with what files that look like it are really in. Left out: ASCII and
// the encodings of 7-bit bytes, which well-formed UTF-8 precedes; X-ISO-10646-UCS-4-*, which nobody writes.
constexpr Charset Charsets[] = {
    { "BIG5", CFStringEncoding::Big5 },
    { "EUC-JP", CFStringEncoding::EUCJP },
    { "EUC-KR", CFStringEncoding::DOSKorean },
    { "EUC-TW", CFStringEncoding::EUCTW },
    { "GB18030", CFStringEncoding::GB18030 },
    { "IBM852", CFStringEncoding::DOSLatin2 },
    { "IBM855", CFStringEncoding::DOSCyrillic },
    { "IBM865", CFStringEncoding::DOSNordic },
    { "IBM866", CFStringEncoding::DOSRussian },
    { "ISO-8859-1", CFStringEncoding::WindowsLatin1 },
    { "ISO-8859-10", CFStringEncoding::ISOLatin6 },
    { "ISO-8859-11", CFStringEncoding::DOSThai },
    { "ISO-8859-13", CFStringEncoding::ISOLatin7 },
    { "ISO-8859-15", CFStringEncoding::ISOLatin9 },
    { "ISO-8859-16", CFStringEncoding::ISOLatin10 },
    { "ISO-8859-2", CFStringEncoding::ISOLatin2 },
    { "ISO-8859-3", CFStringEncoding::ISOLatin3 },
    { "ISO-8859-4", CFStringEncoding::ISOLatin4 },
    { "ISO-8859-5", CFStringEncoding::ISOLatinCyrillic },
    { "ISO-8859-6", CFStringEncoding::ISOLatinArabic },
    { "ISO-8859-7", CFStringEncoding::ISOLatinGreek },
    { "ISO-8859-8", CFStringEncoding::ISOLatinHebrew },
    { "ISO-8859-9", CFStringEncoding::ISOLatin5 },
    { "JOHAB", CFStringEncoding::KSC5601_92_Johab },
    { "KOI8-R", CFStringEncoding::KOI8R },
    { "MAC-CENTRALEUROPE", CFStringEncoding::MacCentralEurRoman },
    { "MAC-CYRILLIC", CFStringEncoding::MacCyrillic },
    { "SHIFT_JIS", CFStringEncoding::DOSJapanese },
    { "TIS-620", CFStringEncoding::DOSThai },
    { "UHC", CFStringEncoding::DOSKorean },
    { "UTF-16", CFStringEncoding::Unicode },
    { "UTF-32", CFStringEncoding::UTF32 },
    { "UTF-8", CFStringEncoding::UTF8 },
    { "VISCII", CFStringEncoding::VISCII },
    { "WINDOWS-1250", CFStringEncoding::WindowsLatin2 },
    { "WINDOWS-1251", CFStringEncoding::WindowsCyrillic },
    { "WINDOWS-1252", CFStringEncoding::WindowsLatin1 },
    { "WINDOWS-1253", CFStringEncoding::WindowsGreek },
    { "WINDOWS-1255", CFStringEncoding::WindowsHebrew },
    { "WINDOWS-1256", CFStringEncoding::WindowsArabic },
    { "WINDOWS-1257", CFStringEncoding::WindowsBalticRim },
    { "WINDOWS-1258", CFStringEncoding::WindowsVietnamese },
};

std::string_view tellingPart(std::string_view bytes)
{
    const auto telling = std::ranges::find_if(bytes, [](char byte) { return (byte & 0x80) != 0; });
    const auto at = static_cast<std::size_t>(telling - bytes.begin());
    return bytes.substr(at - std::min(at, WindowContext), WindowSize);
}

} // namespace

NSStringEncoding detectedEncoding(std::string_view bytes)
{
    static const Detector detector;
    if (!detector.isAvailable())
        return NSStringEncoding::InvalidId;
    const std::unique_ptr<uchardet, decltype(&uchardet_delete)> state(detector.make(), detector.destroy);
    const std::string_view part = tellingPart(bytes);
    detector.feed(state.get(), part.data(), part.size());
    detector.end(state.get());
    const auto* found = std::ranges::find(Charsets, detector.charset(state.get()), &Charset::name);
    return found == std::end(Charsets) ? NSStringEncoding::InvalidId
                                       : convertEncodingToNSStringEncoding(found->encoding);
}

} // namespace caddis
