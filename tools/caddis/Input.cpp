#include "Input.h"

#include "Command.h"
#include "platform/files/FileSystem.h"

#include <iostream>
#include <iterator>

namespace caddis::tool {

std::optional<Data> contentsOf(const std::string& file)
{
    if (file == "-")
        return Data::adopt(std::string(std::istreambuf_iterator<char>(std::cin), {}));
    return FileSystem::contentsOfFile(absolutePath(file));
}

} // namespace caddis::tool
