#include "Output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace caddis::tool {

void print(const std::string& text) { std::fwrite(text.data(), 1, text.size(), stdout); }

bool writeData(const Data& data, const std::optional<std::string>& file)
{
    const bool toStandardOutput = !file || *file == "-";
    if (toStandardOutput && isatty(STDOUT_FILENO)) {
        std::fputs("this is data, not text: name a file with -o, or redirect the output\n", stderr);
        return false;
    }
    std::FILE* out = toStandardOutput ? stdout : std::fopen(file->c_str(), "wb");
    const bool written = out && std::fwrite(data.bytes(), 1, data.size(), out) == data.size();
    const bool closed = out && (toStandardOutput ? std::fflush(out) : std::fclose(out)) == 0;
    if (!written || !closed)
        std::fprintf(stderr, "%s: %s\n", file ? file->c_str() : "standard output", std::strerror(errno));
    return written && closed;
}

} // namespace caddis::tool
