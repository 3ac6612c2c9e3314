#include "bundles/support/ZipPackage.h"
#include "platform/base/LeftOut.h"

#include <algorithm>
#include <minizip/unzip.h>
#include <unordered_map>

namespace caddis::bundles {

struct ZipPackage::Archive {
    unzFile file;
    std::unordered_map<std::string, unz64_file_pos> positions {};

    explicit Archive(unzFile opened)
        : file(opened)
    {
    }
    ~Archive() { unzClose(file); }
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
};

std::unique_ptr<ZipPackage> ZipPackage::open(const std::string& path)
{
    const unzFile file = unzOpen64(path.c_str());
    if (!file)
        return nullptr;
    auto archive = std::make_unique<Archive>(file);
    unz_global_info64 info {};
    if (unzGetGlobalInfo64(file, &info) != UNZ_OK || info.number_entry > MaximumParts)
        return nullptr;
    return std::unique_ptr<ZipPackage>(new ZipPackage(std::move(archive)));
}

ZipPackage::ZipPackage(std::unique_ptr<Archive> archive)
    : m_archive(std::move(archive))
{
    const unzFile file = m_archive->file;
    for (int result = unzGoToFirstFile(file); result == UNZ_OK && m_names.size() < MaximumParts;
         result = unzGoToNextFile(file)) {
        char name[1024];
        unz_file_info64 member {};
        unz64_file_pos position {};
        if (unzGetCurrentFileInfo64(file, &member, name, sizeof name, nullptr, 0, nullptr, 0) != UNZ_OK
            || unzGetFilePos64(file, &position) != UNZ_OK)
            break;
        m_names.emplace_back(name, std::min<std::size_t>(member.size_filename, sizeof name));
        m_archive->positions.try_emplace(m_names.back(), position);
    }
}

ZipPackage::~ZipPackage() = default;

bool ZipPackage::read(const std::string& name, FunctionRef<bool(std::string_view)> sink)
{
    const auto found = m_archive->positions.find(name);
    const unzFile file = m_archive->file;
    if (found == m_archive->positions.end() || unzGoToFilePos64(file, &found->second) != UNZ_OK
        || unzOpenCurrentFile(file) != UNZ_OK)
        return false;
    std::string piece(64 * 1024, '\0');
    int count = 0;
    bool wantsMore = true;
    while (wantsMore
        && (count = unzReadCurrentFile(file, piece.data(), static_cast<unsigned>(piece.size()))) > 0) {
        const auto size = static_cast<std::size_t>(count);
        if (size > m_left)
            noteLeftOut(u"what the parts of the document inflate to beyond 128 MiB");
        wantsMore = size <= m_left && sink(std::string_view(piece).substr(0, size));
        m_left -= std::min(size, m_left);
    }
    unzCloseCurrentFile(file);
    return wantsMore && count == 0;
}

std::optional<std::string> ZipPackage::read(const std::string& name, std::size_t limit)
{
    if (!m_archive->positions.contains(name))
        return std::nullopt;
    std::string bytes;
    read(name, [&](std::string_view piece) {
        bytes.append(piece.substr(0, limit - bytes.size()));
        return bytes.size() < limit;
    });
    return bytes;
}

bool ZipPackage::parseXml(const std::string& name, XmlHandler& handler, const Attributes& attributes)
{
    XmlReader reader(handler);
    return read(name, [&](std::string_view piece) { return !attributes.shouldStop() && reader.feed(piece); })
        && reader.finish();
}

} // namespace caddis::bundles
