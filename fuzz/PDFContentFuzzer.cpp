// Content streams: what the interpreter makes of any operators.
//
// Invariants: the text is well formed, holds no control character but the line end, no empty line and no
// blank at the end of one; reading it again gives the same text.

#include "../tests/support/PDFBuilder.h"
#include "Fuzz.h"
#include "platform/base/Utf.h"
#include "platform/pdf/PDFDocument.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    caddis::PDFBuilder builder;
    const std::string content(reinterpret_cast<const char*>(data), size);
    const int form = builder.stream(content, "/Type /XObject /Subtype /Form /BBox [0 0 612 792]");
    builder.resources("/XObject << /X " + caddis::PDFBuilder::reference(form) + " >>");
    builder.resources("/Properties << /P << /ActualText <FEFF00E4D800000A> >> >>");
    builder.page(content);
    const auto document = caddis::PDFDocument::initWithData(builder.data());
    INVARIANT(document);
    const auto page = document->pageAtIndex(0);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    const auto text = page->string(deadline);
    INVARIANT(text);
    const std::u16string_view units = *text;
    INVARIANT(caddis::firstLoneSurrogate(units) == caddis::NotFound);
    INVARIANT(
        std::none_of(units.begin(), units.end(), [](char16_t unit) { return unit < u' ' && unit != u'\n'; }));
    INVARIANT(units.find(u"\n\n") == units.npos && !units.starts_with(u'\n') && !units.ends_with(u'\n'));
    INVARIANT(std::chrono::steady_clock::now() >= deadline || page->string(deadline) == text);
    return 0;
}
