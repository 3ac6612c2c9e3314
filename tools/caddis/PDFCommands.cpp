#include "PDFCommands.h"

#include "Input.h"
#include "Output.h"
#include "media/ExtendedPDF.h"
#include "media/PDFRedrawing.h"
#include "platform/image/ImageFiles.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace caddis::tool {

namespace {

constexpr std::uint32_t UsualSize = 1024; // Pixels.
constexpr std::chrono::seconds DrawingTimeout { 60 };

std::unique_ptr<ExtendedPDFDocument> documentIn(const std::string& file)
{
    const auto data = contentsOf(file);
    auto document = data ? ExtendedPDFDocument::initWithData(*data) : nullptr;
    if (!document)
        std::fprintf(stderr, "%s: no PDF can be read\n", file.c_str());
    else if (document->isLocked())
        std::fprintf(stderr, "%s: it is locked by a password\n", file.c_str());
    return document && !document->isLocked() ? std::move(document) : nullptr;
}

std::optional<PDFRaster> pictureOf(const PDFPage& page, std::uint32_t longerSide)
{
    const Size shown = page.shownSize();
    const double scale = longerSide / std::max({ shown.width, shown.height, 1.0 });
    const auto pixels = [&](double points) {
        return static_cast<std::uint32_t>(std::max(1L, std::lround(points * scale)));
    };
    return page.raster({ .pixelsWide = pixels(shown.width),
        .pixelsHigh = pixels(shown.height),
        .deadline = std::chrono::steady_clock::now() + DrawingTimeout });
}

} // namespace

ExitCode page(const Invocation& invocation)
{
    const auto& [file, word] = std::tie(invocation.arguments[0], invocation.arguments[1]);
    char* end = nullptr;
    const unsigned long number = std::strtoul(word.c_str(), &end, 10);
    if (number == 0 || *end != '\0') {
        std::fprintf(stderr, "%s: pages are counted from 1\n", word.c_str());
        return Usage;
    }
    const auto document = documentIn(file);
    if (!document)
        return NothingFound;
    const auto page = document->pageAtIndex(number - 1);
    const auto picture = page ? pictureOf(*page, invocation.size.value_or(UsualSize)) : std::nullopt;
    if (!picture) {
        std::fprintf(stderr, "%s: there is no page %lu among its %zu that can be drawn\n", file.c_str(),
            number, document->pageCount());
        return NothingFound;
    }
    const Bitmap bitmap { picture->pixelsWide, picture->pixelsHigh, false, picture->pixels };
    const auto png = PNGRepresentation(bitmap);
    return png && writeData(*png, invocation.output) ? Success : Usage;
}

ExitCode pdfFix(const Invocation& invocation)
{
    const auto document = documentIn(invocation.arguments[0]);
    const auto data
        = document ? fixedDataRepresentationWithOptions(*document, { { u"Redraw"_s, true } }) : std::nullopt;
    if (!data)
        return NothingFound;
    return writeData(*data, invocation.arguments[1]) ? Success : Usage;
}

} // namespace caddis::tool
