// Compound files.
//
// Invariants: no stream is longer than the file; a stream found by its path has the contents of its entry,
// or those of an earlier one of the same name.

#include "Fuzz.h"
#include "bundles/support/CompoundFile.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using caddis::bundles::CompoundFile;
    const auto file = CompoundFile::open({ reinterpret_cast<const char*>(data), size });
    if (!file)
        return 0;
    INVARIANT(file->streams().size() <= std::min(CompoundFile::MaximumStreams, size / 128));
    std::size_t looked = 0;
    for (const auto& entry : file->streams()) {
        const std::string contents = file->contents(entry);
        INVARIANT(contents.size() <= size && contents.size() <= entry.size);
        INVARIANT(file->stream(entry.path));
        if (++looked == 64)
            break;
    }
    return 0;
}
