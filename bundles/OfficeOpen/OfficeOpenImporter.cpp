#include "bundles/OfficeOpen/Relationships.h"
#include "bundles/OfficeOpen/SheetText.h"
#include "bundles/support/Importer.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/ZipPackage.h"

#include <algorithm>

namespace caddis::bundles {

namespace {

// docProps/core.xml (Dublin Core) and docProps/app.xml: ECMA-376, part 2, 11, and part 1, 22.2.
constexpr Property CoreProperties[] = {
    { "title", "kMDItemTitle" },
    { "creator", "kMDItemAuthors", Form::Parts },
    { "subject", "kMDItemSubject" },
    { "description", "kMDItemComment" },
    { "keywords", "kMDItemKeywords", Form::Parts },
    { "category", "kMDItemHeadline" },
    { "language", "kMDItemLanguages", Form::Strings },
    { "version", "kMDItemVersion" },
    { "identifier", "kMDItemIdentifier" },
    { "lastModifiedBy", "kMDItemContributors", Form::Strings },
    { "created", "kMDItemContentCreationDate", Form::Date },
    { "modified", "kMDItemContentModificationDate", Form::Date },
};
constexpr Property AppProperties[] = {
    { "Application", "kMDItemCreator" },
    { "Pages", "kMDItemNumberOfPages", Form::Integer },
    { "Slides", "kMDItemNumberOfPages", Form::Integer },
    { "Company", "kMDItemOrganizations", Form::Strings },
};

// Text of word processing and drawing alike: runs in <t>, paragraphs in <p>.
class ParagraphReader : public XmlHandler {
public:
    explicit ParagraphReader(TextSink& text)
        : m_text(text)
    {
    }

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        m_isText = name == "t";
        if (name == "tab" && !m_isInTabs)
            m_text.append("\t");
        else if (name == "br" || name == "cr")
            m_text.append("\n");
        else if (name == "noBreakHyphen")
            m_text.append("\u2011");
        else if (name == "tabs")
            m_isInTabs = true;
        else if (name == "Fallback")
            ++m_fallbackDepth;
        else if (name == "Glyphs" && !tag["UnicodeString"].empty())
            appendGlyphs(tag["UnicodeString"]);
    }
    void endElement(std::string_view name) override
    {
        m_isText = false;
        if (name == "p")
            m_text.endLine();
        else if (name == "tabs")
            m_isInTabs = false;
        else if (name == "Fallback" && m_fallbackDepth > 0)
            --m_fallbackDepth;
    }
    void characters(std::string_view text) override
    {
        // A fallback says once more what its alternative has said.
        if (m_isText && m_fallbackDepth == 0)
            m_text.append(text);
    }
    bool isDone() const override { return m_text.isFull(); }

private:
    // "{}" stands before a text that itself begins with a brace (XPS 1.0, 5.1).
    void appendGlyphs(std::string_view glyphs)
    {
        m_text.appendLine(glyphs.starts_with("{}") ? glyphs.substr(2) : glyphs);
    }

    TextSink& m_text;
    bool m_isText = false;
    bool m_isInTabs = false;
    int m_fallbackDepth = 0;
};

bool isBetween(std::string_view name, std::string_view beginning, std::string_view ending)
{
    return name.size() > beginning.size() + ending.size() && name.starts_with(beginning)
        && name.ends_with(ending);
}

// The parts "beginningNending", in the order of their numbers.
std::vector<std::string> numberedParts(
    const ZipPackage& package, std::string_view beginning, std::string_view ending = ".xml")
{
    std::vector<std::string> parts;
    for (const std::string& name : package.names()) {
        if (isBetween(name, beginning, ending) && name.find('/', beginning.size()) == name.npos)
            parts.push_back(name);
    }
    // A longer name has a larger number.
    std::ranges::sort(parts, [](const std::string& left, const std::string& right) {
        return left.size() != right.size() ? left.size() < right.size() : left < right;
    });
    return parts;
}

void readParts(
    ZipPackage& package, const std::vector<std::string>& parts, const Attributes& attributes, TextSink& text)
{
    for (const std::string& part : parts) {
        ParagraphReader reader(text);
        package.parseXml(part, reader, attributes);
        text.endLine();
        if (text.isFull())
            return;
    }
}

void readDocument(ZipPackage& package, Attributes& attributes, TextSink& text)
{
    readParts(package,
        { "word/document.xml", "word/footnotes.xml", "word/endnotes.xml", "word/comments.xml" }, attributes,
        text);
    readParts(package, numberedParts(package, "word/header"), attributes, text);
    readParts(package, numberedParts(package, "word/footer"), attributes, text);
}

// The slides in the order of their showing; their parts are numbered as they were made.
struct SlideList : XmlHandler {
    explicit SlideList(const Relationships& ofParts)
        : relationships(ofParts)
    {
    }
    void startElement(std::string_view name, const XmlTag& tag) override
    {
        if (name == "sldId" && parts.size() < ZipPackage::MaximumParts)
            parts.push_back(relationships.partOf(tag));
    }
    void endElement(std::string_view) override { }
    void characters(std::string_view) override { }

    const Relationships& relationships;
    std::vector<std::string> parts;
};

void readPresentation(ZipPackage& package, Attributes& attributes, TextSink& text)
{
    const std::string part = "ppt/presentation.xml";
    const Relationships relationships = Relationships::of(package, part, attributes);
    SlideList slides(relationships);
    package.parseXml(part, slides, attributes);
    readParts(package, slides.parts, attributes, text);
    readParts(package, numberedParts(package, "ppt/notesSlides/notesSlide"), attributes, text);
}

void readFixedPages(ZipPackage& package, Attributes& attributes, TextSink& text)
{
    std::vector<std::string> pages;
    for (const std::string& name : package.names()) {
        if (isBetween(name, "", ".fpage"))
            pages.push_back(name);
    }
    std::ranges::sort(pages, [](const std::string& left, const std::string& right) {
        return left.size() != right.size() ? left.size() < right.size() : left < right;
    });
    attributes.setInteger("kMDItemNumberOfPages", static_cast<std::int64_t>(pages.size()));
    readParts(package, pages, attributes, text);
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    const auto package = ZipPackage::open(path);
    if (!package)
        return false;
    PropertyReader core(attributes, CoreProperties);
    package->parseXml("docProps/core.xml", core, attributes);
    PropertyReader app(attributes, AppProperties);
    package->parseXml("docProps/app.xml", app, attributes);

    TextSink text(attributes);
    const auto has = [&](std::string_view name) { return std::ranges::count(package->names(), name) > 0; };
    if (has("xl/workbook.xml"))
        readWorkbook(*package, attributes, text);
    else if (has("ppt/presentation.xml"))
        readPresentation(*package, attributes, text);
    else if (has("word/document.xml"))
        readDocument(*package, attributes, text);
    else
        readFixedPages(*package, attributes, text);
    return true;
}

} // namespace caddis::bundles
