// Markup bytes in, with a header and a default of any kind, and out again.
//
// Invariants: no more than three units a byte; the encoding reported is the one that gives this text;
// well-formed UTF-8 that declares nothing comes back unchanged.

#include "Fuzz.h"
#include "markup/CharsetFinder.h"
#include "markup/MarkupData.h"
#include "platform/base/Log.h"
#include "platform/unicode/TextEncoding.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setLogSink([](const String&) {});
    constexpr std::u16string_view headers[]
        = { u"", u"shift_jis", u"big5", u"x", u"iso-2022-jp-3", u"kamcs" };
    const unsigned choice = size ? data[0] : 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + (size ? 1 : 0), size ? size - 1 : 0);
    const auto fallback = choice & 0x80 ? NSStringEncoding::ISOLatin1 : NSStringEncoding::UTF8;
    const MarkupText markup = markupTextOfData(
        bytes, { headers[choice % 6], fallback, choice & 0x40 ? u"http://example.ru/"_s : String() });
    INVARIANT(markup.text.length() <= 3 * bytes.size());
    const String again = decodeText(bytes, markup.usedEncoding).value_or(String());
    INVARIANT(again == markup.text || again.view().substr(1) == markup.text.view());

    const Data written = markupData(markup.text);
    const auto utf8 = String::fromStrictUtf8(bytes);
    const bool isPlain = utf8 && choice == 0 && !bytes.starts_with("\xEF\xBB\xBF") && !markupCharset(*utf8);
    INVARIANT(!isPlain || (markup.text == *utf8 && written.chars() == bytes));
    return 0;
}
