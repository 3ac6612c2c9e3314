// Names of character sets, and declarations of them, of any text.
//
// Invariants: case and signs do not count; what a name gives can be read here or is InvalidId; a declared
// name stands where the finder says, and another name in the place of a plain one declares that one.

#include "Fuzz.h"
#include "markup/CharsetFinder.h"
#include "markup/Charsets.h"
#include "platform/base/Log.h"
#include "platform/base/MutableString.h"
#include "platform/unicode/TextEncoding.h"
#include "text/CharacterTables.h"

#include <algorithm>

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setLogSink([](const String&) {});
    const String text = String::fromUtf8({ reinterpret_cast<const char*>(data), size });

    MutableString spaced;
    for (const char16_t unit : text)
        spaced.append(unit).append(u"-_ ");
    INVARIANT(charset2CFStringEncoding(spaced.view()) == charset2CFStringEncoding(text));
    const NSStringEncoding encoding = charset2NSStringEncoding(text);
    INVARIANT(encoding == NSStringEncoding::InvalidId || decodeText("a", encoding));

    headerEncoding(text);
    headerRefresh(text);
    INVARIANT(refreshInterval(text) >= 0);
    const auto range = markupCharsetRange(text);
    const auto charset = markupCharset(text);
    INVARIANT(range.has_value() == charset.has_value());
    if (!range)
        return 0;
    INVARIANT(range->length > 0 && range->end() <= text.length());
    if (!std::ranges::all_of(
            text.view(*range), [](char16_t unit) { return alphaNumCharacterSetRep().contains(unit); }))
        return 0;
    MutableString renamed;
    renamed.append(text.view({ 0, range->location }))
        .append(u"koi8-r")
        .append(text.substringFrom(range->end()));
    INVARIANT(markupCharset(std::move(renamed).take()) == u"koi8-r"_s);
    return 0;
}
