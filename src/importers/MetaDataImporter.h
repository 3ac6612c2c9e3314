#pragma once

#include "platform/base/Value.h"
#include "platform/plugin/Bundle.h"

#include <map>
#include <optional>
#include <vector>

namespace caddis {

/// Gives the metadata attributes of files (keys such as "kMDItemTitle") and their text by running importer
/// plug-ins inside this process.
///
/// The installed importers are discovered once per process, at the first need; the instance that comes first
/// gets the tables. The first importer in the search order that declares a file's content type, or else its
/// extension, is the one that is run. One thread uses an instance at a time.
class MetaDataImporter {
public:
    /// What is known of an importer that does not stand in the tables: why.
    struct Record {
        String path;
        std::vector<String> contentTypes;
        std::vector<String> extensions;
        Preflight preflight;
        bool isSkipped; ///< one of those that are never used
    };

    /// Made at the first call; never goes away.
    static MetaDataImporter& sharedImporter();

    void loadMDImporters();
    /// The other way to discover: makes plug-ins of the importers in all folders. It fills the tables and
    /// allFactories, but no search order. Once per process.
    void loadExtractorPlugins();
    /// Records one bundle's types, extensions and factories. Logs "Skipped: %@".
    void addBundleToMDImporters(const Bundle& bundle, const String& path);

    /// Whether an importer was found and run. Attributes, when wanted, are those of its last factory; they
    /// are absent when none was run.
    bool getMetaData(std::optional<Dictionary>* attributes, const String& path);
    /// Whether an importer for the file could be instantiated; books are read without one.
    bool supportsFileAtPath(const String& path);
    /// The attributes, refined by the file's ending; nil when nothing is known.
    std::optional<Dictionary> metaDataOfFileAtPath(const String& path);
    std::optional<String> textContentOfFileAtPath(const String& path);

    /// The importer that would be run, without loading its code.
    std::optional<String> importerOfFileAtPath(const String& path);
    /// All importers in search order with what they declare.
    std::vector<Record> records();

    const std::vector<String>& MDImporterArray() const { return m_importers; }
    /// Nil for an importer without such an entry.
    const std::vector<String>* contentTypesForMDImporter(const String& path) const;
    const std::vector<String>* extensionsForMDImporter(const String& path) const;
    const std::vector<String>* factoriesForMDImporter(const String& path) const;
    const std::vector<String>& allFactories() const { return m_allFactories; }

private:
    using Table = std::map<String, std::vector<String>>;
    enum class Outcome { PassedOver, Failed, Succeeded };

    bool matches(const String& importer, const String& contentType, const String& extension) const;
    Outcome run(const String& importer, const String& contentType, const String& path,
        std::optional<Dictionary>* attributes);
    void drop(const String& importer);

    std::vector<String> m_importers;
    Table m_contentTypes;
    Table m_extensions;
    std::optional<Table> m_factories;
    std::vector<String> m_allFactories;
};

} // namespace caddis
