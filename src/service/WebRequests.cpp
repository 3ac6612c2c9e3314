#include "service/WebRequests.h"

#include "foundation/URLExtensions.h"
#include "html/HTMLImport.h"
#include "markup/WebArchiveText.h"
#include "platform/richtext/RTFD.h"

namespace caddis {

Dictionary searchableTextOfWebArchive(const std::optional<String>& path)
{
    const ArchiveText found = searchableTextOfFile(path);
    auto reply = Dictionary::fromPairs({ { u"String", found.text } });
    reply.set(u"Source"_s, found.source ? std::optional<Value>(*found.source) : std::nullopt);
    reply.set(u"URL"_s, found.baseURL ? std::optional<Value>(found.baseURL->absoluteString()) : std::nullopt);
    return reply;
}

std::optional<Data> RTFDWithHTML(const Data& html, const RTFDWithHTMLOptions& options)
{
    HTMLImportOptions import { .useWebKit = true, .timeout = options.timeout };
    import.webResourceLoadDelegate = options.delegate;
    if (options.baseURL)
        import.baseURL = baseURLForWebKit(*options.baseURL);
    if (!options.charset.isEmpty())
        import.textEncodingName = options.charset;
    return RTFDFromString(attributedStringWithHTML(html, import), {});
}

} // namespace caddis
