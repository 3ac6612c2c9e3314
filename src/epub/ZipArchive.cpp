#include "epub/ZipArchive.h"

#include "platform/base/Log.h"
#include "platform/files/FileSystem.h"

#include <cstdlib>
#include <limits>

namespace caddis {

namespace {

// minizip's own default on Unix is to tell letters apart by their case.
constexpr int IgnoringCase = 2;

} // namespace

std::unique_ptr<ZipArchive> ZipArchive::initWithZipFile(const String& path)
{
    std::unique_ptr<ZipArchive> archive(new ZipArchive(path));
    return archive->m_zipFile ? std::move(archive) : nullptr;
}

ZipArchive::ZipArchive(const String& path)
    : m_archiveName(path)
    , m_mmap_defs(mmapFunctions(m_pos))
{
    if (const auto native = fileSystemRepresentation(path)) {
        m_zipFile = unzOpen2_64(native->c_str(), &m_mmap_defs);
        m_archiveSize = FileSystem::sizeOfFile(path);
    }
}

ZipArchive::~ZipArchive()
{
    if (m_zipFile)
        closeZipFile();
}

bool ZipArchive::testForNamedFile(const String& name)
{
    return unzLocateFile(m_zipFile, name.utf8().c_str(), IgnoringCase) == UNZ_OK;
}

std::optional<Data> ZipArchive::dataForNamedFile(const String& name)
{
    if (!testForNamedFile(name)) {
        log(u"Unable to locate %@ in %@", name, m_archiveName);
        return std::nullopt;
    }
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(m_zipFile, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK) {
        log(u"Unable to extract file info for: %@", name);
        return std::nullopt;
    }
    if (unzOpenCurrentFile(m_zipFile) != UNZ_OK) {
        log(u"Unable to open file %@ for extration from archive", name);
        return std::nullopt;
    }
    return readCurrentFile(name, info);
}

std::optional<Data> ZipArchive::readCurrentFile(const String& name, const unz_file_info64& info)
{
    // minizip counts what it read in a signed 32-bit number.
    const bool isReadable = info.uncompressed_size <= std::numeric_limits<std::int32_t>::max()
        && canYieldDeclaredSize(info, m_archiveSize);
    const auto size = isReadable ? static_cast<unsigned>(info.uncompressed_size) : 0;
    void* buffer = isReadable ? std::malloc(size) : nullptr;
    if (isReadable && !buffer) {
        unzCloseCurrentFile(m_zipFile);
        log(u"No memory for decompressing %@ from archive", name);
        return std::nullopt;
    }
    if (isReadable && unzReadCurrentFile(m_zipFile, buffer, size) == static_cast<int>(size)) {
        Data data = Data::adoptMalloc(buffer, size);
        unzCloseCurrentFile(m_zipFile);
        return data;
    }
    // Kept on purpose: the member stays open here; the next one that is opened closes it.
    std::free(buffer);
    log(u"Failed to read %@ from archive", name);
    return std::nullopt;
}

bool ZipArchive::openZipFile(const String& path)
{
    const auto native = fileSystemRepresentation(path);
    if (m_zipFile || !native)
        return false;
    m_zipFile = unzOpen64(native->c_str());
    m_archiveSize = FileSystem::sizeOfFile(path);
    return m_zipFile != nullptr;
}

bool ZipArchive::closeZipFile()
{
    if (unzClose(m_zipFile) != UNZ_OK)
        return false;
    m_zipFile = nullptr;
    return true;
}

} // namespace caddis
