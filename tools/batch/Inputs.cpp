#include "Inputs.h"

#include "JSONLine.h"
#include "Operations.h"
#include "Places.h"
#include "platform/files/FileSystem.h"

#include <algorithm>
#include <functional>

namespace caddis::tool {

namespace {

namespace fs = std::filesystem;

bool isFolderOfInputs(const fs::path& path)
{
    std::error_code error;
    return fs::is_directory(path, error) && !FileSystem::isFilePackageAtPath(String::fromUtf8(path.string()));
}

} // namespace

Inputs::Inputs(std::vector<std::string> arguments, std::string operation, const std::function<bool()>& stop)
    : m_arguments(std::move(arguments))
    , m_operation(std::move(operation))
    , m_lines(stop)
{
}

bool Inputs::readsStandardInput() const { return std::ranges::find(m_arguments, "-") != m_arguments.end(); }

std::optional<Input> Inputs::next()
{
    for (;;) {
        if (const auto path = nextInFolder())
            return inputOf(*path);
        if (m_isReading) {
            if (auto input = nextLine())
                return input;
            m_isReading = false;
        }
        if (m_index == m_arguments.size())
            return std::nullopt;
        const std::string& argument = m_arguments[m_index++];
        std::error_code error;
        if (argument == "-")
            m_isReading = true;
        else if (isFolderOfInputs(argument))
            m_folder = fs::recursive_directory_iterator(
                argument, fs::directory_options::skip_permission_denied, error);
        else
            return inputOf(argument);
    }
}

std::optional<std::string> Inputs::nextInFolder()
{
    std::error_code error;
    while (m_folder != fs::recursive_directory_iterator()) {
        const fs::directory_entry entry = *m_folder;
        const bool isFolder = entry.is_directory(error) && !entry.is_symlink(error);
        const bool isInput = !isFolder || !isFolderOfInputs(entry.path());
        if (isFolder && isInput)
            m_folder.disable_recursion_pending();
        m_folder.increment(error);
        if (isInput && !(entry.is_symlink(error) && entry.is_directory(error)))
            return entry.path().string();
    }
    return std::nullopt;
}

std::optional<Input> Inputs::nextLine()
{
    while (const auto text = m_lines.next()) {
        if (text->empty())
            continue;
        if (!text->starts_with('{'))
            return inputOf(*text);
        const JSONLine line(*text);
        Input input = inputOf(line.text("file").value_or(""));
        input.id = line.raw("id").value_or("");
        if (const auto operation = line.text("op"))
            input.operation = *operation;
        return input;
    }
    return std::nullopt;
}

Input Inputs::inputOf(const std::string& path) const
{
    return { path.empty() ? String() : absolutePath(path), m_operation, "" };
}

std::uint64_t Inputs::count(const std::vector<std::string>& arguments, const std::function<bool()>& stop)
{
    Inputs inputs(arguments, "", stop);
    std::uint64_t count = 0;
    while (!stop() && inputs.next())
        ++count;
    return count;
}

} // namespace caddis::tool
