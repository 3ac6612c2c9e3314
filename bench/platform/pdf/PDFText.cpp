// pdf-text FILE: the text of a PDF on standard output. pdf-text FILE PIXELS: its first page, as many pixels
// high, as a portable pixmap. What bench/pdf.bench measures beside other programs.

#include "media/PDFText.h"
#include "platform/files/MappedFile.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

int printText(const caddis::PDFDocument& document)
{
    const std::string text = caddis::fixedAndNormalizedString(document).value_or(caddis::String()).utf8();
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
}

int printFirstPage(const caddis::PDFDocument& document, std::uint32_t height)
{
    const auto page = document.pageAtIndex(0);
    const caddis::Rect box = page->boundsForBox(caddis::PDFDisplayBox::Crop);
    const auto width = static_cast<std::uint32_t>(std::lround(height * box.width / box.height));
    const auto raster = page->raster({ .pixelsWide = width, .pixelsHigh = height });
    if (!raster)
        return 1;
    std::printf("P6 %u %u 255\n", width, height);
    for (std::size_t pixel = 0; pixel < raster->pixels.size(); pixel += 4)
        std::fwrite(raster->pixels.bytes() + pixel, 1, 3, stdout);
    return 0;
}

} // namespace

int main(int count, char** arguments)
{
    const auto data
        = count > 1 ? caddis::MappedFile::open(caddis::String::fromUtf8(arguments[1])) : std::nullopt;
    const auto document = data ? caddis::PDFDocument::initWithData(*data) : nullptr;
    if (!document || document->pageCount() == 0)
        return 1;
    return count > 2 ? printFirstPage(*document, static_cast<std::uint32_t>(std::atoi(arguments[2])))
                     : printText(*document);
}
