// The documents of a book. The input is up to four of them with a NUL after each: the package file, the
// container (empty: a sound one), the NCX and the rights document.
//
// Invariants: metadata has only its eight keys; entries of the contents have content and label; a book
// without rights document has no rights management.

#include "FileInput.h"
#include "Fuzz.h"
#include "epub/DRMParser.h"
#include "epub/EPUBParser.h"
#include "epub/NCXParser.h"
#include "support/EPUBBuilder.h"

using namespace caddis;

namespace {

std::string nextDocument(std::string_view& rest)
{
    std::string document(rest.substr(0, rest.find('\0')));
    rest.remove_prefix(std::min(document.size() + 1, rest.size()));
    return document;
}

void checkEntries(const Array& entries)
{
    for (const Value& entry : entries) {
        INVARIANT(entry.as<Dictionary>()->stringForKey(u"content")
            && entry.as<Dictionary>()->stringForKey(u"label"));
        if (const Value* children = entry.as<Dictionary>()->find(u"children"))
            checkEntries(*children->as<Array>());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string package = nextDocument(rest);
    const std::string container = nextDocument(rest);
    checkEntries(NCXParser(Data::adopt(nextDocument(rest))).children());
    const DRMParser rights(Data::adopt(nextDocument(rest)));
    INVARIANT(!rights.DRM() || !rights.DRM()->isEmpty());

    const std::string archive
        = ZipBuilder()
              .add({ "META-INF/container.xml", container.empty() ? containerDocument : container, true })
              .add({ "OPS/a.opf", package, true })
              .bytes();
    EPUBParser book(fileWith(reinterpret_cast<const std::uint8_t*>(archive.data()), archive.size()));
    INVARIANT(book.metaData().count() <= 8 && !book.hasDRM());
    return 0;
}
