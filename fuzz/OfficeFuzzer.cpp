// The parts of office documents: DOCX, OpenDocument, and the two forms that are one XML document. The first
// line of the input names the kind; a line "=NAME" begins the part of that name.
//
// Invariants: runs begin at 0, grow, and lie in the text; each paragraph's lists and tables are among the
// text's own; what is written of the text as RTFD reads as the same characters.

#include "Fuzz.h"
#include "platform/office/OfficeFormats.h"
#include "platform/richtext/RTFD.h"

namespace {

using namespace caddis;

office::Parts partsIn(std::string_view input)
{
    office::Parts parts;
    while (input.starts_with('=')) {
        const std::size_t line = std::min(input.find('\n'), input.size());
        const std::size_t end = std::min(input.find("\n=", line), input.size());
        parts[std::string(input.substr(1, line - 1))] = Data::copyOf(input.substr(line, end - line));
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    return parts;
}

std::optional<AttributedString> textOf(std::string_view kind, std::string_view rest)
{
    if (kind == "docx")
        return office::attributedStringWithOfficeOpenParts(partsIn(rest));
    if (kind == "odt")
        return office::attributedStringWithOpenDocumentParts(partsIn(rest));
    return kind == "fodt" ? office::attributedStringWithFlatOpenDocument(Data::copyOf(rest))
                          : office::attributedStringWithWordML(Data::copyOf(rest));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t line = std::min(input.find('\n'), size);
    const auto text = textOf(input.substr(0, line), input.substr(std::min(line + 1, size)));
    if (!text)
        return 0;
    std::size_t end = 0;
    for (const auto& run : text->runs()) {
        INVARIANT(run.location >= end && run.location < text->string().length());
        end = run.location + 1;
    }
    for (const ParagraphStyle& style : text->paragraphStyles()) {
        for (const std::uint32_t list : style.lists)
            INVARIANT(list < text->lists().size());
        for (const TableCell& cell : style.cells)
            INVARIANT(cell.table < text->tables().size());
    }
    const auto rtfd = RTFDFromString(*text, text->documentAttributes);
    INVARIANT(rtfd && initWithRTFD(*rtfd));
    return 0;
}
