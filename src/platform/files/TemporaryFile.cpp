#include "platform/files/TemporaryFile.h"

#include "platform/base/Format.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace caddis {

namespace {

constexpr std::size_t LongestName = 60; // Units; with the number it stays below the 255 bytes of a name.

class PrivateDirectory {
public:
    PrivateDirectory()
    {
        const char* parent = std::getenv("TMPDIR");
        std::string pattern = std::string(parent && *parent == '/' ? parent : "/tmp") + "/caddis-XXXXXX";
        if (mkdtemp(pattern.data()))
            m_path = String::fromStrictUtf8(pattern);
    }
    ~PrivateDirectory()
    {
        // A forked child that exits must not take its parent's files away.
        if (m_path && m_owner == getpid())
            FileSystem::removeItem(*m_path);
    }
    PrivateDirectory(const PrivateDirectory&) = delete;
    PrivateDirectory& operator=(const PrivateDirectory&) = delete;

    const std::optional<String>& path() const { return m_path; }

private:
    std::optional<String> m_path;
    pid_t m_owner = getpid();
};

String usableName(const String& name)
{
    MutableString usable;
    for (const char16_t unit : name.view().substr(0, LongestName)) {
        if (unit != u'\0')
            usable.append(unit == u'/' ? u':' : unit);
    }
    // Cutting may have parted a surrogate pair; as UTF-8 a lone one becomes U+FFFD.
    return String::fromUtf8(std::move(usable).take().utf8());
}

} // namespace

std::optional<String> temporaryDirectory()
{
    static const PrivateDirectory directory;
    return directory.path();
}

std::optional<String> nonExistingTemporaryFileNamed(const String& name)
{
    static std::atomic<unsigned> calls { 0 };
    const auto directory = temporaryDirectory();
    if (!directory)
        return std::nullopt;
    return stringByAppendingPathComponent(*directory, format(u"%@-%d", usableName(name), ++calls));
}

} // namespace caddis
