#include "WorkerCommands.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace caddis::tool {

namespace {

ExitCode become(const char* command, const Invocation& invocation)
{
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    std::string program = (folder / "caddis-worker").string();
    if (!std::filesystem::exists(program))
        program = (folder / "../libexec/caddis/caddis-worker").lexically_normal().string();
    std::vector<std::string> words = invocation.arguments;
    words.insert(words.begin(), { program, command });
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv(program.c_str(), pointers.data());
    std::fprintf(stderr, "caddis: %s: %s\n", program.c_str(), std::strerror(errno));
    return HelperFailed;
}

} // namespace

ExitCode worker(const Invocation& invocation) { return become("worker", invocation); }

ExitCode enqueue(const Invocation& invocation) { return become("enqueue", invocation); }

} // namespace caddis::tool
