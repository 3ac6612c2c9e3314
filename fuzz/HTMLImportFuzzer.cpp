// Pages, whose references lead nowhere but to data URLs.
//
// Invariants: the page's nodes hang together in document order; those of RichText.h; the text as RTFD reads
// back with as many attachments.

#include "RichText.h"
#include "html/HTMLImport.h"
#include "html/Page.h"
#include "platform/base/Log.h"
#include "platform/richtext/RTFD.h"

using namespace caddis;

struct Nowhere : WebResourceLoadDelegate {
    std::optional<URLRequest> webView(const URLRequest& request, const std::optional<URL>&) override
    {
        return request.url.scheme() == u"data" ? std::optional(request) : std::nullopt;
    }
    bool allowsAddress(std::uint32_t) const override { return false; }
};

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setLogSink([](const String&) {}); // Encodings that nobody knows.
    const Data bytes = Data::copyOf({ reinterpret_cast<const char*>(data), size });
    const html::Page page = html::parsePage(String::fromUtf8(bytes.chars()));
    for (html::NodeIndex node = 1; node < page.size(); ++node)
        INVARIANT(page[node].parent < node && (page[node].next == html::NoNode || page[node].next > node));
    Nowhere nowhere;
    const AttributedString text = attributedStringWithHTML(bytes, { .webResourceLoadDelegate = &nowhere });
    checkText(text);
    const auto rtfd = RTFDFromString(text, {});
    INVARIANT(rtfd && initWithRTFD(*rtfd)->attachments().size() == text.attachments().size());
    return 0;
}
