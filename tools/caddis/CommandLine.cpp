#include "CommandLine.h"

#include "ScriptCommands.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace caddis::tool {

namespace {

struct OptionRow {
    std::string_view commands; ///< the names of those that have it, with blanks between; empty: all
    const char* text;
};

constexpr OptionRow options[] = {
    { "", "  --json       print JSON, one line per result\n" },
    { "", "  -o FILE      write data to FILE\n" },
    { "feed", "  --items      of a feed: print its items, one line of JSON each\n" },
    { "feed", "  --url URL    of a feed: where it comes from, to resolve its links\n" },
    { "webarchive", "  --source     of a web archive: print its page's markup\n" },
    { "html2rtfd", "  --base URL   of a page: what its references are relative to\n" },
    { "html2rtfd", "  --charset NAME  of a page: its encoding, whatever it says itself\n" },
    { "html2rtfd", "  --allow-remote  of a page: load what it refers to from anywhere\n" },
    { "preview", "  --icon       of a preview: the icon of a file that can't be shown\n" },
    { "thumbnail preview page", "  --size N     of a page or a picture: its longer side in pixels\n" },
    { "script", "  --source TEXT  of a script: its source, instead of FILE\n" },
    { "", "  --keep       leave a helper that had to be launched running\n" },
    { "", "  --help       this; after a command, that command\n" },
};

bool isOf(const OptionRow& option, const std::string& command)
{
    const std::string names = ' ' + std::string(option.commands) + ' ';
    return option.commands.empty() || names.find(' ' + command + ' ') != std::string::npos;
}

void printUsage(std::FILE* out, std::span<const Command> table)
{
    std::fputs("caddis COMMAND [OPTIONS] [ARGUMENTS]\n\n", out);
    for (const Command& command : table)
        std::fprintf(out, "  %-12s %-6s %s\n", command.name, command.arguments, command.summary);
    std::fputs("\n", out);
    for (const OptionRow& option : options)
        std::fputs(option.text, out);
    std::fputs("\nExit status: 0 done, 1 nothing found, 2 wrong usage, 3 the helper failed.\n", out);
}

void printUsage(std::FILE* out, const Command& command)
{
    std::fprintf(out, "caddis %s [OPTIONS] %s\n  %s\n\n%s\n%s", command.name, command.arguments,
        command.summary, command.example, command.options ? command.options : "");
    for (const OptionRow& option : options) {
        if (!command.options && isOf(option, command.name))
            std::fputs(option.text, out);
    }
}

const Command* commandNamed(std::string_view name, std::span<const Command> table)
{
    const auto found = std::ranges::find(table, name, &Command::name);
    return found == table.end() ? nullptr : &*found;
}

void readSize(const std::string& word, CommandLine& line)
{
    const long size = std::strtol(word.c_str(), nullptr, 10);
    if (size > 0 && size <= 10'000)
        line.invocation.size = static_cast<std::uint32_t>(size);
    else
        line.mistake = "a size is a number of pixels from 1 to 10000";
}

} // namespace

CommandLine parse(std::span<char*> words, std::span<const Command> table)
{
    CommandLine line;
    bool optionsEnded = false;
    for (std::size_t index = 0; index < words.size() && !line.mistake; ++index) {
        const std::string word = words[index];
        const bool isScript = line.command && line.command->run == script;
        if ((word == "--help" || word == "-h") && !optionsEnded)
            line.help = true;
        else if (line.command && line.command->options)
            line.invocation.arguments.push_back(word); // It reads its options itself.
        else if (optionsEnded || word == "-" || !word.starts_with('-')) {
            if (line.command)
                line.invocation.arguments.push_back(word);
            else if (!(line.command = commandNamed(word, table)))
                line.mistake = "there is no command " + word;
        } else if (word == "--")
            optionsEnded = true;
        else if (word == "--json")
            line.invocation.json = true;
        else if (word == "--keep")
            line.keep = true;
        else if (word == "--icon")
            line.invocation.icon = true;
        else if (word == "--items")
            line.invocation.items = true;
        else if (word == "--source" && isScript && index + 1 < words.size())
            line.invocation.scriptSource = words[++index];
        else if (word == "--source" && !isScript)
            line.invocation.source = true;
        else if (word == "-o" && index + 1 < words.size())
            line.invocation.output = words[++index];
        else if (word == "--size" && index + 1 < words.size())
            readSize(words[++index], line);
        else if (word == "--allow-remote")
            line.invocation.allowRemote = true;
        else if (word == "--base" && index + 1 < words.size())
            line.invocation.base = words[++index];
        else if (word == "--charset" && index + 1 < words.size())
            line.invocation.charset = words[++index];
        else if (word == "--url" && index + 1 < words.size())
            line.invocation.url = words[++index];
        else
            line.mistake = "there is no option " + word;
    }
    if (!line.help && !line.mistake && line.command
        && line.invocation.arguments.size() < line.command->leastArguments)
        line.mistake = "an argument is missing";
    return line;
}

ExitCode complain(const CommandLine& line, std::span<const Command> table)
{
    if (line.mistake)
        std::fprintf(stderr, "caddis: %s\n\n", line.mistake->c_str());
    std::FILE* out = line.help && !line.mistake ? stdout : stderr;
    if (line.command)
        printUsage(out, *line.command);
    else
        printUsage(out, table);
    return line.help && !line.mistake ? Success : Usage;
}

} // namespace caddis::tool
