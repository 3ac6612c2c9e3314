#include "html/HTMLImport.h"

#include "foundation/MIMETypes.h"
#include "html/Converter.h"
#include "html/PageLoader.h"

namespace caddis {

namespace {

using namespace html;

struct MetaRow {
    std::u16string_view name; // In lower case.
    std::u16string_view key;
};

constexpr MetaRow metaRows[]
    = { { u"author", DocumentAttribute::Author }, { u"lastauthor", DocumentAttribute::Editor },
          { u"company", DocumentAttribute::Company }, { u"copyright", DocumentAttribute::Copyright },
          { u"subject", DocumentAttribute::Subject }, { u"description", DocumentAttribute::Comment },
          { u"comment", DocumentAttribute::Comment }, { u"keywords", DocumentAttribute::Keywords } };

void takeMeta(const Page& page, NodeIndex node, Dictionary& attributes)
{
    const std::u16string name = css::lowered(page.trimmedAttribute(node, u"name"));
    const String content(page.trimmedAttribute(node, u"content"));
    for (const MetaRow& row : metaRows) {
        if (row.name != name || content.isEmpty())
            continue;
        if (row.key == DocumentAttribute::Keywords)
            attributes.set(String(row.key), Value(keywordsOf(content)));
        else
            attributes.set(String(row.key), Value(content));
    }
}

Dictionary documentAttributesOf(const Page& page)
{
    constexpr Size Letter { 612, 792 };
    constexpr double Vertical = 72;
    constexpr double Horizontal = 90;
    Dictionary attributes { { String(DocumentAttribute::DocumentType), Value(u"NSHTML"_s) },
        { String(DocumentAttribute::UTI), Value(u"public.html"_s) },
        { String(DocumentAttribute::Converted), Value(std::int64_t { -1 }) },
        { String(DocumentAttribute::PaperSize), Value(stringFromSize(Letter)) },
        { String(DocumentAttribute::LeftMargin), Value(Horizontal) },
        { String(DocumentAttribute::RightMargin), Value(Horizontal) },
        { String(DocumentAttribute::TopMargin), Value(Vertical) },
        { String(DocumentAttribute::BottomMargin), Value(Vertical) } };
    bool hasTitle = false;
    for (NodeIndex node = 0; node < page.size(); ++node) {
        if (page[node].tag == Tag::Meta)
            takeMeta(page, node, attributes);
        if (page[node].tag != Tag::Title || hasTitle || page[page[node].parent].tag == Tag::Svg)
            continue;
        hasTitle = true;
        const String title(css::trimmed(page.textOf(node)));
        if (!title.isEmpty())
            attributes.set(String(DocumentAttribute::Title), Value(title));
    }
    return attributes;
}

} // namespace

AttributedString attributedStringWithHTML(const Data& html, const HTMLImportOptions& options)
{
    const auto loaded = PageLoader(options).load(html, options.textEncodingName, options.baseURL);
    AttributedStringBuilder builder;
    Converter converter(builder);
    converter.convert(*loaded);
    AttributedString text = std::move(builder).finish(converter.markers());
    text.documentAttributes = documentAttributesOf(loaded->page);
    return text;
}

std::optional<AttributedString> attributedStringWithWebArchive(
    const WebArchive& archive, HTMLImportOptions options)
{
    const WebResource& main = archive.mainResource();
    if (!isMarkupMIMEType(main.MIMEType()))
        return std::nullopt;
    options.archive = &archive;
    options.baseURL = main.url();
    options.textEncodingName = main.textEncodingName();
    AttributedString text = attributedStringWithHTML(main.data(), options);
    text.documentAttributes.set(String(DocumentAttribute::DocumentType), Value(u"NSWebArchive"_s));
    text.documentAttributes.set(String(DocumentAttribute::UTI), Value(u"com.apple.webarchive"_s));
    return text;
}

} // namespace caddis
