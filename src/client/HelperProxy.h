#pragma once

#include "platform/ipc/Connection.h"

namespace caddis {

/// A file as the helper is told of it: a path, a URL, or bookmark data.
struct FileReference {
    FileReference(String path) // NOLINT(google-explicit-constructor): each of the three is one
        : value(std::move(path))
    {
    }
    FileReference(URL url) // NOLINT(google-explicit-constructor)
        : value(std::move(url))
    {
    }
    FileReference(Data bookmark) // NOLINT(google-explicit-constructor)
        : value(std::move(bookmark))
    {
    }

    Value value;
};

/// What a script's handler is given: a descriptor's four-character type code and its data.
struct ScriptParameter {
    std::uint32_t type;
    Data data;
};

struct PictureRequest {
    std::int64_t maxThumbnailSize = 0;
    bool alwaysFromImage = false;
    bool stringFromPDF = false;
    bool canUseSpotlight = false;
};

struct HTMLRequest {
    std::optional<URL> baseURL;
    bool allowRemoteRequest = false;
    std::optional<String> charset;
};

/// The helper's operations, each as a function.
///
///     HelperProxy helper(*task->proxy());
///     if (const auto metadata = helper.metaDataForFile(u"/home/ada/book.epub"_s))
///
/// A nil or false result is the helper's answer; every function throws what Connection::call throws when
/// there is no answer.
class HelperProxy {
public:
    explicit HelperProxy(Proxy proxy)
        : m_proxy(std::move(proxy))
    {
    }

    /// Ends the helper; there is no answer.
    void terminate() const;
    void ping() const;

    std::optional<Data> PDFImageRepOfFile(const FileReference& file) const;
    std::optional<Dictionary> imageWithContentsOfFile(
        const FileReference& file, const PictureRequest& request) const;
    /// TIFF data; `maxThumbnailSize` in pixels.
    std::optional<Data> previewForFile(
        const FileReference& file, std::int64_t maxThumbnailSize, bool asIcon) const;
    std::optional<Dictionary> attributedStringWithPDF(bool attributed, const Data& pdf) const;
    Dictionary posterImageForMovieWithFile(const FileReference& file) const;
    std::optional<Dictionary> attributedStringWithContentsOfFile(const FileReference& file) const;
    Dictionary searchableTextOfWebArchive(const FileReference& file) const;
    bool writeRTFDData(const Data& rtfd, const FileReference& toFile) const;
    /// Servers have 15 seconds in all. A connection that waits as long for replies waits up to 20 for this
    /// one.
    std::optional<Data> RTFDWithHTML(const Data& html, const HTMLRequest& request) const;
    std::optional<Dictionary> metaDataForFile(const FileReference& file) const;
    bool supportsFile(const FileReference& file) const;

    void executeFile(const String& path, const std::optional<String>& function,
        const std::optional<ScriptParameter>& parameter) const;
    void executeSource(const String& source, const std::optional<String>& function,
        const std::optional<ScriptParameter>& parameter) const;

private:
    Proxy m_proxy;
};

} // namespace caddis
