// movie-frame FILE SECONDS: the frame at that time as rows of red, green and blue on standard output. What
// bench/media.bench measures beside another program.

#include "platform/movie/Asset.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

int main(int count, char** arguments)
{
    if (count < 3)
        return 1;
    const auto path = caddis::String::fromUtf8(std::filesystem::absolute(arguments[1]).string());
    const caddis::Asset asset(caddis::URL::fileURLWithPath(path));
    const auto frame = asset.copyImageAtTime(caddis::Time::withSeconds(std::atof(arguments[2]), 1));
    if (!frame)
        return 1;
    for (std::size_t pixel = 0; pixel < frame->pixels.size(); pixel += 4)
        std::fwrite(frame->pixels.bytes() + pixel, 1, 3, stdout);
    return 0;
}
