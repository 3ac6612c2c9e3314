#include "ReportPage.h"

#include "PlainTIFF.h"
#include "ReportTemplate.h"
#include "ValuePrinter.h"
#include "foundation/Base64.h"
#include "platform/base/MutableString.h"
#include "platform/image/ImageFiles.h"

#include <algorithm>
#include <filesystem>

namespace caddis::tool {

namespace {

constexpr std::size_t LongestOpening = 400; // units of a text
constexpr std::size_t LongestValue = 300; // units of any other value
constexpr double PictureQuality = 0.7;

// The beginning of a text with its white space made single.
String opening(const String& text, std::size_t longest)
{
    MutableString result;
    for (const char16_t unit : text) {
        const bool isBlank = unit <= u' ' || unit == u'\u00A0';
        if (isBlank && (result.length() == 0 || result.view().back() == u' '))
            continue;
        if (result.length() == longest) {
            result.append(u'…');
            break;
        }
        result.append(isBlank ? u' ' : unit);
    }
    return std::move(result).take();
}

const Dictionary* metadataOf(const HelperRecord& record)
{
    const Value* const answer = record.answers.find(u"info");
    return answer ? answer->as<Dictionary>() : nullptr;
}

// What is known of the file besides its text and title, in few words each.
Dictionary detailsOf(const Dictionary& metadata)
{
    Dictionary details;
    for (const auto& [key, value] : metadata) {
        if (key == u"kMDItemTextContent" || value.is<Data>())
            continue;
        const String name = key.view().starts_with(u"kMDItem") ? key.substringFrom(7) : key;
        details.set(name, Value(opening(String::fromUtf8(shown(value)), LongestValue)));
    }
    return details;
}

std::optional<String> pictureOf(const HelperRecord& record)
{
    const Value* const answer = record.answers.find(u"preview");
    const auto* const tiff = answer ? answer->as<Data>() : nullptr;
    const auto bitmap = tiff ? bitmapOfPlainTIFF(*tiff) : std::nullopt;
    const auto jpeg = bitmap ? JPEGRepresentation(*bitmap, PictureQuality) : std::nullopt;
    return jpeg ? std::optional(base64EncodedString(*jpeg)) : std::nullopt;
}

String kindOf(const std::string& path)
{
    std::string extension = std::filesystem::path(path).extension().string();
    std::ranges::transform(
        extension, extension.begin(), [](unsigned char byte) { return char(std::toupper(byte)); });
    constexpr std::size_t Longest = 12;
    if (extension.size() < 2 || extension.size() > Longest)
        return u"–"_s;
    return String::fromUtf8(extension.substr(1));
}

Dictionary entryOf(const std::string& path, const HelperRecord& record)
{
    Dictionary entry { { u"path"_s, String::fromUtf8(path) }, { u"kind"_s, kindOf(path) },
        { u"outcome"_s, String(nameOf(record.outcome)) } };
    if (record.state) {
        constexpr std::int64_t NanosecondsPerSecond = 1'000'000'000;
        entry.set(u"size"_s, Value(record.state->size));
        entry.set(u"time"_s, Value(record.state->modified / NanosecondsPerSecond));
    }
    if (!record.reason.isEmpty())
        entry.set(u"reason"_s, Value(record.reason));
    if (const Dictionary* const metadata = metadataOf(record)) {
        if (const auto title = metadata->stringForKey(u"kMDItemTitle"))
            entry.set(u"title"_s, Value(opening(*title, LongestValue)));
        if (const auto text = metadata->stringForKey(u"kMDItemTextContent"))
            entry.set(u"text"_s, Value(opening(*text, LongestOpening)));
        entry.set(u"details"_s, Value(detailsOf(*metadata)));
    }
    if (const auto picture = pictureOf(record))
        entry.set(u"picture"_s, Value(*picture));
    return entry;
}

// Inside a script element nothing ends it but "</script", and "<!--" has a meaning too.
std::string withoutMarkup(std::string text)
{
    for (std::size_t place = 0; (place = text.find('<', place)) != text.npos; place += 6)
        text.replace(place, 1, "\\u003c");
    return text;
}

} // namespace

ReportPage::ReportPage(std::string root)
    : m_root(std::move(root))
{
}

void ReportPage::add(const Input& input, const HelperRecord& record)
{
    const std::string file = input.file.utf8();
    const std::string path = std::filesystem::path(file).lexically_relative(m_root).string();
    Entry entry { path, withoutMarkup(json(entryOf(path, record))) };
    const std::scoped_lock guard(m_lock);
    m_entries.push_back(std::move(entry));
}

std::string ReportPage::html(const std::string& summary)
{
    const std::scoped_lock guard(m_lock);
    std::ranges::sort(m_entries, {}, &Entry::path);
    std::string data = "{\"root\": " + withoutMarkup(json(String::fromUtf8(m_root)))
        + ", \"summary\": " + withoutMarkup(json(String::fromUtf8(summary))) + ", \"files\": [\n";
    const char* separator = "";
    for (const Entry& entry : m_entries) {
        data += separator + entry.json;
        separator = ",\n";
    }
    data += "]}";
    const std::string_view page = ReportTemplate;
    constexpr std::string_view Mark = "%DATA%";
    const std::size_t place = page.find(Mark);
    return std::string(page.substr(0, place)).append(data).append(page.substr(place + Mark.size()));
}

} // namespace caddis::tool
