// Whole PDF files.
//
// Invariants: what a page says of itself is in its range, whatever the file says; text is well formed; a
// document that is locked has no pages; a page that is taken out is a document of one page again.

#include "Fuzz.h"
#include "platform/base/Utf.h"
#include "platform/pdf/PDFDocument.h"

namespace {

constexpr std::size_t MostPages = 4;

void read(const caddis::PDFPage& page)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    const auto text = page.string(deadline);
    INVARIANT(!text || caddis::firstLoneSurrogate(*text) == caddis::NotFound);
    INVARIANT(page.rotation() % 90 == 0 && page.rotation() >= 0 && page.rotation() < 360);
    INVARIANT(page.boundsForBox(caddis::PDFDisplayBox::Media).width >= 0);
    page.annotations();
    page.label();
    if (const auto single = page.dataRepresentation()) {
        const auto document = caddis::PDFDocument::initWithData(*single);
        INVARIANT(!document || document->pageCount() <= 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto document = caddis::PDFDocument::initWithData(caddis::Data::copyOf(bytes));
    if (!document)
        return 0;
    INVARIANT(!document->isLocked() || document->pageCount() == 0);
    document->documentAttributes();
    INVARIANT(document->outline().size() <= 100'000);
    for (std::size_t index = 0; index < MostPages; ++index) {
        if (const auto page = document->pageAtIndex(index))
            read(*page);
    }
    return 0;
}
