#include "foundation/Inflate.h"
#include "importers/DocumentKinds.h"
#include "markup/Entities.h"
#include "markup/MarkDown.h"
#include "markup/MarkupData.h"
#include "markup/TagStripping.h"
#include "markup/TextBundle.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "text/StringUtilities.h"

namespace caddis {

namespace {

constexpr std::size_t LeastOutline = 5; // Bytes; what is shorter is not even looked at for compression.
constexpr auto AnyEncoding = static_cast<NSStringEncoding>(0xFFFFFFFF);

std::optional<String> textOfOutline(const String& path)
{
    constexpr std::u16string_view Settings[]
        = { u"<style-attribute", u"<editor", u"<print-info>", u"<auto-generate-level-styles>" };
    auto data = FileSystem::contentsOfFile(stringByAppendingPathComponent(path, u"contents.xml"));
    if (data && data->size() >= LeastOutline && !data->chars().starts_with("<?xml"))
        data = dataByInflatingData(*data);
    const auto xml = data ? String::fromStrictUtf8(data->chars()) : std::nullopt;
    if (!xml || xml->isEmpty())
        return std::nullopt;
    return stringByRemovingMultipleWhiteSpaces(
        stringByConvertingEntitiesToCharacters(stripTags(stripTagBodies(*xml, Settings))));
}

std::optional<String> textOfChatLog(const String& path)
{
    std::vector<String> logs;
    for (const String& name : FileSystem::contentsOfDirectory(path).value_or(std::vector<String>())) {
        if (pathExtension(name) == u"xml")
            logs.push_back(stringByAppendingPathComponent(path, name));
    }
    const auto data = logs.size() == 1 ? FileSystem::contentsOfFile(logs.front()) : std::nullopt;
    if (!data)
        return std::nullopt;
    return stringByConvertingEntitiesToCharacters(
        stripTags(stringWithMarkupData(*data, NSStringEncoding::UTF8)));
}

} // namespace

std::optional<String> textOfDocument(const String& path)
{
    if (hasSuffixNoCase(path, u".oo3") || hasSuffixNoCase(path, u".ooutline"))
        return textOfOutline(path);
    if (hasSuffixNoCase(path, u".chatlog"))
        return textOfChatLog(path);
    if (!isTextBundleFile(path))
        return std::nullopt;
    const auto bundle = stringWithContentsOfTextBundleFile(path, AnyEncoding);
    return bundle ? std::optional(bundle->text) : std::nullopt;
}

} // namespace caddis
