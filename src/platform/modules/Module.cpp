#include "platform/modules/Module.h"

#include "platform/base/Log.h"

#include <dlfcn.h>
#include <filesystem>
#include <unistd.h>

namespace caddis {

std::optional<std::string> installedFile(const std::string& name)
{
    std::error_code error;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* place : { "", "../lib/caddis", "../libexec/caddis" }) {
        const auto candidate = folder / place / name;
        if (std::filesystem::exists(candidate, error))
            return candidate.string();
    }
    return std::nullopt;
}

// RTLD_NOW: a module that lacks a library fails here, not in the middle of a request. RTLD_LOCAL: the names
// of its libraries stay its own.
Module::Module(const char* name)
{
    const auto path = installedFile(std::string(name) + ".so");
    if (!path) {
        log(u"Couldn't find module %s", name);
        return;
    }
    m_handle = dlopen(path->c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle)
        log(u"Couldn't open module %s: %s", name, static_cast<const char*>(dlerror()));
}

void* Module::address(const char* symbol) const { return m_handle ? dlsym(m_handle, symbol) : nullptr; }

} // namespace caddis
