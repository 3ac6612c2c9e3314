#include "bundles/support/Importer.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"
#include "bundles/support/ZipPackage.h"

#include <algorithm>
#include <charconv>

namespace caddis::bundles {

namespace {

// OpenDocument 1.3, part 3, 4.3.
constexpr Property MetaProperties[] = {
    { "title", "kMDItemTitle" },
    { "subject", "kMDItemSubject" },
    { "description", "kMDItemComment" },
    { "keyword", "kMDItemKeywords", Form::Strings },
    { "initial-creator", "kMDItemAuthors", Form::Strings },
    { "creator", "kMDItemContributors", Form::Strings },
    { "language", "kMDItemLanguages", Form::Strings },
    { "generator", "kMDItemCreator" },
    { "creation-date", "kMDItemContentCreationDate", Form::Date },
    { "date", "kMDItemContentModificationDate", Form::Date },
};

// The number of pages or slides is an attribute of the statistics.
class MetaReader : public PropertyReader {
public:
    explicit MetaReader(Attributes& attributes)
        : PropertyReader(attributes, MetaProperties)
        , m_attributes(attributes)
    {
    }
    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "document-statistic")
            setProperty(m_attributes, "kMDItemNumberOfPages", Form::Integer, tag["page-count"]);
        PropertyReader::startElement(name, tag);
    }

private:
    Attributes& m_attributes;
};

// Text stands in <text:p> and <text:h>; everything else between tags is layout.
class ContentReader : public XmlHandler {
public:
    explicit ContentReader(TextSink& text)
        : m_text(text)
    {
    }

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (m_skipped > 0 || name == "tracked-changes" || name == "binary-data") {
            ++m_skipped;
        } else if (name == "p" || name == "h") {
            ++m_paragraphs;
        } else if (name == "s") {
            m_text.append(std::string(spaces(tag["c"]), ' '));
        } else if (name == "tab") {
            m_text.append("\t");
        } else if (name == "line-break") {
            m_text.append("\n");
        } else if (name == "table-row") {
            m_text.endLine();
            m_isInRow = true;
        } else if ((name == "table" || name == "page") && m_paragraphs == 0) {
            m_text.appendLine(tag["name"]);
        }
    }
    void endElement(std::string_view name) override
    {
        if (m_skipped > 0) {
            --m_skipped;
        } else if (name == "p" || name == "h") {
            m_paragraphs = std::max(m_paragraphs - 1, 0);
            m_isInRow ? m_text.append(" ") : m_text.endLine();
        } else if (name == "table-cell") {
            m_text.separate();
        } else if (name == "table-row") {
            m_isInRow = false;
            m_text.endLine();
        }
    }
    void characters(std::string_view text) override
    {
        if (m_paragraphs > 0 && m_skipped == 0)
            m_text.append(text);
    }
    bool isDone() const override { return m_text.isFull(); }

private:
    static std::size_t spaces(std::string_view count)
    {
        std::size_t value = 1;
        std::from_chars(count.data(), count.data() + count.size(), value);
        return std::min<std::size_t>(value, 80);
    }

    TextSink& m_text;
    int m_paragraphs = 0;
    int m_skipped = 0; ///< depth inside an element that does not count
    bool m_isInRow = false;
};

// A flat document holds in one file what a package has in two.
class FlatReader : public XmlHandler {
public:
    FlatReader(Attributes& attributes, TextSink& text)
        : m_meta(attributes)
        , m_content(text)
    {
    }
    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "meta" || name == "body")
            m_part = name == "meta" ? static_cast<XmlHandler*>(&m_meta) : &m_content;
        if (m_part)
            m_part->startElement(name, tag);
    }
    void endElement(std::string_view name) override
    {
        if (m_part)
            m_part->endElement(name);
        if (name == "meta" || name == "body")
            m_part = nullptr;
    }
    void characters(std::string_view text) override
    {
        if (m_part)
            m_part->characters(text);
    }
    bool isDone() const override { return m_content.isDone(); }

private:
    MetaReader m_meta;
    ContentReader m_content;
    XmlHandler* m_part = nullptr;
};

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    TextSink text(attributes);
    const auto package = ZipPackage::open(path);
    if (!package) {
        FlatReader flat(attributes, text);
        return parseXmlFile(path, flat, attributes);
    }
    MetaReader meta(attributes);
    package->parseXml("meta.xml", meta, attributes);
    ContentReader content(text);
    return package->parseXml("content.xml", content, attributes);
}

} // namespace caddis::bundles
