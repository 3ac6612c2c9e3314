#include "bundles/support/Importer.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"
#include "platform/base/LeftOut.h"

#include <archive.h>
#include <archive_entry.h>
#include <memory>

namespace caddis::bundles {

namespace {

// Names of members that a compressed archive hides behind more than this are not worth the time.
constexpr std::int64_t MaximumUnpacked = 1LL << 30;
constexpr int MaximumMembers = 1'000'000;

struct Close {
    void operator()(archive* reader) const { archive_read_free(reader); }
};

// What comic readers write about a book of pictures.
constexpr Property ComicProperties[] = {
    { "Title", "kMDItemTitle" },
    { "Series", "kMDItemAlbum" },
    { "Summary", "kMDItemDescription" },
    { "Writer", "kMDItemAuthors", Form::Parts },
    { "Penciller", "kMDItemContributors", Form::Parts },
    { "Publisher", "kMDItemPublishers", Form::Strings },
    { "Genre", "kMDItemKeywords", Form::Parts },
    { "LanguageISO", "kMDItemLanguages", Form::Strings },
    { "PageCount", "kMDItemNumberOfPages", Form::Integer },
};

void readComicInfo(archive* reader, Attributes& attributes)
{
    std::string xml(256 * 1024, '\0');
    const la_ssize_t size = archive_read_data(reader, xml.data(), xml.size());
    if (size <= 0)
        return;
    PropertyReader properties(attributes, ComicProperties);
    parseXml(std::string_view(xml).substr(0, static_cast<std::size_t>(size)), properties);
}

std::string_view nameOf(archive_entry* entry)
{
    const char* name = archive_entry_pathname_utf8(entry);
    if (!name)
        name = archive_entry_pathname(entry);
    return name ? name : std::string_view();
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    const std::unique_ptr<archive, Close> reader(archive_read_new());
    archive_read_support_filter_all(reader.get());
    archive_read_support_format_all(reader.get());
    if (archive_read_open_filename(reader.get(), path.c_str(), 64 * 1024) != ARCHIVE_OK)
        return false;
    TextSink text(attributes);
    archive_entry* entry = nullptr;
    for (int count = 0; archive_read_next_header(reader.get(), &entry) >= ARCHIVE_WARN; ++count) {
        const std::string_view name = nameOf(entry);
        if (endsWithNoCase(name, "ComicInfo.xml"))
            readComicInfo(reader.get(), attributes);
        if (!text.appendLine(name) || attributes.shouldStop())
            break;
        if (count == MaximumMembers || archive_filter_bytes(reader.get(), 0) > MaximumUnpacked) {
            noteLeftOut(u"the rest of an archive that has very many members or inflates to very much");
            break;
        }
    }
    return !text.isEmpty();
}

} // namespace caddis::bundles
