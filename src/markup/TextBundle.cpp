#include "markup/TextBundle.h"

#include "foundation/Compression.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/TemporaryFile.h"
#include "text/StringUtilities.h"
#include "text/TextFile.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr std::uint64_t MostReadBytes = std::uint64_t(256) << 20; // Unpacked for the sake of one text.

bool isBundle(const String& name) { return hasSuffixNoCase(name, u".textbundle"); }
bool isPack(const String& name) { return hasSuffixNoCase(name, u".textpack"); }
bool isText(const String& name) { return hasPrefixNoCase(name, u"text."); }

// The paths of the entries with fitting names.
std::vector<String> entries(const String& folder, bool (*fits)(const String& name))
{
    std::vector<String> paths;
    for (const String& name : FileSystem::contentsOfDirectory(folder).value_or(std::vector<String>())) {
        if (fits(name))
            paths.push_back(stringByAppendingPathComponent(folder, name));
    }
    return paths;
}

// A pack's contents, in a temporary folder that goes with the object.
class UnpackedPack {
public:
    UnpackedPack(const String& path, std::uint64_t mostBytes)
        : m_folder(nonExistingTemporaryFileNamed(lastPathComponent(path)))
    {
        m_isUnpacked = m_folder && decompressFileAtPath(path, *m_folder, mostBytes);
    }
    ~UnpackedPack()
    {
        if (m_isUnpacked)
            FileSystem::removeItem(*m_folder);
    }
    UnpackedPack(const UnpackedPack&) = delete;
    UnpackedPack& operator=(const UnpackedPack&) = delete;

    std::vector<String> bundles() const
    {
        return m_isUnpacked ? entries(*m_folder, isBundle) : std::vector<String>();
    }

private:
    std::optional<String> m_folder;
    bool m_isUnpacked = false;
};

std::optional<PlainText> textOfBundle(const String& path, NSStringEncoding encoding)
{
    const auto texts = entries(path, isText);
    return texts.empty() ? std::nullopt : stringWithContentsOfFile(texts.front(), encoding);
}

std::optional<PlainText> textOfPack(const String& path, NSStringEncoding encoding)
{
    std::optional<PlainText> last;
    const UnpackedPack pack(path, MostReadBytes);
    for (const String& bundle : pack.bundles()) {
        for (const String& file : entries(bundle, isText)) {
            if (auto text = stringWithContentsOfFile(file, encoding))
                last = std::move(text);
        }
    }
    return last;
}

} // namespace

inline namespace MarkDown {

std::optional<PlainText> stringWithContentsOfTextBundleFile(const String& path, NSStringEncoding encoding)
{
    const String name = lastPathComponent(path);
    if (isBundle(name))
        return textOfBundle(path, encoding);
    return isPack(name) ? textOfPack(path, encoding) : std::nullopt;
}

bool decompressTextBundleFile(const String& path, const String& toPath)
{
    const String name = lastPathComponent(path);
    if (isBundle(name))
        return FileSystem::copyItem(path, toPath);
    if (!isPack(name))
        return false;
    const UnpackedPack pack(path, MostUnpackedBytes);
    const auto bundles = pack.bundles();
    const String parent = stringByDeletingLastPathComponent(toPath);
    return !bundles.empty() && (parent.isEmpty() || FileSystem::createDirectory(parent))
        && FileSystem::moveItem(bundles.front(), toPath);
}

} // namespace MarkDown
} // namespace caddis
