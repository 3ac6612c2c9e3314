#include "platform/modules/Module.h"

#include "platform/base/Log.h"

#include <dlfcn.h>
#include <filesystem>
#include <unistd.h>

namespace caddis {

namespace {

std::filesystem::path find(const std::string& file)
{
    std::error_code error;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* place : { "", "../lib/caddis", "../libexec/caddis" }) {
        auto candidate = folder / place / file;
        if (std::filesystem::exists(candidate, error))
            return candidate;
    }
    return {};
}

} // namespace

// RTLD_NOW: a module that lacks a library fails here, not in the middle of a request. RTLD_LOCAL: the names
// of its libraries stay its own.
Module::Module(const char* name)
{
    const auto path = find(std::string(name) + ".so");
    if (path.empty()) {
        log(u"Couldn't find module %s", name);
        return;
    }
    m_handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle)
        log(u"Couldn't open module %s: %s", name, static_cast<const char*>(dlerror()));
}

void* Module::address(const char* symbol) const { return m_handle ? dlsym(m_handle, symbol) : nullptr; }

} // namespace caddis
