#include "client/HelperProxy.h"

#include <algorithm>

namespace caddis {

namespace {

// A result of another kind than the operation promises counts as none.
template <typename T> std::optional<T> nilOr(const std::optional<Value>& result)
{
    const T* wanted = result ? result->as<T>() : nullptr;
    return wanted ? std::optional(*wanted) : std::nullopt;
}

template <typename T> T always(const std::optional<Value>& result) { return nilOr<T>(result).value_or(T()); }

std::optional<Value> record(const std::optional<ScriptParameter>& parameter)
{
    if (!parameter)
        return std::nullopt;
    return Array { parameter->type, parameter->data };
}

// A page whose servers stall takes all the time that its import has; the text comes after that. Who waits as
// long as the import waits for the text, too.
class TimeBehindImport {
public:
    explicit TimeBehindImport(Connection& connection)
        : m_connection(connection)
        , m_timeout(connection.timeout())
    {
        constexpr double Import = 15.0;
        constexpr double Behind = 5.0;
        if (m_timeout >= Import)
            connection.setTimeout(std::max(m_timeout, Import + Behind));
    }
    ~TimeBehindImport() { m_connection.setTimeout(m_timeout); }
    TimeBehindImport(const TimeBehindImport&) = delete;
    TimeBehindImport& operator=(const TimeBehindImport&) = delete;

private:
    Connection& m_connection;
    double m_timeout;
};

} // namespace

void HelperProxy::terminate() const { m_proxy.call("Terminate"); }

void HelperProxy::ping() const { m_proxy.call("Ping"); }

std::optional<Data> HelperProxy::PDFImageRepOfFile(const FileReference& file) const
{
    return nilOr<Data>(m_proxy.call("PDFImageRepOfFile", { file.value }));
}

std::optional<Dictionary> HelperProxy::imageWithContentsOfFile(
    const FileReference& file, const PictureRequest& request) const
{
    return nilOr<Dictionary>(m_proxy.call("ImageWithContentsOfFile",
        { file.value, request.maxThumbnailSize, request.alwaysFromImage, request.stringFromPDF,
            request.canUseSpotlight }));
}

std::optional<Data> HelperProxy::previewForFile(
    const FileReference& file, std::int64_t maxThumbnailSize, bool asIcon) const
{
    return nilOr<Data>(m_proxy.call("PreviewForFile", { file.value, maxThumbnailSize, asIcon }));
}

std::optional<Dictionary> HelperProxy::attributedStringWithPDF(bool attributed, const Data& pdf) const
{
    return nilOr<Dictionary>(m_proxy.call("AttributedStringWithPDF", { attributed, pdf }));
}

Dictionary HelperProxy::posterImageForMovieWithFile(const FileReference& file) const
{
    return always<Dictionary>(m_proxy.call("PosterImageForMovieWithFile", { file.value }));
}

std::optional<Dictionary> HelperProxy::attributedStringWithContentsOfFile(const FileReference& file) const
{
    return nilOr<Dictionary>(m_proxy.call("AttributedStringWithContentsOfFile", { file.value }));
}

Dictionary HelperProxy::searchableTextOfWebArchive(const FileReference& file) const
{
    return always<Dictionary>(m_proxy.call("SearchableTextOfWebArchive", { file.value }));
}

bool HelperProxy::writeRTFDData(const Data& rtfd, const FileReference& toFile) const
{
    return always<bool>(m_proxy.call("WriteRTFDDataToFile", { rtfd, toFile.value }));
}

std::optional<Data> HelperProxy::RTFDWithHTML(const Data& html, const HTMLRequest& request) const
{
    const TimeBehindImport time(*m_proxy.connection());
    return nilOr<Data>(
        m_proxy.call("RTFDWithHTML", { html, request.baseURL, request.allowRemoteRequest, request.charset }));
}

std::optional<Dictionary> HelperProxy::metaDataForFile(const FileReference& file) const
{
    return nilOr<Dictionary>(m_proxy.call("MetaDataForFile", { file.value }));
}

bool HelperProxy::supportsFile(const FileReference& file) const
{
    return always<bool>(m_proxy.call("SupportsFile", { file.value }));
}

void HelperProxy::executeFile(const String& path, const std::optional<String>& function,
    const std::optional<ScriptParameter>& parameter) const
{
    m_proxy.call("ExecuteFile", { path, function, record(parameter) });
}

void HelperProxy::executeSource(const String& source, const std::optional<String>& function,
    const std::optional<ScriptParameter>& parameter) const
{
    m_proxy.call("ExecuteSource", { source, function, record(parameter) });
}

} // namespace caddis
