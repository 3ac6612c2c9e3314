#include "platform/office/OfficeDocument.h"

#include "platform/office/OfficeFormats.h"

namespace caddis {

namespace {

bool isAtFront(std::string_view tag, std::string_view bytes)
{
    constexpr std::size_t Looked = 4096;
    return bytes.substr(0, Looked).find(tag) != bytes.npos;
}

bool isWordML(std::string_view bytes) { return isAtFront("<w:wordDocument", bytes); }

bool isFlatOpenDocument(std::string_view bytes) { return isAtFront("<office:document", bytes); }

} // namespace

std::optional<AttributedString> attributedStringWithOfficePackage(const String& path)
{
    const auto parts = office::partsOfFile(path);
    if (!parts)
        return std::nullopt;
    const Data* type = office::partNamed(*parts, "mimetype");
    if (type && type->chars().starts_with("application/vnd.oasis.opendocument.text"))
        return office::attributedStringWithOpenDocumentParts(*parts);
    return office::attributedStringWithOfficeOpenParts(*parts);
}

bool isOfficeXML(std::string_view bytes) { return isWordML(bytes) || isFlatOpenDocument(bytes); }

std::optional<AttributedString> attributedStringWithOfficeXML(const Data& data)
{
    if (isWordML(data.chars()))
        return office::attributedStringWithWordML(data);
    return isFlatOpenDocument(data.chars()) ? office::attributedStringWithFlatOpenDocument(data)
                                            : std::nullopt;
}

} // namespace caddis
