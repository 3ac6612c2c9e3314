// The parts of office documents: DOCX, OpenDocument, and the two forms that are one XML document. The first
// line of the input names the kind; a line "=NAME" begins the part of that name.
//
// Invariants: those of RichText.h; what is written of the text as RTFD reads.

#include "RichText.h"
#include "platform/office/OfficeFormats.h"
#include "platform/richtext/RTFD.h"

using namespace caddis;

static std::optional<AttributedString> textOf(std::string_view kind, std::string_view rest)
{
    office::Parts parts;
    for (std::string_view input = rest; input.starts_with('=');) {
        const std::size_t line = std::min(input.find('\n'), input.size());
        const std::size_t end = std::min(input.find("\n=", line), input.size());
        parts[std::string(input.substr(1, line - 1))] = Data::copyOf(input.substr(line, end - line));
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    if (kind == "docx")
        return office::attributedStringWithOfficeOpenParts(parts);
    if (kind == "odt")
        return office::attributedStringWithOpenDocumentParts(parts);
    return kind == "fodt" ? office::attributedStringWithFlatOpenDocument(Data::copyOf(rest))
                          : office::attributedStringWithWordML(Data::copyOf(rest));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t line = std::min(input.find('\n'), size);
    if (const auto text = textOf(input.substr(0, line), input.substr(std::min(line + 1, size)))) {
        checkText(*text);
        const auto rtfd = RTFDFromString(*text, text->documentAttributes);
        INVARIANT(rtfd && initWithRTFD(*rtfd));
    }
    return 0;
}
