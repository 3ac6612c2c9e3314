#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace caddis {

/// A runtime directory of its own for this process and its children, while it lives.
class PrivateRuntimeDirectory {
public:
    PrivateRuntimeDirectory()
    {
        std::string path = std::filesystem::temp_directory_path() / "caddis-test-XXXXXX";
        m_path = mkdtemp(path.data());
        setenv("CADDIS_RUNTIME_DIR", path.c_str(), 1);
    }
    ~PrivateRuntimeDirectory()
    {
        unsetenv("CADDIS_RUNTIME_DIR");
        std::filesystem::remove_all(m_path);
    }
    PrivateRuntimeDirectory(const PrivateRuntimeDirectory&) = delete;
    PrivateRuntimeDirectory& operator=(const PrivateRuntimeDirectory&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace caddis
