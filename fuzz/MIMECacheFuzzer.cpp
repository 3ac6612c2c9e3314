// The cache of the shared MIME database.
//
// Invariants: the same question has the same answer; types and parents are texts from the file; no list of
// parents is longer than its bound.

#include "Fuzz.h"
#include "platform/files/MIMECache.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace caddis;
    const Data bytes = Data::copyOf({ reinterpret_cast<const char*>(data), size });
    const auto cache = MIMECache::open(bytes);
    if (!cache)
        return 0;
    const auto isFromFile
        = [&](const std::string& text) { return bytes.chars().find(text) != std::string_view::npos; };
    for (const char* extension : { "", "c", "tar.gz", "txt", "x" }) {
        const auto type = cache->typeForExtension(extension);
        INVARIANT(type == cache->typeForExtension(extension));
        INVARIANT(!type || isFromFile(*type));
    }
    for (const char* name : { "", "a/b", "text/c", "text/plain" }) {
        const auto type = cache->typeForAlias(name);
        INVARIANT(!type || isFromFile(*type));
        const auto parents = cache->parentsOf(name);
        INVARIANT(parents.size() <= 64);
        for (const std::string& parent : parents)
            INVARIANT(isFromFile(parent));
    }
    return 0;
}
