#include "importers/MetaDataImporter.h"

#include "epub/EPUBParser.h"
#include "platform/files/FileSystem.h"

namespace caddis {

std::optional<Dictionary> MetaDataImporter::metaDataOfFileAtPath(const String& path)
{
    if (!EPUBParser::isEPUBFile(path))
        return std::nullopt;
    return EPUBParser(path).metaData();
}

bool MetaDataImporter::supportsFileAtPath(const String& path)
{
    return EPUBParser::isEPUBFile(path) && FileSystem::exists(path);
}

} // namespace caddis
