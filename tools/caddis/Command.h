#pragma once

#include "batch/Places.h"
#include "client/HelperTask.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// What the tool can do: one row per command, and what a row gets to work with.
namespace caddis::tool {

/// How the process ends.
enum ExitCode : int {
    Success = 0,
    NothingFound = 1, ///< every request was answered, and at least one with nothing
    Usage = 2,
    HelperFailed = 3, ///< no helper could be had, or it died or did not answer in time
    Interrupted = 130, ///< by a signal; what was begun was finished
};

/// One call of the tool.
struct Invocation {
    bool json = false;
    bool items = false; ///< --items
    bool icon = false; ///< --icon
    bool source = false; ///< --source of a web archive
    std::optional<std::string> output; ///< -o
    std::optional<std::uint32_t> size; ///< --size, in pixels
    std::optional<std::string> url; ///< --url
    std::optional<std::string> base; ///< --base of a page
    std::optional<std::string> charset; ///< --charset of a page
    bool allowRemote = false; ///< --allow-remote
    std::optional<std::string> scriptSource; ///< --source TEXT of a script
    std::vector<std::string> arguments;
    std::function<Proxy()> helper; ///< launches one when none runs; throws HelperUnavailable
    std::function<std::optional<Proxy>()> runningHelper; ///< never launches
};

struct HelperUnavailable { };

struct Command {
    const char* name;
    const char* arguments;
    const char* summary;
    const char* example; ///< with what it prints
    std::size_t leastArguments;
    ExitCode (*run)(const Invocation&);
    const char* options
        = nullptr; ///< of its own, which it reads itself out of its arguments; null: the common ones
};

} // namespace caddis::tool
