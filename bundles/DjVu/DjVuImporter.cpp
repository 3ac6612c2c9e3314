#include "bundles/support/Importer.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "platform/base/LeftOut.h"

#include <libdjvu/ddjvuapi.h>
#include <libdjvu/miniexp.h>
#include <memory>

namespace caddis::bundles {

namespace {

constexpr int MaximumPages = 10'000;

// Keys of the document's annotation, as the library's own tools write them.
constexpr Property MetaProperties[] = {
    { "title", "kMDItemTitle" },
    { "Title", "kMDItemTitle" },
    { "author", "kMDItemAuthors", Form::Strings },
    { "Author", "kMDItemAuthors", Form::Strings },
    { "Subject", "kMDItemSubject" },
    { "Keywords", "kMDItemKeywords", Form::Parts },
    { "Creator", "kMDItemCreator" },
    { "publisher", "kMDItemPublishers", Form::Strings },
    { "CreationDate", "kMDItemContentCreationDate", Form::Date },
    { "ModDate", "kMDItemContentModificationDate", Form::Date },
};

class Document {
public:
    Document(ddjvu_context_t* context, const std::string& path)
        : m_context(context)
        , m_document(ddjvu_document_create_by_filename_utf8(context, path.c_str(), FALSE), release)
    {
        while (m_document && !ddjvu_document_decoding_done(m_document.get()))
            waitForMore();
    }
    bool isOpen() const { return m_document && !ddjvu_document_decoding_error(m_document.get()); }
    int pages() const { return ddjvu_document_get_pagenum(m_document.get()); }

    void setSize(Attributes& attributes)
    {
        ddjvu_pageinfo_t info {};
        ddjvu_status_t status = DDJVU_JOB_NOTSTARTED;
        while ((status = ddjvu_document_get_pageinfo(m_document.get(), 0, &info)) < DDJVU_JOB_OK)
            waitForMore();
        if (status != DDJVU_JOB_OK || info.dpi <= 0)
            return;
        constexpr double PointsPerInch = 72;
        attributes.setReal("kMDItemPageWidth", info.width * PointsPerInch / info.dpi);
        attributes.setReal("kMDItemPageHeight", info.height * PointsPerInch / info.dpi);
        attributes.setReal("kMDItemResolutionWidthDPI", info.dpi);
        attributes.setReal("kMDItemResolutionHeightDPI", info.dpi);
    }

    void setMetadata(Attributes& attributes)
    {
        auto* const annotation = complete([&] { return ddjvu_document_get_anno(m_document.get(), TRUE); });
        for (const Property& property : MetaProperties) {
            auto* const key = miniexp_symbol(std::string(property.element).c_str());
            if (const char* value = ddjvu_anno_get_metadata(annotation, key))
                setProperty(attributes, property.key, property.form, value);
        }
        ddjvu_miniexp_release(m_document.get(), annotation);
    }

    /// The text of a page in one piece: (page x y x y "text"), else nothing.
    void appendText(int page, TextSink& text)
    {
        constexpr int TextPlace = 5;
        auto* const found
            = complete([&] { return ddjvu_document_get_pagetext(m_document.get(), page, "page"); });
        auto* const content = miniexp_nth(TextPlace, found);
        if (miniexp_stringp(content))
            text.appendLine(miniexp_to_str(content));
        ddjvu_miniexp_release(m_document.get(), found);
    }

private:
    static void release(ddjvu_document_t* document) { ddjvu_document_release(document); }

    void waitForMore()
    {
        ddjvu_message_wait(m_context);
        while (ddjvu_message_peek(m_context))
            ddjvu_message_pop(m_context);
    }
    template <typename Get> miniexp_t complete(Get get)
    {
        miniexp_t result = get();
        for (; result == miniexp_dummy; result = get())
            waitForMore();
        return result;
    }

    ddjvu_context_t* m_context;
    std::unique_ptr<ddjvu_document_t, decltype(&release)> m_document;
};

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    const std::unique_ptr<ddjvu_context_t, decltype(&ddjvu_context_release)> context(
        ddjvu_context_create("caddis"), ddjvu_context_release);
    Document document(context.get(), path);
    if (!document.isOpen())
        return false;
    const int pages = document.pages();
    attributes.setInteger("kMDItemNumberOfPages", pages);
    document.setSize(attributes);
    document.setMetadata(attributes);
    TextSink text(attributes);
    if (pages > MaximumPages)
        noteLeftOut(u"pages after the first 10,000");
    for (int page = 0; page < std::min(pages, MaximumPages) && !text.isFull() && !attributes.shouldStop();
         ++page)
        document.appendText(page, text);
    return true;
}

} // namespace caddis::bundles
