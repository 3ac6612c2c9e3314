#include "platform/task/BoundedChild.h"

#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/TemporaryFile.h"

#include <unistd.h>

namespace caddis {

ScratchFolder::ScratchFolder()
{
    const auto path = nonExistingTemporaryFileNamed(String(u"scratch"));
    if (path && FileSystem::createDirectory(*path))
        m_path = *path;
}

ScratchFolder::~ScratchFolder()
{
    if (exists())
        FileSystem::removeItem(m_path);
}

String ScratchFolder::pathOf(const String& name) const
{
    return stringByAppendingPathComponent(m_path, name);
}

std::optional<std::string> installedProgram(std::string_view name)
{
    for (const char* const folder : { "/usr/local/bin/", "/usr/bin/", "/bin/" }) {
        std::string path = folder;
        path += name;
        if (access(path.c_str(), X_OK) == 0)
            return path;
    }
    return std::nullopt;
}

ChildResult runBounded(std::vector<std::string> arguments, const ScratchFolder& scratch,
    const ChildLimits& limits, std::chrono::milliseconds deadline)
{
    if (!scratch.exists())
        return {};
    const std::string folder = scratch.path().utf8();
    ChildCommand command;
    command.arguments = std::move(arguments);
    command.folder = folder;
    command.environment = std::vector<std::string> { "PATH=/usr/local/bin:/usr/bin:/bin", "LANG=C.UTF-8",
        "HOME=" + folder, "TMPDIR=" + folder, "XDG_CACHE_HOME=" + folder, "XDG_CONFIG_HOME=" + folder,
        "XDG_DATA_HOME=" + folder, "XDG_RUNTIME_DIR=" + folder };
    command.deadline = deadline;
    command.limits = limits;
    if (command.arguments.front() == installedProgram("bwrap"))
        command.limits->confined = false;
    return runChild(command);
}

} // namespace caddis
