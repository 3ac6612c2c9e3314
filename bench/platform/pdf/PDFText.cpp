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
    const caddis::String text = caddis::fixedAndNormalizedString(document).value_or(caddis::String());
    // Line by line: a second copy of the whole text would be this program's memory, not the reader's.
    for (std::u16string_view rest = text; !rest.empty();) {
        const std::size_t end = std::min(rest.find(u'\n'), rest.size() - 1) + 1;
        const std::string line = caddis::String(rest.substr(0, end)).utf8();
        if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size())
            return 1;
        rest.remove_prefix(end);
    }
    return 0;
}

int printFirstPage(const caddis::PDFDocument& document, std::uint32_t height)
{
    const auto page = document.pageAtIndex(0);
    const caddis::Size box = page->shownSize();
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
