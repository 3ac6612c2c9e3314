#include "importers/MetaDataImporter.h"

#include "epub/EPUBParser.h"
#include "importers/DocumentKinds.h"
#include "importers/ImporterDiscovery.h"
#include "importers/TypeDeclarations.h"
#include "platform/base/Log.h"
#include "platform/base/Paths.h"
#include "platform/files/ContentType.h"
#include "platform/files/FileSystem.h"
#include "platform/plugin/ImporterValues.h"
#include "platform/plugin/PlugIn.h"
#include "text/FastComparison.h"
#include "text/StringUtilities.h"

#include <algorithm>
#include <mutex>

namespace caddis {

namespace {

const String& importerType()
{
    static const String type = u"8B08C4BF-415B-11D8-B3F9-0003936726FC"_s;
    return type;
}

constexpr std::u16string_view DynamicHelpType = u"dyn.ah62d4rv4ge80g4dr";
constexpr std::u16string_view HelpType = u"com.microsoft.chm-archive";

String lowercase(const String& text)
{
    std::u16string result(text.view());
    for (char16_t& unit : result) {
        if (unit >= u'A' && unit <= u'Z')
            unit = char16_t(unit + 32);
    }
    return String(result);
}

bool isNeverUsed(const String& path)
{
    const String name = lastPathComponent(path);
    return name == u"TagsMail.mdimporter" || name == u"_TagsMail.mdimporter";
}

bool contains(const std::vector<String>* list, const String& text)
{
    return list && std::find(list->begin(), list->end(), text) != list->end();
}

const Array* arrayIn(const Dictionary& dictionary, std::u16string_view key)
{
    const Value* value = dictionary.find(key);
    return value ? value->as<Array>() : nullptr;
}

const Dictionary* dictionaryIn(const Dictionary& dictionary, std::u16string_view key)
{
    const Value* value = dictionary.find(key);
    return value ? value->as<Dictionary>() : nullptr;
}

void addContentTypes(const Dictionary& documentType, std::vector<String>& types)
{
    for (const Value& item : *arrayIn(documentType, u"LSItemContentTypes")) {
        if (const auto* type = item.as<String>())
            types.push_back(*type == DynamicHelpType ? String(HelpType) : lowercase(*type));
    }
}

void addExtensions(const Dictionary& declaration, std::vector<String>& extensions)
{
    const auto* tags = dictionaryIn(declaration, u"UTTypeTagSpecification");
    const auto* listed = tags ? arrayIn(*tags, u"public.filename-extension") : nullptr;
    if (!listed)
        return;
    for (const Value& item : *listed) {
        const auto* extension = item.as<String>();
        if (extension && !isWhiteString(*extension))
            extensions.push_back(lowercase(*extension));
    }
}

const std::vector<String>* entryOf(const std::map<String, std::vector<String>>& table, const String& path)
{
    const auto found = table.find(path);
    return found == table.end() ? nullptr : &found->second;
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

const std::vector<String>* MetaDataImporter::contentTypesForMDImporter(const String& path) const
{
    return entryOf(m_contentTypes, path);
}

const std::vector<String>* MetaDataImporter::extensionsForMDImporter(const String& path) const
{
    return entryOf(m_extensions, path);
}

const std::vector<String>* MetaDataImporter::factoriesForMDImporter(const String& path) const
{
    return m_factories ? entryOf(*m_factories, path) : nullptr;
}

void MetaDataImporter::loadMDImporters()
{
    static std::once_flag once;
    std::call_once(once, [this] {
        m_importers = discoveredImporters();
        for (const String& path : m_importers) {
            const auto bundle = Bundle::bundleWithPath(path);
            if (bundle && bundle->preflight() == Preflight::Passed)
                addBundleToMDImporters(*bundle, path);
        }
    });
}

void MetaDataImporter::loadExtractorPlugins()
{
    static std::once_flag once;
    std::call_once(once, [this] {
        m_contentTypes.clear();
        m_extensions.clear();
        m_factories.emplace();
        for (const String& path : importersInAllFolders()) {
            const auto bundle = Bundle::bundleWithPath(path);
            if (!bundle || bundle->preflight() != Preflight::Passed)
                continue;
            PlugIn::create(path);
            addBundleToMDImporters(*bundle, path);
        }
        m_allFactories = PlugIn::allFactoriesForType(importerType());
    });
}

void MetaDataImporter::addBundleToMDImporters(const Bundle& bundle, const String& path)
{
    if (isNeverUsed(path)) {
        log(u"Skipped: %@", path);
        return;
    }
    const Dictionary& info = bundle.infoDictionary();
    declareContentTypes(info);
    if (const auto* documentTypes = arrayIn(info, u"CFBundleDocumentTypes")) {
        for (const Value& item : *documentTypes) {
            const auto* type = item.as<Dictionary>();
            if (type && type->stringForKey(u"CFBundleTypeRole") == u"MDImporter"_s
                && arrayIn(*type, u"LSItemContentTypes"))
                addContentTypes(*type, m_contentTypes[path]);
        }
    }
    if (const auto* declarations = arrayIn(info, u"UTExportedTypeDeclarations")) {
        auto& extensions = m_extensions[path];
        for (const Value& item : *declarations) {
            if (const auto* declaration = item.as<Dictionary>())
                addExtensions(*declaration, extensions);
        }
    }
    if (m_factories && dictionaryIn(info, u"CFPlugInFactories")) {
        for (const String& factory : bundle.keysOf(u"CFPlugInFactories"))
            (*m_factories)[path].push_back(factory);
    }
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
    for (const String& factory : plugIn->factoriesForType(importerType())) {
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
    const String contentType = lowercase(type.value_or(String()));
    const String extension = lowercase(pathExtension(path));
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
        if (type && matches(importer, lowercase(*type), lowercase(pathExtension(path))))
            return importer;
    }
    return std::nullopt;
}

std::vector<MetaDataImporter::Record> MetaDataImporter::records()
{
    loadMDImporters();
    std::vector<Record> result;
    for (const String& path : m_importers) {
        const auto bundle = Bundle::bundleWithPath(path);
        const auto listOf
            = [](const std::vector<String>* list) { return list ? *list : std::vector<String>(); };
        result.push_back(
            { path, listOf(contentTypesForMDImporter(path)), listOf(extensionsForMDImporter(path)),
                bundle ? bundle->preflight() : Preflight::NoSuchFile, isNeverUsed(path) });
    }
    return result;
}

} // namespace caddis
