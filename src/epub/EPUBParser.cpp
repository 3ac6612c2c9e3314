#include "epub/EPUBParser.h"

#include "epub/DRMParser.h"
#include "foundation/Compression.h"
#include "foundation/FileExtensions.h"
#include "platform/base/Exception.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/MappedFile.h"
#include "platform/files/TemporaryFile.h"
#include "text/StringUtilities.h"

namespace caddis {

namespace {

// A member of 32 KB can inflate to that.
constexpr std::uint64_t MostMemberBytes = std::uint64_t(32) << 20;

} // namespace

bool EPUBParser::isEPUBFile(const String& path)
{
    return hasSuffixNoCase(path, u".epub") || hasSuffixNoCase(path, u".ibooks");
}

bool EPUBParser::isEPUBExtension(const String& extension, const String& /*type*/)
{
    return isEqualNoCase(extension, u"epub") || isEqualNoCase(extension, u"ibooks");
}

EPUBParser::EPUBParser(const String& path)
    : m_epubPath(path)
{
    if (!FileSystem::isFilePackageAtPath(path))
        m_archive = ZipArchive::initWithZipFile(path);
    if (const auto mimetype = dataForNamedFile(u"mimetype"_s))
        m_mimetype = String::fromLatin1(mimetype->chars());
    guarded(u"initWithFile:", u"EPUBParser", [this] { parsePackage(); });
}

EPUBParser::~EPUBParser()
{
    if (m_epubFolder)
        FileSystem::removeItem(*m_epubFolder);
}

const String& EPUBParser::DRM()
{
    if (m_drm)
        return *m_drm;
    m_drm.emplace();
    for (const auto* name : { u"META-INF/rights.xml", u"META-INF/sinf.xml", u"rights.xml" }) {
        if (!testForNamedFile(String(name)))
            continue;
        if (const auto rights = dataForNamedFile(String(name)))
            m_drm = DRMParser(*rights).DRM().value_or(String());
        break;
    }
    return *m_drm;
}

bool EPUBParser::hasDRM() { return !DRM().isEmpty() && DRM() != u"None"; }

bool EPUBParser::testForNamedFile(const String& name)
{
    return m_archive ? m_archive->testForNamedFile(name) : pathInCopy(name).has_value();
}

std::optional<Data> EPUBParser::dataForNamedFile(const String& name)
{
    if (m_archive)
        return m_archive->dataForNamedFile(name, MostMemberBytes);
    const auto path = pathInCopy(name);
    const auto data = path ? MappedFile::open(*path) : std::nullopt;
    return data && data->size() > MostMemberBytes ? data->slice({ 0, MostMemberBytes }) : data;
}

// Where the member is, links resolved; nil when it isn't there or lies outside the copy.
std::optional<String> EPUBParser::pathInCopy(const String& name)
{
    const auto folder = unzippedEPUB() ? FileSystem::canonicalPath(*m_epubFolder) : std::nullopt;
    auto path
        = folder ? FileSystem::canonicalPath(stringByAppendingPathComponent(*folder, name)) : std::nullopt;
    return path && pathIsInDirectory(*path, *folder) ? path : std::nullopt;
}

std::optional<String> EPUBParser::epubFolder() const
{
    return nonExistingTemporaryFileNamed(stringByDeletingPathExtension(lastPathComponent(m_epubPath)));
}

bool EPUBParser::unzipEPUBToPath(const String& path)
{
    if (path.isEmpty() || FileSystem::exists(path))
        return false;
    if (m_archive)
        return decompressFileAtPath(m_epubPath, path);
    return FileSystem::isDirectory(m_epubPath) && FileSystem::copyItem(m_epubPath, path, MostUnpackedBytes);
}

const std::optional<String>& EPUBParser::unzippedEPUB()
{
    if (m_epubFolder)
        return m_epubFolder;
    const auto folder = epubFolder();
    if (folder && unzipEPUBToPath(*folder))
        m_epubFolder = folder;
    return m_epubFolder;
}

String EPUBParser::opfFolder() const
{
    return stringByDeletingLastPathComponent(m_opfFile.value_or(String()));
}

std::optional<String> EPUBParser::unpackedOPFFolder() const
{
    return m_epubFolder ? std::optional(stringByAppendingPathComponent(*m_epubFolder, opfFolder()))
                        : std::nullopt;
}

std::optional<URL> EPUBParser::URLForContent(const String& content) const
{
    const auto folder = unpackedOPFFolder();
    if (!folder || content.isEmpty())
        return std::nullopt;
    return URL::fileURLWithPath(stringByAppendingPathComponent(*folder, content));
}

std::optional<URL> EPUBParser::URLForItem(const Dictionary& entry) const
{
    return URLForContent(entry.stringForKey(u"content").value_or(String()));
}

std::optional<String> EPUBParser::contentForURL(const URL& url) const
{
    const auto folder = unpackedOPFFolder();
    const auto path = url.isFileURL() ? url.path() : std::nullopt;
    return folder && path ? relativePathToDirectory(*path, *folder) : std::nullopt;
}

} // namespace caddis
