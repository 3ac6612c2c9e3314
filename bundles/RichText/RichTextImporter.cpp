#include "bundles/support/Importer.h"
#include "bundles/support/TextSink.h"
#include "platform/documents/DocumentReader.h"

#include <algorithm>

namespace caddis::bundles {

namespace {

constexpr char16_t AttachmentCharacter = 0xFFFC;

struct TextAttribute {
    std::u16string_view name;
    const char* key;
    bool isList = false;
};
constexpr TextAttribute TextAttributes[] = {
    { DocumentAttribute::Title, "kMDItemTitle" },
    { DocumentAttribute::Subject, "kMDItemSubject" },
    { DocumentAttribute::Comment, "kMDItemComment" },
    { DocumentAttribute::Copyright, "kMDItemCopyright" },
    { DocumentAttribute::Category, "kMDItemHeadline" },
    { DocumentAttribute::Author, "kMDItemAuthors", true },
    { DocumentAttribute::Editor, "kMDItemContributors", true },
    { DocumentAttribute::Company, "kMDItemOrganizations", true },
};

void setAttributes(const Dictionary& document, Attributes& attributes)
{
    for (const TextAttribute& attribute : TextAttributes) {
        const auto text = document.stringForKey(attribute.name);
        if (text && attribute.isList)
            attributes.addString(attribute.key, text->utf8());
        else
            attributes.setString(attribute.key, text);
    }
    const Value* keywords = document.find(DocumentAttribute::Keywords);
    if (const auto* list = keywords ? keywords->as<Array>() : nullptr) {
        for (const Value& keyword : *list) {
            if (const auto* text = keyword.as<String>())
                attributes.addString("kMDItemKeywords", text->utf8());
        }
    }
    const auto setDate = [&](const char* key, std::u16string_view name) {
        const Value* value = document.find(name);
        if (const auto* date = value ? value->as<Date>() : nullptr)
            attributes.setDate(key, date->unixSeconds());
    };
    setDate("kMDItemContentCreationDate", DocumentAttribute::CreationTime);
    setDate("kMDItemContentModificationDate", DocumentAttribute::ModificationTime);
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    const auto document = attributedStringWithPath(String::fromUtf8(path));
    if (!document)
        return false;
    setAttributes(document->documentAttributes, attributes);
    TextSink text(attributes);
    std::u16string_view rest = document->string().view();
    while (!rest.empty() && !text.isFull()) {
        const auto end = std::min(rest.find(AttachmentCharacter), rest.size());
        text.append(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return true;
}

} // namespace caddis::bundles
