#include "platform/zip/ZipReader.h"

#include "platform/files/FileSystem.h"
#include "platform/zip/MappedZip.h"

#include <sys/stat.h>
#include <vector>

namespace caddis {

namespace {

constexpr std::size_t PieceSize = 64 * 1024;
constexpr uLong EncryptedFlag = 1;
constexpr uLong UnixMaker = 3; // High byte of "version made by": external attributes carry a file mode.

bool isSymbolicLink(const unz_file_info64& info)
{
    return info.version >> 8 == UnixMaker && S_ISLNK(static_cast<mode_t>(info.external_fa >> 16));
}

} // namespace

struct ZipReader::Archive {
    std::int64_t position = 0;
    zlib_filefunc64_def functions = mmapFunctions(position);
    unzFile file = nullptr;
    std::uint64_t size = 0;
    std::uint64_t compressedBytesRead = 0;

    ~Archive()
    {
        if (file)
            unzClose(file);
    }
};

ZipReader::ZipReader(std::unique_ptr<Archive> archive)
    : m_archive(std::move(archive))
{
}

ZipReader::~ZipReader() = default;

std::unique_ptr<ZipReader> ZipReader::open(const String& path)
{
    const auto native = fileSystemRepresentation(path);
    auto archive = std::make_unique<Archive>();
    archive->file = native ? unzOpen2_64(native->c_str(), &archive->functions) : nullptr;
    archive->size = FileSystem::sizeOfFile(path);
    return std::unique_ptr<ZipReader>(archive->file ? new ZipReader(std::move(archive)) : nullptr);
}

bool ZipReader::forEachMember(FunctionRef<bool(const Member&)> visit)
{
    const unzFile file = m_archive->file;
    unz_global_info64 archive;
    if (unzGetGlobalInfo64(file, &archive) != UNZ_OK)
        return false;
    if (archive.number_entry == 0)
        return true;
    int status = unzGoToFirstFile(file);
    for (; status == UNZ_OK; status = unzGoToNextFile(file)) {
        unz_file_info64 info;
        if (unzGetCurrentFileInfo64(file, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK)
            return false;
        std::string name(info.size_filename, '\0');
        if (unzGetCurrentFileInfo64(file, nullptr, name.data(), name.size(), nullptr, 0, nullptr, 0)
            != UNZ_OK)
            return false;
        const bool isEncrypted = (info.flag & EncryptedFlag) != 0;
        if (!visit({ std::move(name), info.uncompressed_size, isEncrypted, isSymbolicLink(info) }))
            return false;
    }
    return status == UNZ_END_OF_LIST_OF_FILE;
}

bool ZipReader::readMember(Sink sink)
{
    const unzFile file = m_archive->file;
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(file, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK
        || !canYieldDeclaredSize(info, m_archive->size)
        || info.compressed_size > m_archive->size - m_archive->compressedBytesRead
        || unzOpenCurrentFile(file) != UNZ_OK)
        return false;
    m_archive->compressedBytesRead += info.compressed_size;
    std::vector<std::uint8_t> piece(PieceSize);
    std::uint64_t total = 0;
    int count = 0;
    while ((count = unzReadCurrentFile(file, piece.data(), static_cast<unsigned>(piece.size()))) > 0) {
        total += static_cast<unsigned>(count);
        if (!sink(std::span(piece).first(static_cast<unsigned>(count))))
            break;
    }
    // Closing compares the checksum, but only once everything was read.
    return unzCloseCurrentFile(file) == UNZ_OK && count == 0 && total == info.uncompressed_size;
}

} // namespace caddis
