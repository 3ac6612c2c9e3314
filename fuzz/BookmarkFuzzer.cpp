// Bookmark data in both layouts.
//
// Invariants: an answer is a URL or an error, never both; a URL is a file URL with an absolute path. The
// checksum would stop nearly every mutation of our own layout, so it is put right first.

#include "Fuzz.h"
#include "platform/files/Bookmark.h"

#include <cstring>
#include <zlib.h>

namespace {

void resolve(const caddis::Data& bookmark)
{
    const auto resolved = caddis::URLByResolvingBookmarkData(bookmark);
    INVARIANT(resolved.url.has_value() != resolved.error.has_value());
    INVARIANT(!resolved.url || (resolved.url->isFileURL() && resolved.url->path()->view().starts_with(u'/')));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string bytes(reinterpret_cast<const char*>(data), size);
    resolve(caddis::Data::copyOf(bytes));
    if (size > 4) {
        const auto sum = static_cast<std::uint32_t>(crc32_z(0, data, size - 4));
        std::memcpy(bytes.data() + size - 4, &sum, sizeof sum);
        resolve(caddis::Data::adopt(std::move(bytes)));
    }
    return 0;
}
