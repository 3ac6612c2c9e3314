#include "service/CaddisHelper.h"

#include "foundation/URLExtensions.h"
#include "service/Barrier.h"
#include "service/FileArgument.h"
#include "service/MovieRequests.h"
#include "service/PDFRequests.h"
#include "service/PreviewRequests.h"
#include "service/RichTextRequests.h"
#include "service/ScriptCache.h"
#include "service/ScriptParameter.h"
#include "service/WebRequests.h"

#include <algorithm>
#include <cstdlib>

namespace caddis {

namespace {

constexpr double LongestResolution = 5; // Seconds that a host's name may take.

} // namespace

CaddisHelper::CaddisHelper() { setUseCachingForStaticScripts(true); }

void CaddisHelper::terminate()
{
    // Not quick_exit: what a sanitizer or a profile has to say at the end is still said.
    std::exit(EXIT_SUCCESS);
}

std::optional<Data> CaddisHelper::PDFImageRepOfFile(const File& file)
{
    const FileArgument argument(file);
    return barrier([&] { return caddis::PDFImageRepOfFile(argument.path()); });
}

std::optional<Dictionary> CaddisHelper::imageWithContentsOfFile(
    const File& file, const ThumbnailRequest& request)
{
    const FileArgument argument(file);
    return barrier([&] { return caddis::imageWithContentsOfFile(argument.path(), request); });
}

std::optional<Data> CaddisHelper::previewForFile(const File& file, std::int64_t maxThumbnailSize, bool asIcon)
{
    const FileArgument argument(file);
    return barrier([&] { return caddis::previewForFile(argument.path(), maxThumbnailSize, asIcon); });
}

Dictionary CaddisHelper::posterImageForMovieWithFile(const File& file)
{
    return posterImageForMovie(FileArgument(file));
}

std::optional<Dictionary> CaddisHelper::attributedStringWithPDF(
    bool attributed, const std::optional<Value>& pdf)
{
    const Data* const data = pdf ? pdf->as<Data>() : nullptr;
    return _attributedStringWithPDF(
        attributed, data ? std::optional(*data) : std::nullopt, std::nullopt, PageSize::LeftOut);
}

std::optional<Dictionary> CaddisHelper::attributedStringWithContentsOfFile(const File& file)
{
    const FileArgument argument(file);
    return barrier([&] {
        return argument.path() ? caddis::attributedStringWithContentsOfFile(*argument.path(), this)
                               : std::nullopt;
    });
}

bool CaddisHelper::writeRTFDDataToFile(const std::optional<Value>& rtfd, const File& file)
{
    const FileArgument argument(file);
    const Data* const data = rtfd ? rtfd->as<Data>() : nullptr;
    return barrier(
        [&] { return data && argument.path() && caddis::writeRTFDDataToFile(*data, *argument.path()); });
}

Dictionary CaddisHelper::searchableTextOfWebArchive(const File& file)
{
    return caddis::searchableTextOfWebArchive(FileArgument(file).path());
}

std::optional<Data> CaddisHelper::RTFDWithHTML(const std::optional<Value>& html,
    const std::optional<Value>& baseURL, bool allowRemoteRequest, const std::optional<Value>& charset)
{
    const Data* const data = html ? html->as<Data>() : nullptr;
    if (!data)
        return std::nullopt;
    const URL* const url = baseURL ? baseURL->as<URL>() : nullptr;
    return barrier([&] {
        return caddis::RTFDWithHTML(*data,
            { .baseURL = url ? std::optional(*url) : URL::fromString(textOf(baseURL)),
                .delegate = allowRemoteRequest ? nullptr : this,
                .charset = textOf(charset) });
    });
}

std::optional<URLRequest> CaddisHelper::webView(const URLRequest& willSendRequest, const std::optional<URL>&)
{
    const double timeout = std::min(willSendRequest.timeoutInterval, LongestResolution);
    return isLocal(willSendRequest.url, timeout) ? std::optional(willSendRequest) : std::nullopt;
}

bool CaddisHelper::allowsAddress(std::uint32_t reachabilityFlags) const
{
    return (reachabilityFlags & LocalOrDirect) != 0;
}

std::optional<Dictionary> CaddisHelper::metaDataForFile(const File& file)
{
    const FileArgument argument(file);
    auto metaData = argument.path() ? m_mdimporter.metaDataOfFileAtPath(*argument.path()) : std::nullopt;
    if (metaData)
        metaData->removeNulls();
    return metaData;
}

bool CaddisHelper::supportsFile(const File& file)
{
    const FileArgument argument(file);
    return argument.path() && m_mdimporter.supportsFileAtPath(*argument.path());
}

void CaddisHelper::executeFile(
    const std::optional<Value>& path, const std::optional<Value>& function, const std::optional<Value>& param)
{
    const std::lock_guard lock(m_osaLock);
    compileAndExecuteFile(textOf(path), textOf(function), { scriptParameter(param) });
}

void CaddisHelper::executeSource(const std::optional<Value>& source, const std::optional<Value>& function,
    const std::optional<Value>& param)
{
    const std::lock_guard lock(m_osaLock);
    compileAndExecuteSource(textOf(source), true, textOf(function), { scriptParameter(param) });
}

} // namespace caddis
