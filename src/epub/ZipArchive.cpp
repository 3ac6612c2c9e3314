#include "epub/ZipArchive.h"

#include "platform/base/Ascii.h"
#include "platform/base/LeftOut.h"
#include "platform/base/Log.h"
#include "platform/files/FileSystem.h"

#include <algorithm>
#include <cstdlib>

namespace caddis {

namespace {

// Letters of ASCII alone: a name in another script is found only as it is written.
std::string withoutCase(std::string name)
{
    std::ranges::transform(name, name.begin(), [](char byte) { return lowercaseAscii(byte); });
    return name;
}

// The name of the current member; nil when its record is damaged.
std::optional<std::string> currentName(unzFile file)
{
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(file, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK)
        return std::nullopt;
    std::string name(info.size_filename, '\0');
    if (unzGetCurrentFileInfo64(file, nullptr, name.data(), name.size(), nullptr, 0, nullptr, 0) != UNZ_OK)
        return std::nullopt;
    return name;
}

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
    if (!m_zipFile)
        return false;
    if (!m_positions)
        readPositions();
    const auto found = m_positions->find(withoutCase(name.utf8()));
    return found != m_positions->end() && unzGoToFilePos64(m_zipFile, &found->second) == UNZ_OK;
}

// minizip's own search reads the directory from its start for every name, which in a book of a thousand
// documents costs more than inflating them. As there, the first of several members with one name counts, and
// what stands behind a damaged record is not found.
void ZipArchive::readPositions()
{
    m_positions.emplace();
    for (int status = unzGoToFirstFile(m_zipFile); status == UNZ_OK; status = unzGoToNextFile(m_zipFile)) {
        const auto name = currentName(m_zipFile);
        unz64_file_pos position;
        if (!name || unzGetFilePos64(m_zipFile, &position) != UNZ_OK)
            return;
        m_positions->try_emplace(withoutCase(*name), position);
    }
}

std::optional<Data> ZipArchive::dataForNamedFile(const String& name, std::uint64_t most)
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
    return readCurrentFile(name, info, most);
}

std::optional<Data> ZipArchive::readCurrentFile(
    const String& name, const unz_file_info64& info, std::uint64_t most)
{
    const bool isReadable = info.uncompressed_size <= MostBytes && canYieldDeclaredSize(info, m_archiveSize);
    const auto size
        = isReadable ? static_cast<unsigned>(std::min<std::uint64_t>(info.uncompressed_size, most)) : 0;
    void* buffer = isReadable ? std::malloc(size) : nullptr;
    if (isReadable && !buffer) {
        unzCloseCurrentFile(m_zipFile);
        log(u"No memory for decompressing %@ from archive", name);
        return std::nullopt;
    }
    if (isReadable && unzReadCurrentFile(m_zipFile, buffer, size) == static_cast<int>(size)) {
        if (size < info.uncompressed_size)
            noteLeftOut(u"a member of the archive that is very large, after its beginning");
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
    m_positions.reset();
    return true;
}

} // namespace caddis
