#include "bundles/Ebook/Books.h"
#include "bundles/support/Properties.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"

namespace caddis::bundles {

namespace {

// The title-info, publish-info and document-info of a FictionBook (2.1).
constexpr Property DescriptionProperties[] = {
    { "book-title", "kMDItemTitle" },
    { "lang", "kMDItemLanguages", Form::Strings },
    { "genre", "kMDItemKeywords", Form::Strings },
    { "keywords", "kMDItemKeywords", Form::Parts },
    { "publisher", "kMDItemPublishers", Form::Strings },
    { "isbn", "kMDItemIdentifier" },
    { "program-used", "kMDItemCreator" },
};

bool isParagraph(std::string_view name)
{
    return name == "p" || name == "v" || name == "subtitle" || name == "text-author" || name == "td"
        || name == "th";
}

class BookReader : public XmlHandler {
public:
    BookReader(Attributes& attributes, TextSink& text)
        : m_attributes(attributes)
        , m_text(text)
        , m_description(attributes, DescriptionProperties)
    {
    }

    void startElement(std::string_view name, const XmlTag& tag) override
    {
        m_isInDescription = m_isInDescription || name == "description";
        // Only the author of the book, not that of the file.
        m_isInTitle = m_isInTitle || name == "title-info";
        if (m_isInDescription)
            m_description.startElement(name, tag);
        if (m_isInTitle && name == "author")
            m_author.emplace();
        if (isParagraph(name))
            ++m_paragraphs;
    }
    void endElement(std::string_view name) override
    {
        if (m_isInDescription)
            m_description.endElement(name);
        if (m_author)
            endOfAuthor(name);
        if (isParagraph(name)) {
            --m_paragraphs;
            m_text.endLine();
        }
        m_isInTitle = m_isInTitle && name != "title-info";
        m_isInDescription = m_isInDescription && name != "description";
    }
    void characters(std::string_view text) override
    {
        if (m_author && m_author->size() < Attributes::MaximumString)
            m_author->append(text.substr(0, Attributes::MaximumString));
        if (m_isInDescription)
            m_description.characters(text);
        else if (m_paragraphs > 0)
            m_text.append(text);
    }
    bool isDone() const override { return m_text.isFull(); }

private:
    // The parts of a name stand in elements of their own, indented.
    void endOfAuthor(std::string_view name)
    {
        if (name != "author") {
            m_author->append(1, '\n');
            return;
        }
        std::string words;
        for (std::string_view rest = *m_author; !rest.empty();) {
            const std::string_view word = trimmed(takeUntil(rest, '\n'));
            words.append(words.empty() || word.empty() ? "" : " ").append(word);
        }
        m_attributes.addString("kMDItemAuthors", words);
        m_author.reset();
    }

    Attributes& m_attributes;
    TextSink& m_text;
    PropertyReader m_description;
    std::optional<std::string> m_author; ///< while inside one
    int m_paragraphs = 0;
    bool m_isInDescription = false;
    bool m_isInTitle = false;
};

} // namespace

bool readFictionBook(Attributes& attributes, const std::string& path)
{
    TextSink text(attributes);
    BookReader reader(attributes, text);
    return parseXmlFile(path, reader, attributes);
}

} // namespace caddis::bundles
