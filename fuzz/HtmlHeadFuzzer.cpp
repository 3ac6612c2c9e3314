// What any text says of itself as a page.
//
// Invariants: the summary equals the single readers; stripping never lengthens; a page with a base keeps it;
// a normalised address is ASCII.

#include "Fuzz.h"
#include "markup/HtmlBaseURL.h"
#include "markup/HtmlMetadata.h"
#include "markup/StringURL.h"
#include "platform/base/Log.h"

#include <algorithm>

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setLogSink([](const String&) {});
    const String html = String::fromUtf8({ reinterpret_cast<const char*>(data), size });

    const HtmlMetaSummary summary = htmlMetaKeywordsDescriptionTitleIndexTitleDate(html);
    INVARIANT(summary.keywords == htmlMetaKeywords(html));
    INVARIANT(summary.title == htmlMetaTitle(html));
    INVARIANT(summary.description == htmlMetaDescription(html));
    INVARIANT(
        htmlMetaAttributes(html).count() >= htmlMetaAttributesByConvertingEntitiesToCharacters(html).count());
    const auto title = htmlTitle(html);
    INVARIANT(title || !normalizedHtmlTitle(html));
    htmlDate(html);
    htmlCanonicalURL(html);

    const URL base = *URL::fromString(u"http://example.org/a\"b"_s);
    const String based = stringBySettingBaseURL(html, base);
    INVARIANT(based.view().find(u"<BASE href=\"http://example.org/a%22b\"/>\n") != std::u16string_view::npos);
    INVARIANT(!htmlBaseURL(html) || stringByAddingBaseURL(html, base).isIdenticalTo(html));
    INVARIANT(stringByStrippingMetaAttributeWithName(html, u"keywords").length() <= html.length());

    const auto address = normalizedStringURL(html);
    INVARIANT(
        !address || std::ranges::all_of(*address, [](char16_t unit) { return unit > u' ' && unit < 0x7F; }));
    return 0;
}
