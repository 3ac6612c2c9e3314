// What MetaDataImporter knows of the importers: how they are discovered, and what they declare.

#include "importers/ImporterDiscovery.h"
#include "importers/MetaDataImporter.h"
#include "importers/TypeDeclarations.h"
#include "platform/base/Ascii.h"
#include "platform/base/Log.h"
#include "platform/base/Paths.h"
#include "platform/plugin/PlugIn.h"
#include "text/StringUtilities.h"

#include <mutex>

namespace caddis {

namespace {

constexpr std::u16string_view DynamicHelpType = u"dyn.ah62d4rv4ge80g4dr";
constexpr std::u16string_view HelpType = u"com.microsoft.chm-archive";

bool isNeverUsed(const String& path)
{
    const String name = lastPathComponent(path);
    return name == u"TagsMail.mdimporter" || name == u"_TagsMail.mdimporter";
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
            types.push_back(*type == DynamicHelpType ? String(HelpType) : lowercaseAscii(*type));
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
            extensions.push_back(lowercaseAscii(*extension));
    }
}

const std::vector<String>* entryOf(const std::map<String, std::vector<String>>& table, const String& path)
{
    const auto found = table.find(path);
    return found == table.end() ? nullptr : &found->second;
}

} // namespace

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
        m_allFactories = PlugIn::allFactoriesForType(String(ImporterType));
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
