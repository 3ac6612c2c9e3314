// The package of a book. The input is up to two documents with a NUL after each: the package file and the
// container (empty: a sound one).
//
// Invariants: metadata has only its eight keys; a book without rights document has no rights management.

#include "FileInput.h"
#include "Fuzz.h"
#include "epub/EPUBParser.h"
#include "support/EPUBBuilder.h"

using namespace caddis;

namespace {

std::string nextDocument(std::string_view& rest)
{
    std::string document(rest.substr(0, rest.find('\0')));
    rest.remove_prefix(std::min(document.size() + 1, rest.size()));
    return document;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string package = nextDocument(rest);
    const std::string container = nextDocument(rest);
    const std::string archive
        = ZipBuilder()
              .add({ "META-INF/container.xml", container.empty() ? containerDocument : container, true })
              .add({ "OPS/a.opf", package, true })
              .bytes();
    EPUBParser book(fileWith(reinterpret_cast<const std::uint8_t*>(archive.data()), archive.size()));
    INVARIANT(book.metaData().count() <= 8 && !book.hasDRM());
    return 0;
}
