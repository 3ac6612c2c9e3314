#include "importers/TypeDeclarations.h"

#include "platform/files/ContentType.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {

namespace {

std::vector<String> stringsIn(const Dictionary& dictionary, std::u16string_view key)
{
    const Value* value = dictionary.find(key);
    if (const auto* text = value ? value->as<String>() : nullptr)
        return { *text };
    std::vector<String> strings;
    if (const auto* items = value ? value->as<Array>() : nullptr) {
        for (const Value& item : *items) {
            const auto* text = item.as<String>();
            if (text && !isWhiteString(*text))
                strings.push_back(*text);
        }
    }
    return strings;
}

bool isPackage(const Dictionary& declaration)
{
    return std::ranges::any_of(stringsIn(declaration, u"UTTypeConformsTo"),
        [](const String& type) { return type == u"com.apple.package" || type == u"public.directory"; });
}

void declare(const Dictionary& declaration)
{
    const auto identifier = declaration.stringForKey(u"UTTypeIdentifier");
    const Value* value = declaration.find(u"UTTypeTagSpecification");
    const auto* tags = value ? value->as<Dictionary>() : nullptr;
    if (!identifier || identifier->isEmpty() || !tags)
        return;
    declareContentType({ .identifier = *identifier,
        .kind = isPackage(declaration) ? ContentTypeKind::Package : ContentTypeKind::File,
        .extensions = stringsIn(*tags, u"public.filename-extension"),
        .mimeTypes = stringsIn(*tags, u"public.mime-type") });
}

} // namespace

void declareContentTypes(const Dictionary& info)
{
    for (const std::u16string_view key : { u"UTExportedTypeDeclarations", u"UTImportedTypeDeclarations" }) {
        const Value* value = info.find(key);
        const auto* declarations = value ? value->as<Array>() : nullptr;
        if (!declarations)
            continue;
        for (const Value& item : *declarations) {
            if (const auto* declaration = item.as<Dictionary>())
                declare(*declaration);
        }
    }
}

} // namespace caddis
