#include "platform/pdf/engine/PopplerDocument.h"
#include "platform/pdf/engine/TextString.h"

#include <Array.h>
#include <Dict.h>
#include <Link.h>

// What the document says about itself: Info dictionary, table of contents, annotations.
namespace caddis::pdf {

namespace {

// "a, b; c" is three keywords.
Array keywordsIn(const String& text)
{
    Array keywords;
    std::u16string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of(u",;"), rest.size());
        std::u16string_view word = rest.substr(0, end);
        const std::size_t first = word.find_first_not_of(u" \t\r\n");
        const std::size_t last = word.find_last_not_of(u" \t\r\n");
        if (first != word.npos)
            keywords.emplace_back(String(word.substr(first, last - first + 1)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return keywords;
}

std::optional<Value> attribute(const char* key, std::string_view bytes)
{
    const std::string_view name(key);
    if (name.ends_with("Date")) {
        const auto date = dateString(bytes);
        return date ? std::optional<Value>(*date) : std::nullopt;
    }
    const String text = textString(bytes);
    if (name == "Keywords") {
        Array keywords = keywordsIn(text);
        return keywords.empty() ? std::nullopt : std::optional<Value>(std::move(keywords));
    }
    return text.isEmpty() ? std::nullopt : std::optional<Value>(text);
}

// ISO 32000-1, table 151.
PDFDestination placeOf(const LinkDest& link, std::size_t page)
{
    static constexpr const char16_t* kinds[]
        = { u"XYZ", u"Fit", u"FitH", u"FitV", u"FitR", u"FitB", u"FitBH", u"FitBV" };
    PDFDestination place { page, String(kinds[link.getKind()]), {} };
    const auto given
        = [](double value, bool isGiven) { return isGiven ? std::optional(value) : std::nullopt; };
    switch (link.getKind()) {
    case destXYZ:
        place.numbers = { given(link.getLeft(), link.getChangeLeft()),
            given(link.getTop(), link.getChangeTop()), given(link.getZoom(), link.getChangeZoom()) };
        break;
    case destFitH:
    case destFitBH:
        place.numbers = { given(link.getTop(), link.getChangeTop()) };
        break;
    case destFitV:
    case destFitBV:
        place.numbers = { given(link.getLeft(), link.getChangeLeft()) };
        break;
    case destFitR:
        place.numbers = { link.getLeft(), link.getBottom(), link.getRight(), link.getTop() };
        break;
    default:
        break;
    }
    return place;
}

} // namespace

Dictionary PopplerDocument::attributes() const
{
    Dictionary result;
    const Object info = isOpen() ? m_document->getDocInfo() : Object(objNull);
    if (!info.isDict())
        return result;
    for (const char* key :
        { "Title", "Author", "Subject", "Creator", "Producer", "CreationDate", "ModDate", "Keywords" }) {
        const Object entry = info.getDict()->lookup(key);
        if (entry.isString())
            result.set(String::fromLatin1(key), attribute(key, entry.getString()->toStr()));
    }
    return result;
}

std::vector<PDFAnnotation> PopplerDocument::annotations(std::size_t page) const
{
    std::vector<PDFAnnotation> result;
    Page* const source = pageAt(page);
    const Object list = source ? source->getAnnotsObject() : Object(objNull);
    for (int index = 0; list.isArray() && index < list.getArray()->getLength(); ++index) {
        const Object entry = list.getArray()->get(index);
        if (!entry.isDict())
            continue;
        PDFAnnotation& annotation = result.emplace_back();
        annotation.index = static_cast<std::size_t>(index);
        const Object subtype = entry.getDict()->lookup("Subtype");
        if (subtype.isName())
            annotation.subtype = String::fromUtf8(subtype.getName());
        for (int key = 0; key < entry.getDict()->getLength(); ++key)
            annotation.keys.push_back(String::fromLatin1(std::string("/") + entry.getDict()->getKey(key)));
    }
    return result;
}

std::optional<PDFDestination> PopplerDocument::destinationOf(
    std::size_t page, const PDFAnnotation& annotation) const
{
    Page* const source = pageAt(page);
    const Object list = source ? source->getAnnotsObject() : Object(objNull);
    if (!list.isArray() || annotation.index >= static_cast<std::size_t>(list.getArray()->getLength()))
        return std::nullopt;
    const Object entry = list.getArray()->get(static_cast<int>(annotation.index));
    const auto link = entry.isDict() ? destinationOf(*entry.getDict()) : nullptr;
    const auto target = link ? pageOf(*link) : std::nullopt;
    return target ? std::optional(placeOf(*link, *target)) : std::nullopt;
}

} // namespace caddis::pdf
