#include "markup/Html2Text.h"

#include "markup/PlainTextHandler.h"
#include "platform/base/UnitBuffer.h"

namespace caddis {
inline namespace Html2Text {

namespace {

struct Conversion {
    EntityConversion entities {};
    PlainTextOptions options {};
};

// The scan reads the text itself, not a writable copy: runs with entities are converted behind the output's
// end.
template <typename Handler>
PlainText convertHtml2PlainTextUsingHandler(const String& html, Conversion conversion)
{
    // The handlers write one unit more than the text has at most, and converted runs stand one unit apart.
    constexpr std::size_t Surplus = 2;
    UnitBuffer buffer;
    if (!buffer.tryAllocate(html.length() + Surplus))
        return { html };
    const auto convert = [&] {
        PlainTextContext context { buffer.data() };
        context.conversion = conversion.entities;
        context.options = conversion.options;
        context.bodyDepth = conversion.options.onlyBody ? 0 : PlainTextContext::WholeDocument;
        Handler handler { context };
        const bool scanned = parseXmlWithHandler(html, handler);
        return std::pair(context, scanned);
    };
    auto [context, scanned] = convert();
    if (conversion.options.onlyBody && scanned && !context.produced) {
        conversion.options.onlyBody = false; // There is no body.
        context = convert().first;
    }
    if (!context.produced)
        return { html };
    return { String({ context.start, static_cast<std::size_t>(context.cursor - context.start) }),
        context.didRemoveJunk };
}

} // namespace

String stringByConvertingHtml2PlainText(const String& html)
{
    return stringByConvertingHtml2PlainTextEntities(html, {}).text;
}

String stringByConvertingHtml2ReformattedPlainText(const String& html)
{
    return stringByConvertingHtml2PlainTextEntities(html, {}, { .reformat = true }).text;
}

PlainText stringByConvertingHtml2PlainTextNonUmlauted(
    const String& html, bool nonUmlauted, PlainTextOptions options)
{
    return stringByConvertingHtml2PlainTextEntities(html, { .nonUmlauted = nonUmlauted }, options);
}

PlainText stringByConvertingHtml2PlainTextEntities(
    const String& html, EntityConversion conversion, PlainTextOptions options)
{
    return convertHtml2PlainTextUsingHandler<PlainTextHandler>(html, { conversion, options });
}

String stringByConvertingHtml2SimplifiedPlainText(const String& html)
{
    return convertHtml2PlainTextUsingHandler<SimplePlainTextHandler>(html, { {}, { .onlyBody = true } }).text;
}

} // namespace Html2Text
} // namespace caddis
