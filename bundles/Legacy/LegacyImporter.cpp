#include "bundles/Legacy/DocumentFamilies.h"
#include "bundles/support/Importer.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "platform/base/LeftOut.h"

#include <filesystem>
#include <librevenge-generators/librevenge-generators.h>
#include <librevenge-stream/librevenge-stream.h>

namespace caddis::bundles {

namespace {

// What librevenge calls the properties that all its libraries report.
constexpr Property MetaProperties[] = {
    { "dc:title", "kMDItemTitle" },
    { "dc:creator", "kMDItemAuthors", Form::Strings },
    { "meta:initial-creator", "kMDItemAuthors", Form::Strings },
    { "dc:subject", "kMDItemSubject" },
    { "dc:description", "kMDItemComment" },
    { "dc:publisher", "kMDItemPublishers", Form::Strings },
    { "dc:language", "kMDItemLanguages", Form::Strings },
    { "meta:keyword", "kMDItemKeywords", Form::Parts },
    { "meta:creation-date", "kMDItemContentCreationDate", Form::Date },
    { "dc:date", "kMDItemContentModificationDate", Form::Date },
};

struct Enough { };

// How much text has come, whatever kind of document it is part of.
class Budget {
public:
    explicit Budget(Attributes& attributes)
        : m_attributes(attributes)
    {
    }
    /// Throws Enough: the libraries know no other way to stop.
    void spend(std::size_t bytes)
    {
        m_left -= std::min(bytes, m_left);
        if (m_left == 0)
            noteLeftOut(u"text beyond 16 MiB");
        if (m_left == 0 || m_attributes.shouldStop())
            throw Enough();
    }
    void setMetadata(const librevenge::RVNGPropertyList& properties)
    {
        for (const Property& property : MetaProperties) {
            if (const auto* value = properties[property.element.data()])
                setProperty(m_attributes, property.key, property.form, value->getStr().cstr());
        }
    }

private:
    static constexpr std::size_t MaximumText = 16 * 1024 * 1024;

    Attributes& m_attributes;
    std::size_t m_left = MaximumText;
};

// One of librevenge's own collectors of text, within a budget.
template <typename Generator> class Collector : public Generator {
public:
    template <typename Output>
    Collector(Output& output, Budget& budget)
        : Generator(output)
        , m_budget(budget)
    {
    }
    void setDocumentMetaData(const librevenge::RVNGPropertyList& properties) override
    {
        m_budget.setMetadata(properties);
        Generator::setDocumentMetaData(properties);
    }
    void insertText(const librevenge::RVNGString& text) override
    {
        m_budget.spend(static_cast<std::size_t>(text.size()));
        Generator::insertText(text);
    }

private:
    Budget& m_budget;
};

void appendAll(const librevenge::RVNGStringVector& parts, TextSink& text)
{
    for (unsigned i = 0; i < parts.size() && !text.isFull(); ++i)
        text.appendLine(parts[i].cstr());
}

bool read(librevenge::RVNGInputStream& input, Attributes& attributes)
{
    Budget budget(attributes);
    librevenge::RVNGString text;
    librevenge::RVNGStringVector pages;
    Collector<librevenge::RVNGTextTextGenerator> texts(text, budget);
    Collector<librevenge::RVNGTextSpreadsheetGenerator> sheets(pages, budget);
    Collector<librevenge::RVNGTextPresentationGenerator> slides(pages, budget);
    Collector<librevenge::RVNGTextDrawingGenerator> drawing(pages, budget);
    bool isKnown = true;
    try {
        isKnown = readDocument(input, { texts, sheets, slides, drawing });
    } catch (const Enough&) {
        // What has been collected is as good as a whole document.
    }
    TextSink sink(attributes);
    sink.append(text.cstr());
    sink.endLine();
    appendAll(pages, sink);
    return isKnown;
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        librevenge::RVNGDirectoryStream package(path.c_str());
        return read(package, attributes);
    }
    if (!std::filesystem::is_regular_file(path, error))
        return false;
    librevenge::RVNGFileStream file(path.c_str());
    return read(file, attributes);
}

} // namespace caddis::bundles
