// A zip archive: single members through ZipArchive, all of them through ZipReader.
//
// Invariants: whatever the bytes say, a member is no longer than 1032 times the archive, all visited members
// together yield no more than that, and the same member reads the same twice.

#include "FileInput.h"
#include "Fuzz.h"
#include "epub/ZipArchive.h"
#include "platform/zip/ZipReader.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const String path = fileWith(data, size);
    const std::uint64_t most = 1032 * (static_cast<std::uint64_t>(size) + 1);
    if (const auto archive = ZipArchive::initWithZipFile(path)) {
        for (const auto* name : { u"a", u"META-INF/container.xml" }) {
            const auto member = archive->dataForNamedFile(String(name));
            INVARIANT(!member || (member->size() <= most && archive->testForNamedFile(String(name))));
            INVARIANT(archive->dataForNamedFile(String(name)) == member);
        }
    }
    const auto reader = ZipReader::open(path);
    std::uint64_t total = 0;
    const auto count = [&](std::span<const std::uint8_t> piece) {
        total += piece.size();
        return total <= most;
    };
    if (reader) {
        reader->forEachMember([&](const ZipReader::Member&) { return reader->readMember(count), true; });
        INVARIANT(total <= most);
    }
    return 0;
}
