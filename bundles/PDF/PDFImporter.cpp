#include "bundles/support/Importer.h"
#include "bundles/support/InputFile.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"
#include "media/PDFText.h"

#include <cmath>

namespace caddis::bundles {

namespace {

// Below the time that a request may take.
constexpr double TextSeconds = 8;

struct TextAttribute {
    const char16_t* name;
    const char* key;
};
constexpr TextAttribute TextAttributes[] = {
    { u"Title", "kMDItemTitle" },
    { u"Subject", "kMDItemSubject" },
    { u"Creator", "kMDItemCreator" },
};

void setAttributes(const Dictionary& document, Attributes& attributes)
{
    for (const TextAttribute& attribute : TextAttributes)
        attributes.setString(attribute.key, document.stringForKey(attribute.name));
    if (const auto author = document.stringForKey(u"Author"))
        attributes.addString("kMDItemAuthors", author->utf8());
    if (const auto producer = document.stringForKey(u"Producer"))
        attributes.addString("kMDItemEncodingApplications", producer->utf8());
    const auto setDate = [&](const char* key, const Value* value) {
        if (value && value->is<Date>())
            attributes.setDate(key, value->as<Date>()->unixSeconds());
    };
    setDate("kMDItemContentCreationDate", document.find(u"CreationDate"));
    setDate("kMDItemContentModificationDate", document.find(u"ModDate"));
    const Value* keywords = document.find(u"Keywords");
    if (!keywords || !keywords->is<Array>())
        return;
    for (const Value& keyword : *keywords->as<Array>()) {
        if (const auto* text = keyword.as<String>())
            attributes.addString("kMDItemKeywords", text->utf8());
    }
}

void setFirstPage(const PDFDocument& document, Attributes& attributes)
{
    const auto page = document.pageAtIndex(0);
    if (!page)
        return;
    Size size = page->boundsForBox(PDFDisplayBox::Crop).size();
    if (page->rotation() % 180 != 0)
        std::swap(size.width, size.height);
    attributes.setReal("kMDItemPageWidth", size.width);
    attributes.setReal("kMDItemPageHeight", size.height);
}

// "%PDF-1.7" stands within the first kilobyte.
void setVersion(std::string_view bytes, Attributes& attributes)
{
    const std::string_view head = bytes.substr(0, 1024);
    const auto mark = head.find("%PDF-");
    if (mark != head.npos)
        attributes.setString("kMDItemVersion", head.substr(mark + 5, 3));
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    auto bytes = readFile(path, 512 * 1024 * 1024);
    if (!bytes)
        return false;
    setVersion(*bytes, attributes);
    const auto document = PDFDocument::initWithData(Data::adopt(std::move(*bytes)));
    if (!document)
        return false;
    attributes.setString(
        "kMDItemSecurityMethod", document->isLocked() ? std::string_view("Password Encrypted") : "None");
    attributes.setInteger("kMDItemNumberOfPages", static_cast<std::int64_t>(document->pageCount()));
    setAttributes(document->documentAttributes(), attributes);
    setFirstPage(*document, attributes);
    if (const auto text = fixedAndNormalizedString(*document, TextSeconds))
        TextSink(attributes).append(text->view());
    return true;
}

} // namespace caddis::bundles
