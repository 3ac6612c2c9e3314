#pragma once

#include "LineReader.h"
#include "platform/base/String.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace caddis::tool {

/// One thing to do.
struct Input {
    String file; ///< absolute
    std::string operation;
    std::string id; ///< the caller's, as it stands in JSON; empty: none
};

/// The inputs that a command line names, one after the other: files as they are, all that is in folders, and
/// for "-" the lines of standard input, each a path or a JSON object {"file", "op", "id"}. Links to folders
/// are not followed; a folder that people see as one document is one.
class Inputs {
public:
    /// Nothing more is read from standard input once `stop` says so.
    Inputs(std::vector<std::string> arguments, std::string operation, const std::function<bool()>& stop);

    /// Nil at the end.
    std::optional<Input> next();

    bool readsStandardInput() const;
    /// How many there are; by another walk through the folders, which ends early when `stop` says so.
    static std::uint64_t count(const std::vector<std::string>& arguments, const std::function<bool()>& stop);

private:
    std::optional<std::string> nextInFolder();
    std::optional<Input> nextLine();
    Input inputOf(const std::string& path) const;

    std::vector<std::string> m_arguments;
    const std::string m_operation;
    std::size_t m_index = 0;
    std::filesystem::recursive_directory_iterator m_folder;
    LineReader m_lines;
    bool m_isReading = false;
};

} // namespace caddis::tool
