#pragma once

#include "Command.h"

namespace caddis::tool {

/// What the words of a call say.
struct CommandLine {
    const Command* command = nullptr; ///< null: none was named
    bool help = false;
    bool keep = false;
    std::optional<std::string> mistake;
    Invocation invocation;
};

/// `table` has to outlive the result.
CommandLine parse(std::span<char*> words, std::span<const Command> table);

/// Says what is wrong with the call, or the help that it asks for: of its command, or of all.
ExitCode complain(const CommandLine& line, std::span<const Command> table);

} // namespace caddis::tool
