#pragma once

#include "epub/ZipArchive.h"
#include "platform/base/MutableString.h"
#include "platform/base/Value.h"
#include "platform/image/Image.h"
#include "platform/richtext/AttributedString.h"
#include "platform/xml/XMLParser.h"

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace caddis {

/// One EPUB book, a zip archive or a folder: its package documents, its members, and whether it carries
/// rights management.
///
/// META-INF/container.xml names the package file (OPF), which gives metadata, manifest and reading order.
/// Both are parsed when the object is made; an unreadable book has empty collections. No method throws, and
/// protected content is never read.
///
/// Paths: the "OPF folder" is the package file's folder in the archive, "" at its root. Manifest paths are
/// relative to it; `opfFile`, `ncxFile` and `tocFile` are paths in the archive.
///
/// For one thread at a time.
class EPUBParser : private XMLParserDelegate {
public:
    /// By the path's end: ".epub" or ".ibooks" in any case.
    static bool isEPUBFile(const String& path);
    /// The type is not consulted.
    static bool isEPUBExtension(const String& extension, const String& type);

    /// The selector `initWithFile:`. The object is valid whatever the file is.
    explicit EPUBParser(const String& path);
    /// Removes the unpacked copy from the disk.
    ~EPUBParser() override;
    EPUBParser(const EPUBParser&) = delete;
    EPUBParser& operator=(const EPUBParser&) = delete;

    const std::optional<String>& opfFile() const { return m_opfFile; }
    const std::optional<String>& ncxFile() const { return m_ncxFile; }
    /// The XHTML table of contents.
    const std::optional<String>& tocFile() const { return m_tocFile; }
    /// Relative to the OPF folder.
    const std::optional<String>& coverPath() const { return m_coverPath; }
    /// Manifest id to path, for every XHTML item.
    const std::unordered_map<String, String>& items() const { return m_items; }
    /// Manifest ids of the linear items in reading order, whether the manifest has them or not.
    const std::vector<String>& spines() const { return m_spines; }
    /// Paths of the manifest's items that are neither XHTML nor NCX, the cover among them.
    const std::vector<String>& auxiliaryFiles() const { return m_auxiliaryFiles; }
    /// kMDItemTitle, -Description and -Copyright: String. kMDItemAuthors, -Contributors, -Editors,
    /// -Publishers and -Keywords: Array of String.
    const Dictionary& metaData() const { return m_metaData; }

    /// "Adobe", "Apple", "Barnes & Noble", "Kobo", or "" when no rights management is found.
    const String& DRM();
    bool hasDRM();

    /// A book that is a folder is first copied (see unzippedEPUB), and names can't lead out of the copy.
    bool testForNamedFile(const String& name);
    /// Of a member of more than 32 MiB, which no document of a book has, the first so many bytes.
    std::optional<Data> dataForNamedFile(const String& name);

    /// A fresh path in the temporary folder, named after the book; nothing is made there.
    std::optional<String> epubFolder() const;
    /// Unpacks, or copies, the book to a path where nothing is yet.
    bool unzipEPUBToPath(const String& path);
    /// The folder of the unpacked copy, which is made at the first call and lives as long as this object. Nil
    /// when it can't be made; a later call tries again.
    const std::optional<String>& unzippedEPUB();

    /// Where a path relative to the OPF folder lies in the unpacked copy; nil for no path, and while there is
    /// no copy: this does not unpack.
    std::optional<URL> URLForContent(const String& content) const;
    /// The same for a navigation entry (see NCXParser).
    std::optional<URL> URLForItem(const Dictionary& entry) const;
    /// The way back: nil unless it is a file URL below the OPF folder of the unpacked copy.
    std::optional<String> contentForURL(const URL& url) const;

    // The contents (EPUBContents.cpp). All whole-book results are nil for a book with rights management. For
    // each of them at most 128 MiB of documents are read, and 32,768 documents.

    /// The table of contents as an array of navigation entries: the NCX list, or a tree over the spine where
    /// that list is flat and shorter; nil for a book with neither. Made at the first call.
    const std::optional<Array>& rootChildren();
    /// Where the first page lies in the unpacked copy, which is made now. Nil without NCX and XHTML table of
    /// contents.
    const std::optional<String>& firstPage();
    /// The cover picture; nil when the package names none, or the member is missing or no picture.
    std::optional<Image> cover();
    static std::optional<Image> coverForFile(const std::optional<String>& path);
    /// The plain text of the spine's documents, each followed by a line feed.
    std::optional<String> textContents();
    /// The whole book as one HTML document with its pictures and style sheets in it.
    std::optional<String> htmlContents();
    /// That document as attributed text, without document attributes. Nil when there is none.
    std::optional<AttributedString> richTextContents();

private:
    // How a metadata key takes its values.
    enum class MetaDataKind { Single, List };

    // The value that the text of the present element goes to: `key`'s, or its element `index`.
    struct MetaString {
        String key;
        std::optional<std::size_t> index;
        MutableString text;
    };

    // The package documents (EPUBPackage.cpp).
    void parsePackage();
    void didStartElement(std::string_view name, const XMLAttributes& attributes) override;
    void didEndElement(std::string_view name) override;
    void foundCharacters(const String& characters) override;
    void startDublinCore(std::string_view name, const XMLAttributes& attributes);
    void startItem(const XMLAttributes& attributes);
    void startMeta(const XMLAttributes& attributes);
    void startItemReference(const XMLAttributes& attributes);
    void startMetaData(std::u16string_view key, MetaDataKind kind, const XMLAttributes& attributes);
    void finishMetaString();
    String pathInOPFFolder(const String& href) const;

    std::optional<Array> makeRootChildren();
    std::vector<String> spineContents() const;
    std::optional<URL> tableOfContentsURL() const;
    std::unordered_map<String, String> linkTitles(const std::optional<URL>& base, std::uint64_t& allowance);
    String titleOfDocument(const String& content, std::uint64_t& allowance);
    std::optional<String> documentText(const String& path, std::uint64_t& allowance);

    String opfFolder() const;
    std::optional<String> pathInCopy(const String& name);
    std::optional<String> unpackedOPFFolder() const;

    std::unordered_map<String, String> m_items;
    Dictionary m_metaData;
    std::optional<MetaString> m_metaString;
    std::vector<String> m_spines;
    std::vector<String> m_auxiliaryFiles;
    std::unique_ptr<ZipArchive> m_archive; // Null for a folder.
    String m_epubPath;
    std::optional<String> m_epubFolder;
    std::optional<String> m_opfFile;
    std::optional<String> m_ncxFile;
    std::optional<String> m_tocFile;
    std::optional<String> m_coverPath;
    std::optional<String> m_coverID;
    std::optional<String> m_mimetype; // Kept, not tested.
    std::optional<String> m_drm;
    std::optional<std::optional<Array>> m_children; // Unset until asked for.
    std::optional<String> m_firstPage;
};

} // namespace caddis
