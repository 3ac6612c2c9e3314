#include "importers/MetaDataImporter.h"

#include "epub/EPUBParser.h"
#include "importers/DocumentKinds.h"
#include "importers/ImporterDiscovery.h"
#include "platform/base/Ascii.h"
#include "platform/base/Log.h"
#include "platform/base/Paths.h"
#include "platform/files/ContentType.h"
#include "platform/files/FileSystem.h"
#include "platform/plugin/ImporterValues.h"
#include "platform/plugin/PlugIn.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {

namespace {

bool contains(const std::vector<String>* list, const String& text)
{
    return list && std::find(list->begin(), list->end(), text) != list->end();
}

CaddisImporter** interfaceOf(CaddisUnknown** object, CaddisUUID identifier)
{
    void* found = nullptr;
    if ((*object)->query_interface(object, identifier, &found) != CADDIS_OK)
        return nullptr;
    return static_cast<CaddisImporter**>(found);
}

// One factory's object, and the interface of it that is used.
struct Instance {
    CaddisImporter** importer = nullptr;
    bool takesURL = false;
};

// Kept on purpose: only on the way to the URL interface is the instance's own reference released.
Instance instanceOf(PlugIn& plugIn, const String& factory, const String& path)
{
    Instance instance;
    CaddisUnknown** object = plugIn.instantiate(factory, CADDIS_IMPORTER_TYPE_ID);
    if (!object)
        return instance;
    withoutExceptions(path, [&] {
        instance.importer = interfaceOf(object, CADDIS_IMPORTER_INTERFACE_ID);
        if (instance.importer)
            return;
        instance.takesURL = true;
        instance.importer = interfaceOf(object, CADDIS_URL_IMPORTER_INTERFACE_ID);
        (*object)->release(object);
    });
    return instance;
}

void import(const Instance& instance, CaddisValue* attributes, const String& importer,
    const String& contentType, const String& path)
{
    const String file = instance.takesURL ? URL::fileURLWithPath(path).absoluteString() : path;
    withoutExceptions(importer, [&] {
        (*instance.importer)
            ->import_data(instance.importer, attributes, contentType.utf8().c_str(), file.utf8().c_str());
    });
}

Dictionary metaDataOfBook(const String& path)
{
    EPUBParser book(path);
    Dictionary metaData = book.metaData();
    if (const auto text = book.textContents())
        metaData.set(u"kMDItemTextContent"_s, Value(*text));
    return metaData;
}

} // namespace

MetaDataImporter& MetaDataImporter::sharedImporter()
{
    static MetaDataImporter instance;
    return instance;
}

bool MetaDataImporter::matches(
    const String& importer, const String& contentType, const String& extension) const
{
    return contains(contentTypesForMDImporter(importer), contentType)
        || contains(extensionsForMDImporter(importer), extension);
}

void MetaDataImporter::drop(const String& importer)
{
    m_contentTypes.erase(importer);
    m_extensions.erase(importer);
    std::erase(m_importers, importer);
}

MetaDataImporter::Outcome MetaDataImporter::run(const String& importer, const String& contentType,
    const String& path, std::optional<Dictionary>* attributes)
{
    PlugIn* const plugIn = PlugIn::create(importer);
    if (!plugIn)
        return Outcome::PassedOver;
    bool hasFailed = false;
    bool hasSucceeded = false;
    for (const String& factory : plugIn->factoriesForType(String(ImporterType))) {
        const Instance instance = instanceOf(*plugIn, factory, importer);
        if (!instance.importer) {
            log(u"%@: No kMDImporter(URL)Interface %@", importer, factory);
            drop(importer);
            hasFailed = true;
            continue;
        }
        if (attributes) {
            *attributes = attributesOfImport(
                [&](CaddisValue* values) { import(instance, values, importer, contentType, path); });
        }
        withoutExceptions(importer, [&] { (*instance.importer)->unknown.release(instance.importer); });
        hasSucceeded = true;
    }
    if (hasSucceeded)
        return Outcome::Succeeded;
    return hasFailed ? Outcome::Failed : Outcome::PassedOver;
}

bool MetaDataImporter::getMetaData(std::optional<Dictionary>* attributes, const String& path)
{
    if (!contentTypeOfItem(path))
        return false;
    loadMDImporters(); // Their declarations may say more of the type.
    const auto type = contentTypeOfItem(path);
    const String contentType = lowercaseAscii(type.value_or(String()));
    const String extension = lowercaseAscii(pathExtension(path));
    const std::vector<String> order = m_importers; // Importers may be dropped on the way.
    for (const String& importer : order) {
        if (!matches(importer, contentType, extension))
            continue;
        const Outcome outcome = run(importer, contentType, path, attributes);
        if (outcome != Outcome::PassedOver)
            return outcome == Outcome::Succeeded;
    }
    return false;
}

bool MetaDataImporter::supportsFileAtPath(const String& path)
{
    return (EPUBParser::isEPUBFile(path) && FileSystem::exists(path)) || getMetaData(nullptr, path);
}

std::optional<Dictionary> MetaDataImporter::metaDataOfFileAtPath(const String& path)
{
    if (EPUBParser::isEPUBFile(path))
        return metaDataOfBook(path);
    std::optional<Dictionary> metaData;
    if (hasSuffixNoCase(path, u"fennikSearch")) {
        getMetaData(&metaData, stringByAppendingPathComponent(path, u"QuickLook/Preview.pdf"));
        const Value* text = metaData ? metaData->find(u"kMDItemTextContent") : nullptr;
        return text ? Dictionary { { u"kMDItemTextContent"_s, *text } } : Dictionary();
    }
    getMetaData(&metaData, path);
    if (metaData && !metaData->isEmpty())
        return refinedMetaData(std::move(*metaData), path);
    if (auto text = textOfDocument(path))
        return Dictionary { { u"kMDItemTextContent"_s, Value(std::move(*text)) } };
    return metaData;
}

std::optional<String> MetaDataImporter::textContentOfFileAtPath(const String& path)
{
    const auto metaData = metaDataOfFileAtPath(path);
    return metaData ? metaData->stringForKey(u"kMDItemTextContent") : std::nullopt;
}

std::optional<String> MetaDataImporter::importerOfFileAtPath(const String& path)
{
    loadMDImporters();
    const auto type = contentTypeOfItem(path);
    for (const String& importer : m_importers) {
        if (type && matches(importer, lowercaseAscii(*type), lowercaseAscii(pathExtension(path))))
            return importer;
    }
    return std::nullopt;
}

} // namespace caddis
