#pragma once

#include "importers/MetaDataImporter.h"
#include "platform/base/Value.h"
#include "platform/web/WebResourceLoadDelegate.h"
#include "service/PictureRequests.h"

#include <mutex>
#include <optional>

namespace caddis {

/// The service object: what the application asks of the helper.
///
/// It knows values only, neither connections nor messages; OstraImExport.h has its operations as they stand
/// on the wire. A `file` argument is a file reference as FileArgument reads it; nil stands for a missing
/// argument or result. Failure of the work is a result (nil, false or an empty reply), never an exception.
///
/// One thread calls it, one operation at a time.
class CaddisHelper : public WebResourceLoadDelegate {
public:
    using File = std::optional<Value>;

    /// Compiled scripts are kept from here on.
    CaddisHelper();

    /// Ends the process with status 0 at once: no reply, no clean-up.
    [[noreturn]] void terminate();
    /// Does nothing; that it returns is the answer.
    void ping() { }

    /// The picture in a PDF or PostScript file as PDF data.
    std::optional<Data> PDFImageRepOfFile(const File& file);
    /// A thumbnail and what is known of the picture: see PictureRequests.h.
    std::optional<Dictionary> imageWithContentsOfFile(const File& file, const ThumbnailRequest& request);
    /// A preview of a file of any kind, or its icon, as TIFF data: see PreviewRequests.h.
    std::optional<Data> previewForFile(const File& file, std::int64_t maxThumbnailSize, bool asIcon);
    /// What a movie or sound file says of itself: see posterImageForMovie.
    Dictionary posterImageForMovieWithFile(const File& file);
    /// The text of PDF data: see _attributedStringWithPDF. Nil for what is no PDF data.
    std::optional<Dictionary> attributedStringWithPDF(bool attributed, const std::optional<Value>& pdf);
    /// A file's text with its looks, as RTFD: see RichTextRequests.h.
    std::optional<Dictionary> attributedStringWithContentsOfFile(const File& file);
    /// Writes RTFD data as a package; false for what is no RTFD or can't be written.
    bool writeRTFDDataToFile(const std::optional<Value>& rtfd, const File& file);
    /// "String", "Source" and "URL" of a web archive: see WebRequests.h. Empty for what is none.
    Dictionary searchableTextOfWebArchive(const File& file);
    /// HTML data as RTFD data: see WebRequests.h. Unless remote requests are allowed, only what is local is
    /// loaded for it (webView). `baseURL` is a URL or its text. Nil for what is no data.
    std::optional<Data> RTFDWithHTML(const std::optional<Value>& html, const std::optional<Value>& baseURL,
        bool allowRemoteRequest, const std::optional<Value>& charset);
    /// The request itself when its URL is local (see isLocal), else nil, which stops it.
    std::optional<URLRequest> webView(
        const URLRequest& willSendRequest, const std::optional<URL>& redirectResponse) override;
    bool allowsAddress(std::uint32_t reachabilityFlags) const override;
    /// Attribute names and their values, without null objects; nil when nothing is known of the file.
    std::optional<Dictionary> metaDataForFile(const File& file);
    /// Whether metadata can be had for files of this kind.
    bool supportsFile(const File& file);

    /// Calls one handler of a script file, or of a source, with one parameter. The result is dropped;
    /// failures are logged. One script runs at a time.
    void executeFile(const std::optional<Value>& path, const std::optional<Value>& function,
        const std::optional<Value>& param);
    void executeSource(const std::optional<Value>& source, const std::optional<Value>& function,
        const std::optional<Value>& param);

private:
    MetaDataImporter m_mdimporter;
    std::recursive_mutex m_osaLock;
};

} // namespace caddis
