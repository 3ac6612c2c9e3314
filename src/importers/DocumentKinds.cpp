#include "importers/DocumentKinds.h"

#include "markup/Html2Text.h"
#include "text/CharacterTables.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr std::u16string_view TextKey = u"kMDItemTextContent";
constexpr std::u16string_view HtmlKey = u"kMDItemHTMLContent";

String textOfHtml(const String& html)
{
    return stringByConvertingHtml2PlainTextNonUmlauted(html, false, { .onlyBody = true, .googleTags = true })
        .text;
}

// "<word>", as the value or as the only one in a list.
bool isPlaceholder(const Value& value)
{
    const auto* list = value.as<Array>();
    const auto* text = list && list->size() == 1 ? list->front().as<String>() : value.as<String>();
    return text && text->view().starts_with(u'<') && text->view().ends_with(u'>')
        && std::none_of(
            text->begin(), text->end(), [](char16_t unit) { return whiteCharacterSetRep().contains(unit); });
}

void removePlaceholders(Dictionary& metaData)
{
    std::vector<String> keys;
    for (const auto& [key, value] : metaData) {
        if (isPlaceholder(value))
            keys.push_back(key);
    }
    for (const String& key : keys)
        metaData.remove(key);
}

void joinNotes(Dictionary& metaData)
{
    const Value* value = metaData.find(u"com_literatureandlatte_scapple_noteText");
    const auto* notes = value ? value->as<Array>() : nullptr;
    if (!notes || metaData.find(TextKey))
        return;
    std::vector<String> lines;
    for (const Value& note : *notes) {
        if (const auto* line = note.as<String>())
            lines.push_back(*line);
    }
    metaData.set(String(TextKey), Value(componentsJoinedByString(lines, u"\n")));
}

void addTextOfHtml(Dictionary& metaData)
{
    if (metaData.find(TextKey))
        return;
    auto html = metaData.stringForKey(HtmlKey);
    const Value* value = metaData.find(u"kMDItemHTMLContentData");
    const auto* data = value ? value->as<Data>() : nullptr;
    if (!html && data) {
        html = String::fromStrictUtf8(data->chars());
        if (html)
            metaData.set(String(HtmlKey), Value(*html));
    }
    if (html)
        metaData.set(String(TextKey), Value(textOfHtml(*html)));
}

} // namespace

Dictionary refinedMetaData(Dictionary metaData, const String& path)
{
    if (hasSuffixNoCase(path, u".mellel")) {
        removePlaceholders(metaData);
    } else if (hasSuffixNoCase(path, u".mht")) {
        if (const auto markup = metaData.stringForKey(TextKey))
            metaData.set(String(TextKey), Value(textOfHtml(*markup)));
    } else if (hasSuffixNoCase(path, u".scap")) {
        joinNotes(metaData);
    } else {
        addTextOfHtml(metaData);
    }
    return metaData;
}

} // namespace caddis
