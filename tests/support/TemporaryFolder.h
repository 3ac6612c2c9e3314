#pragma once

#include "platform/base/String.h"

#include <filesystem>
#include <fstream>
#include <stdlib.h>
#include <string>

namespace caddis {

/// A fresh folder that goes with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string pattern = std::filesystem::temp_directory_path() / "caddis-test-XXXXXX";
        m_path = mkdtemp(pattern.data());
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    String path(const std::string& name) const { return String::fromUtf8((m_path / name).string()); }

    /// Writes a file and returns its path.
    String write(const std::string& name, std::string_view bytes) const
    {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << bytes;
        return path(name);
    }

private:
    std::filesystem::path m_path;
};

} // namespace caddis
