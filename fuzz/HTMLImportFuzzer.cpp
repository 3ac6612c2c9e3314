// Pages, whose references lead nowhere but to data URLs.
//
// Invariants: the page's nodes hang together in document order; there is an attachment for each of its
// characters; runs begin at 0 and ascend; the text as RTFD reads back with as many attachments.

#include "Fuzz.h"
#include "html/HTMLImport.h"
#include "html/Page.h"
#include "platform/base/Log.h"
#include "platform/richtext/RTFD.h"

#include <algorithm>

using namespace caddis;

namespace {

struct Nowhere : WebResourceLoadDelegate {
    std::optional<URLRequest> webView(const URLRequest& request, const std::optional<URL>&) override
    {
        return request.url.scheme() == u"data" ? std::optional(request) : std::nullopt;
    }
    bool allowsAddress(std::uint32_t) const override { return false; }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setLogSink([](const String&) {}); // Encodings that nobody knows.
    const Data bytes = Data::copyOf({ reinterpret_cast<const char*>(data), size });
    const html::Page page = html::parsePage(String::fromUtf8(bytes.chars()));
    for (html::NodeIndex node = 1; node < page.size(); ++node)
        INVARIANT(page[node].parent < node && (page[node].next == html::NoNode || page[node].next > node));
    Nowhere nowhere;
    const AttributedString text = attributedStringWithHTML(bytes, { .webResourceLoadDelegate = &nowhere });
    const auto attached = std::ranges::count_if(text.runs(),
        [&](const auto& run) { return text.styles()[run.style].attachment != CharacterStyle::NoAttachment; });
    INVARIANT(static_cast<std::size_t>(attached) == text.attachments().size());
    INVARIANT(text.runs().empty() || text.runs()[0].location == 0);
    INVARIANT(std::ranges::is_sorted(text.runs(), {}, &AttributedString::Run::location));
    const auto rtfd = RTFDFromString(text, {});
    INVARIANT(rtfd && initWithRTFD(*rtfd)->attachments().size() == text.attachments().size());
    return 0;
}
