#include "bundles/OfficeLegacy/Documents.h"
#include "bundles/support/Importer.h"
#include "bundles/support/InputFile.h"
#include "bundles/support/PropertySet.h"

namespace caddis::bundles {

// The streams decide what a document is, not its name.
bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    const auto bytes = readFile(path);
    const auto file = bytes ? CompoundFile::open(*bytes) : std::nullopt;
    if (!file)
        return false;
    setSummaryInformation(*file, attributes);
    TextSink text(attributes);
    for (const auto read : { readWordDocument, readBinaryWorkbook, readSlideShow }) {
        const DocumentText result = read(*file, text);
        if (result == DocumentText::None)
            continue;
        attributes.setString(
            "kMDItemSecurityMethod", result == DocumentText::Encrypted ? "Password Encrypted" : "None");
        return true;
    }
    return false;
}

} // namespace caddis::bundles
