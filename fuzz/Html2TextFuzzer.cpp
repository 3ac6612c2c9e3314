// HTML to plain text, every method and option.
//
// Invariants: the result is at most one unit longer than the markup (the sanitizers watch the buffer); text
// in a hidden element, an option or a script never appears.

#include "Fuzz.h"
#include "markup/Html2Text.h"
#include "platform/base/MutableString.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const unsigned flags = size ? data[0] : 0;
    const String html = String::fromUtf8({ reinterpret_cast<const char*>(data), size });
    const PlainTextOptions options { (flags & 1) != 0, (flags & 2) != 0, (flags & 4) != 0, (flags & 8) != 0,
        (flags & 16) != 0 };
    const EntityConversion conversion { (flags & 32) != 0, (flags & 64) != 0, (flags & 128) != 0 };
    INVARIANT(stringByConvertingHtml2PlainTextEntities(html, conversion, options).text.length()
        <= html.length() + 1);
    INVARIANT(stringByConvertingHtml2SimplifiedPlainText(html).length() <= html.length() + 1);

    // Hidden text is a unit that nothing else writes. It stands in front: markup before it might hide its
    // tags.
    constexpr char16_t Mark = 0xE123;
    for (const char16_t* hidden :
        { u"<div style='display:none'><div>\uE123</div>\uE123</div>", u"<select><option>\uE123</select>",
            u"<script>\uE123</script>", u"<noscript>\uE123</noscript>" }) {
        MutableString page;
        page.append(hidden).append(html);
        const String text = stringByConvertingHtml2PlainText(std::move(page).take());
        INVARIANT(text.view().find(Mark) == std::u16string_view::npos
            || html.view().find(Mark) != std::u16string_view::npos
            || html.view().find(u'&') != std::u16string_view::npos);
    }
    return 0;
}
