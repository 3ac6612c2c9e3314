#include "platform/office/OfficeFormats.h"
#include "platform/office/OpenDocumentReader.h"

namespace caddis::office {

namespace {

std::optional<AttributedString> finished(OpenDocumentReader& reader)
{
    if (!reader.hasText())
        return std::nullopt;
    AttributedString text = std::move(reader).finish();
    text.documentAttributes.set(String(DocumentAttribute::DocumentType), Value(String(u"NSOpenDocument")));
    text.documentAttributes.set(
        String(DocumentAttribute::UTI), Value(String(u"org.oasis-open.opendocument.text")));
    return text;
}

} // namespace

std::optional<AttributedString> attributedStringWithOpenDocumentParts(const Parts& parts)
{
    OpenDocumentReader reader(&parts);
    for (const auto* const name : { "meta.xml", "styles.xml", "content.xml" }) {
        if (const Data* part = partNamed(parts, name))
            reader.read(*part);
    }
    return finished(reader);
}

std::optional<AttributedString> attributedStringWithFlatOpenDocument(const Data& document)
{
    OpenDocumentReader reader;
    reader.read(document);
    return finished(reader);
}

} // namespace caddis::office
