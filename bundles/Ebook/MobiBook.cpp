#include "bundles/Ebook/Books.h"
#include "bundles/support/PageText.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "markup/MarkupData.h"

#include <cstdlib>
#include <memory>
#include <mobi.h>

namespace caddis::bundles {

namespace {

// The text of a book as its head declares it: 64,000 records of 64 KB are possible, and no book.
constexpr std::size_t MaximumText = 64 * 1024 * 1024;

struct Row {
    char* (*get)(const MOBIData*);
    const char* key;
    Form form = Form::String;
};
constexpr Row Rows[] = {
    { mobi_meta_get_title, "kMDItemTitle" },
    { mobi_meta_get_author, "kMDItemAuthors", Form::Strings },
    { mobi_meta_get_contributor, "kMDItemContributors", Form::Strings },
    { mobi_meta_get_publisher, "kMDItemPublishers", Form::Strings },
    { mobi_meta_get_subject, "kMDItemKeywords", Form::Parts },
    { mobi_meta_get_description, "kMDItemDescription" },
    { mobi_meta_get_copyright, "kMDItemCopyright" },
    { mobi_meta_get_isbn, "kMDItemIdentifier" },
    { mobi_meta_get_language, "kMDItemLanguages", Form::Strings },
    { mobi_meta_get_publishdate, "kMDItemContentCreationDate", Form::Date },
};

void setMetadata(const MOBIData* book, Attributes& attributes)
{
    for (const Row& row : Rows) {
        const std::unique_ptr<char, decltype(&std::free)> value(row.get(book), std::free);
        if (value)
            setProperty(attributes, row.key, row.form, value.get());
    }
}

void appendPages(const MOBIPart* part, TextSink& text)
{
    for (; part && !text.isFull(); part = part->next) {
        if (part->type != T_HTML || !part->data)
            continue;
        const std::string_view bytes(reinterpret_cast<const char*>(part->data), part->size);
        text.append(plainTextOfPage(markupTextOfData(bytes, {}).text).view());
        text.endLine();
    }
}

} // namespace

bool readMobiBook(Attributes& attributes, const std::string& path)
{
    const std::unique_ptr<MOBIData, decltype(&mobi_free)> book(mobi_init(), mobi_free);
    if (!book || mobi_load_filename(book.get(), path.c_str()) != MOBI_SUCCESS)
        return false;
    setMetadata(book.get(), attributes);
    const bool isEncrypted = mobi_is_encrypted(book.get());
    attributes.setString("kMDItemSecurityMethod", isEncrypted ? "Password Encrypted" : "None");
    if (isEncrypted || mobi_get_text_maxsize(book.get()) > MaximumText)
        return true;
    const std::unique_ptr<MOBIRawml, decltype(&mobi_free_rawml)> pages(
        mobi_init_rawml(book.get()), mobi_free_rawml);
    // Neither the table of contents nor dictionaries nor links: the pages' markup is enough.
    if (!pages || mobi_parse_rawml_opt(pages.get(), book.get(), false, false, false) != MOBI_SUCCESS)
        return true;
    TextSink text(attributes);
    appendPages(pages->markup, text);
    return true;
}

} // namespace caddis::bundles
