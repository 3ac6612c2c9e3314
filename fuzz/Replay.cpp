// Runs a fuzz target as an ordinary program: every file of the folders named on the command line, and
// for each a few hundred mutations from a fixed seed, so that any compiler's test run meets hostile bytes.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int MutationsPerSeed = 200;
constexpr std::uintmax_t LargestMutatedSeed = 64 * 1024;

Bytes contentsOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

std::vector<std::filesystem::path> filesIn(const char* folder)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

Bytes mutated(Bytes bytes, std::minstd_rand& random)
{
    const auto below = [&](std::size_t bound) { return bound ? random() % bound : 0; };
    for (std::size_t count = 1 + below(4); count > 0 && !bytes.empty(); --count) {
        const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(below(bytes.size()));
        switch (below(5)) {
        case 0:
            *at = static_cast<std::uint8_t>(random());
            break;
        case 1:
            *at ^= static_cast<std::uint8_t>(1U << below(8));
            break;
        case 2:
            bytes.erase(at, bytes.end());
            break;
        case 3:
            bytes.erase(at);
            break;
        default:
            bytes.insert(at, below(2) ? 0xFF : 0x00);
            break;
        }
    }
    return bytes;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    LLVMFuzzerTestOneInput(nullptr, 0);
    std::size_t runs = 1;
    for (int argument = 1; argument < argumentCount; ++argument) {
        for (const auto& path : filesIn(arguments[argument])) {
            const Bytes seed = contentsOf(path);
            LLVMFuzzerTestOneInput(seed.data(), seed.size());
            ++runs;
            std::minstd_rand random(1);
            for (int round = 0; seed.size() <= LargestMutatedSeed && round < MutationsPerSeed;
                 ++round, ++runs) {
                const Bytes bytes = mutated(seed, random);
                LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            }
        }
    }
    std::printf("%zu inputs\n", runs);
}
