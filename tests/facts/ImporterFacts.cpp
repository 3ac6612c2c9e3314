#include "facts/Facts.h"
#include "foundation/Inflate.h"
#include "importers/MetaDataImporter.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/PropertyList.h"
#include "platform/plugin/Bundle.h"
#include "text/StringUtilities.h"

#include <algorithm>
#include <filesystem>

namespace caddis::facts {

Answer importerFact(const Question& question);
Answer documentFact(const Question& question);

namespace {

// Sorted, for the facts' lists have no order.
String joined(const std::vector<String>* list)
{
    auto sorted = list ? *list : std::vector<String>();
    std::sort(sorted.begin(), sorted.end());
    return componentsJoinedByString(sorted, u" ");
}

// A bundle in a temporary folder that has the file as its Info.plist.
class BundleOf {
public:
    explicit BundleOf(const String& plist)
    {
        std::string pattern = std::filesystem::temp_directory_path() / "caddis-facts-XXXXXX";
        m_folder = mkdtemp(pattern.data());
        std::filesystem::copy_file(plist.utf8(), m_folder / "Info.plist");
    }
    ~BundleOf() { std::filesystem::remove_all(m_folder); }
    BundleOf(const BundleOf&) = delete;
    BundleOf& operator=(const BundleOf&) = delete;

    String path() const { return String::fromUtf8(m_folder.string()); }

private:
    std::filesystem::path m_folder;
};

} // namespace

// "contentTypes", "extensions", "factories", "CFPlugInDynamicRegistration" of an Info.plist.
Answer importerFact(const Question& question)
{
    const BundleOf folder(question.path);
    const auto bundle = Bundle::bundleWithPath(folder.path());
    if (!bundle)
        return std::nullopt;
    if (question.key == u"CFPlugInDynamicRegistration") {
        const auto text = bundle->infoDictionary().stringForKey(question.key);
        return text ? *text : u"absent"_s;
    }
    if (question.key == u"factories") {
        const auto factories = bundle->keysOf(u"CFPlugInFactories");
        return joined(&factories);
    }
    MetaDataImporter importer;
    importer.addBundleToMDImporters(*bundle, folder.path());
    if (question.key == u"contentTypes")
        return joined(importer.contentTypesForMDImporter(folder.path()));
    if (question.key == u"extensions")
        return joined(importer.extensionsForMDImporter(folder.path()));
    return Answer::skip("no such key");
}

// "kMDItemTextContent" of an outline or a chat log, and what lies in its folder.
Answer documentFact(const Question& question)
{
    const String contents = stringByAppendingPathComponent(question.path, u"contents.xml");
    if (question.key.view().starts_with(u"contents.")) {
        const auto data = FileSystem::contentsOfFile(contents);
        const auto inflated = data ? dataByInflatingData(*data) : std::nullopt;
        if (question.key == u"contents.compressed")
            return yesOrNo(inflated.has_value());
        return inflated ? decimal(inflated->size()) : Answer(std::nullopt);
    }
    if (question.key == u"xml.count") {
        const auto names = FileSystem::contentsOfDirectory(question.path).value_or(std::vector<String>());
        return decimal(std::size_t(std::count_if(
            names.begin(), names.end(), [](const String& name) { return pathExtension(name) == u"xml"; })));
    }
    return MetaDataImporter::sharedImporter().textContentOfFileAtPath(question.path);
}

} // namespace caddis::facts
