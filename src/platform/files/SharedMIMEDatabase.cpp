#include "platform/files/SharedMIMEDatabase.h"

#include "platform/base/Paths.h"
#include "platform/files/MappedFile.h"
#include "platform/files/XDGFolders.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr std::size_t MaximumLineage = 64;

} // namespace

const SharedMIMEDatabase& SharedMIMEDatabase::system()
{
    static const SharedMIMEDatabase database = [] {
        std::vector<MIMECache> caches;
        for (const String& folder : XDGFolders::data()) {
            const auto bytes = MappedFile::open(stringByAppendingPathComponent(folder, u"mime/mime.cache"));
            if (const auto cache = bytes ? MIMECache::open(*bytes) : std::nullopt)
                caches.push_back(*cache);
        }
        return SharedMIMEDatabase(std::move(caches));
    }();
    return database;
}

std::optional<String> SharedMIMEDatabase::typeForExtension(const String& extension) const
{
    for (const MIMECache& cache : m_caches) {
        if (const auto type = cache.typeForExtension(extension.utf8()))
            return String::fromUtf8(*type);
    }
    return std::nullopt;
}

std::vector<String> SharedMIMEDatabase::lineageOf(const String& type) const
{
    std::vector<String> lineage;
    const auto add = [&](const std::string& name) {
        std::string own = name;
        for (const MIMECache& cache : m_caches)
            own = cache.typeForAlias(own).value_or(own);
        String found = String::fromUtf8(own);
        if (lineage.size() < MaximumLineage && std::ranges::find(lineage, found) == lineage.end())
            lineage.push_back(std::move(found));
    };
    add(type.utf8());
    for (std::size_t index = 0; index < lineage.size(); ++index) { // NOLINT(modernize-loop-convert): it grows
        for (const MIMECache& cache : m_caches) {
            for (const std::string& parent : cache.parentsOf(lineage[index].utf8()))
                add(parent);
        }
    }
    return lineage;
}

} // namespace caddis
