#include "html/PageLoader.h"

#include "foundation/DataURL.h"
#include "foundation/MIMETypes.h"
#include "foundation/URLExtensions.h"
#include "markup/CharsetFinder.h"
#include "markup/WebArchiveText.h"
#include "platform/base/LeftOut.h"
#include "platform/base/Paths.h"
#include "platform/files/MappedFile.h"
#include "platform/web/RemoteLoader.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis::html {

namespace {

constexpr double DefaultTimeout = 60;
constexpr double LongestTimeout = 3600;
constexpr std::size_t MostResources = 1000;
constexpr std::size_t MostBytesEach = std::size_t(64) << 20;
constexpr std::size_t MostBytes = std::size_t(256) << 20;

std::chrono::steady_clock::duration timeoutOf(const HTMLImportOptions& options)
{
    const double seconds
        = options.timeout > 0 ? std::min<double>(options.timeout, LongestTimeout) : DefaultTimeout;
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(seconds));
}

bool isScheme(const URL& url, std::u16string_view name) { return isEqualNoCase(url.scheme(), name); }

String mimeTypeOf(std::u16string_view contentType)
{
    const std::u16string_view type = contentType.substr(0, contentType.find(u';'));
    return String(css::lowered(css::trimmed(type)));
}

} // namespace

PageLoader::PageLoader(const HTMLImportOptions& options)
    : m_options(options)
    , m_deadline(std::chrono::steady_clock::now() + timeoutOf(options))
{
}

double PageLoader::secondsLeft() const
{
    return std::chrono::duration<double>(m_deadline - std::chrono::steady_clock::now()).count();
}

PageLoader::Shared PageLoader::resource(const URL& url) const
{
    const auto found = m_resources.find(stringURLWithoutAnchor(url.absoluteString()));
    return found == m_resources.end() ? nullptr : found->second;
}

bool PageLoader::keep(Resource resource, const URL& asked)
{
    if (resource.data.size() > MostBytesEach || m_bytes + resource.data.size() > MostBytes) {
        noteLeftOut(u"files of the page beyond 64 MiB each or 256 MiB together");
        return false;
    }
    m_bytes += resource.data.size();
    m_resources[stringURLWithoutAnchor(asked.absoluteString())]
        = std::make_shared<const Resource>(std::move(resource));
    return true;
}

// What needs no network. Nil also for what is of another kind.
std::optional<Resource> PageLoader::localResource(const URL& url) const
{
    if (isScheme(url, u"data")) {
        auto contents = contentsOfDataURL(url);
        if (!contents)
            return std::nullopt;
        return Resource { url, contents->data, contents->mimeType, contents->charset };
    }
    const auto path = url.isFileURL() ? url.path() : std::nullopt;
    auto data = path ? MappedFile::open(*path) : std::nullopt;
    if (!data)
        return std::nullopt;
    return Resource { url, std::move(*data), MIMETypeForExtension(pathExtension(*path)).value_or(String()),
        {} };
}

void PageLoader::fetch(std::span<const URL> urls)
{
    std::vector<RemoteTransfer> transfers;
    std::vector<URL> asked;
    for (const URL& url : urls) {
        const String key = stringURLWithoutAnchor(url.absoluteString());
        if (m_resources.contains(key))
            continue;
        const WebResource* const saved
            = m_options.archive ? subresourceForURL(*m_options.archive, url) : nullptr;
        if (saved) {
            keep({ url, saved->data(), mimeTypeOf(saved->MIMEType()), saved->textEncodingName() }, url);
            continue;
        }
        if (m_options.archive && !isScheme(url, u"data"))
            continue;
        if (m_asked == MostResources || secondsLeft() <= 0) {
            noteLeftOut(u"files of the page after the first 1000, or not loaded in time");
            break;
        }
        ++m_asked;
        m_resources[key] = nullptr;
        std::optional<URLRequest> request { { url, secondsLeft() } };
        if (m_options.webResourceLoadDelegate)
            request = m_options.webResourceLoadDelegate->webView(*request, std::nullopt);
        if (!request)
            continue;
        if (auto resource = localResource(request->url)) {
            keep(std::move(*resource), url);
        } else if (isScheme(request->url, u"http") || isScheme(request->url, u"https")) {
            transfers.emplace_back(request->url);
            asked.push_back(url);
        }
    }
    loadRemote(
        transfers, { m_deadline, m_options.webResourceLoadDelegate, MostBytesEach, MostBytes - m_bytes });
    for (std::size_t index = 0; index < transfers.size(); ++index) {
        RemoteTransfer& transfer = transfers[index];
        if (transfer.hasArrived)
            keep({ transfer.url, std::move(transfer.data), mimeTypeOf(transfer.contentType),
                     headerCharset(transfer.contentType).value_or(String()) },
                asked[index]);
    }
}

} // namespace caddis::html
