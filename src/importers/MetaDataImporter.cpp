#include "importers/MetaDataImporter.h"

#include "epub/EPUBParser.h"
#include "platform/files/FileSystem.h"

namespace caddis {

std::optional<Dictionary> MetaDataImporter::metaDataOfFileAtPath(const String& path)
{
    if (!EPUBParser::isEPUBFile(path))
        return std::nullopt;
    EPUBParser book(path);
    Dictionary metaData = book.metaData();
    if (const auto text = book.textContents())
        metaData.set(u"kMDItemTextContent"_s, Value(*text));
    return metaData;
}

bool MetaDataImporter::supportsFileAtPath(const String& path)
{
    return EPUBParser::isEPUBFile(path) && FileSystem::exists(path);
}

} // namespace caddis
