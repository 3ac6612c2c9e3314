// What pages are made of: which elements refer to what.

#include "foundation/MIMETypes.h"
#include "foundation/URLExtensions.h"
#include "foundation/URLResolution.h"
#include "html/CSSTokenizer.h"
#include "html/PageLoader.h"
#include "markup/Charsets.h"
#include "markup/MarkupData.h"
#include "markup/StringURL.h"
#include "platform/unicode/PlainText.h"

#include <set>

namespace caddis::html {

namespace {

constexpr int DeepestImport = 5;
constexpr int DeepestPage = 4;
constexpr std::size_t MostPages = 64;
constexpr std::size_t MostSheetUnits = std::size_t(16) << 20;

// The encoding for bytes of which nobody says one.
NSStringEncoding likelyEncoding(std::string_view bytes)
{
    constexpr std::size_t Looked = 64 * 1024;
    if (String::fromStrictUtf8(bytes))
        return NSStringEncoding::UTF8;
    const NSStringEncoding detected = detectedEncoding(bytes.substr(0, Looked));
    return detected == NSStringEncoding::InvalidId ? NSStringEncoding::WindowsCP1252 : detected;
}

String markupOf(const Data& html, const String& encodingName, const std::optional<URL>& url)
{
    const bool isKnown = charset2CFStringEncoding(encodingName) != CFStringEncoding::InvalidId;
    MarkupSource source { .defaultEncoding = likelyEncoding(html.chars()) };
    if (isKnown)
        source.encodingName = encodingName;
    if (url)
        source.URL = url->absoluteString();
    return markupTextOfData(html.chars(), source).text;
}

String sheetText(const Resource& resource)
{
    constexpr std::string_view Rule = "@charset \"";
    const std::string_view bytes = resource.data.chars();
    String name = resource.textEncodingName;
    if (bytes.starts_with(Rule)) {
        const std::string_view rest = bytes.substr(Rule.size(), 64);
        name = String::fromLatin1(rest.substr(0, rest.find('"')));
    }
    const CFStringEncoding known = charset2CFStringEncoding(name);
    const auto encoding
        = known == CFStringEncoding::InvalidId ? NSStringEncoding::UTF8 : charset2NSStringEncoding(name);
    return plainTextOfData(bytes, encoding).text;
}

bool hasWordIn(std::u16string_view words, std::u16string_view wanted)
{
    const std::u16string lower = css::lowered(words);
    for (std::size_t at = lower.find(wanted); at != lower.npos; at = lower.find(wanted, at + 1)) {
        const std::size_t end = at + wanted.size();
        if ((at == 0 || css::isSpace(lower[at - 1])) && (end == lower.size() || css::isSpace(lower[end])))
            return true;
    }
    return false;
}

// "a.png 1x, b.png 2x": the first address.
std::u16string_view firstCandidate(std::u16string_view candidates)
{
    const std::u16string_view text = css::trimmed(candidates);
    return text.substr(0, text.find_first_of(u" \t\n\f,"));
}

// What the element shows in place of itself; empty for most.
std::u16string_view referenceOf(const Page& page, NodeIndex node)
{
    switch (page[node].tag) {
    case Tag::Img: {
        const std::u16string_view source = page.trimmedAttribute(node, u"src");
        return source.empty() ? firstCandidate(page.trimmedAttribute(node, u"srcset")) : source;
    }
    case Tag::Input:
    case Tag::Embed:
    case Tag::Iframe:
    case Tag::Frame:
        return page.trimmedAttribute(node, u"src");
    case Tag::Object:
        return page.trimmedAttribute(node, u"data");
    default:
        return {};
    }
}

bool isPageFrame(Tag tag) { return tag == Tag::Iframe || tag == Tag::Frame; }

std::optional<URL> baseOf(const LoadedPage& loaded, const std::optional<URL>& url)
{
    for (NodeIndex node = 0; node < loaded.page.size(); ++node) {
        if (loaded.page[node].tag == Tag::Base) {
            const auto reference = loaded.page.trimmedAttribute(node, u"href");
            if (reference.empty())
                continue;
            const auto base = resolved(loaded, reference);
            return base ? base : url;
        }
    }
    return url;
}

} // namespace

std::optional<URL> resolved(const LoadedPage& page, std::u16string_view reference)
{
    std::u16string text(css::trimmed(reference));
    std::erase_if(text, [](char16_t unit) { return unit == u'\n' || unit == u'\t'; });
    if (text.empty())
        return std::nullopt;
    if (page.baseURL)
        return URLRelativeTo(*page.baseURL, String(text));
    const auto absolute = normalizedStringURL(String(text));
    return absolute ? URL::fromString(*absolute) : std::nullopt;
}

std::unique_ptr<LoadedPage> PageLoader::load(
    const Data& html, const String& encodingName, const std::optional<URL>& url)
{
    return load(html, encodingName, url, 0);
}

std::unique_ptr<LoadedPage> PageLoader::load(
    const Data& html, const String& encodingName, const std::optional<URL>& url, int depth)
{
    ++m_pages;
    auto loaded = std::make_unique<LoadedPage>(parsePage(markupOf(html, encodingName, url)));
    loaded->baseURL = url;
    loaded->baseURL = baseOf(*loaded, url);
    loadSheets(*loaded);
    loadObjects(*loaded, depth);
    return loaded;
}

css::StyleSheet PageLoader::parsed(const String& text)
{
    m_sheetUnits += text.length();
    return css::parseStyleSheet(m_sheetUnits <= MostSheetUnits ? text : String());
}

PageLoader::Sheets PageLoader::sheetsOf(const LoadedPage& loaded)
{
    Sheets sheets;
    const Page& page = loaded.page;
    for (NodeIndex node = 0; node < page.size(); ++node) {
        const Tag tag = page[node].tag;
        if ((tag != Tag::Style && tag != Tag::Link)
            || !css::mediaApply(page.trimmedAttribute(node, u"media")))
            continue;
        if (tag == Tag::Style) {
            sheets.push_back(std::make_unique<Sheet>());
            sheets.back()->contents = parsed(page.textOf(node));
            continue;
        }
        const std::u16string_view relation = page.trimmedAttribute(node, u"rel");
        const auto url = resolved(loaded, page.trimmedAttribute(node, u"href"));
        if (url && hasWordIn(relation, u"stylesheet") && !hasWordIn(relation, u"alternate")) {
            sheets.push_back(std::make_unique<Sheet>());
            sheets.back()->url = url;
        }
    }
    return sheets;
}

void PageLoader::read(Sheet& sheet)
{
    const Shared found = sheet.url ? resource(*sheet.url) : nullptr;
    if (!found)
        return;
    sheet.contents = parsed(sheetText(*found));
    sheet.url = found->url; // What its imports are relative to.
}

// One round for the sheets of the page, one for those which they import, and so on. An import that was there
// already doesn't count again, whoever asks for it.
void PageLoader::loadSheets(LoadedPage& loaded)
{
    Sheets sheets = sheetsOf(loaded);
    std::vector<Sheet*> round;
    for (const auto& sheet : sheets)
        round.push_back(sheet.get());
    std::set<String> imported;
    for (int depth = 0; depth <= DeepestImport && !round.empty(); ++depth) {
        std::vector<URL> urls;
        for (const Sheet* const sheet : round) {
            if (sheet->url)
                urls.push_back(*sheet->url);
        }
        fetch(urls);
        std::vector<Sheet*> next;
        for (Sheet* const sheet : round) {
            read(*sheet);
            for (const String& address : sheet->contents.imports) {
                const auto url = sheet->url ? URLRelativeTo(*sheet->url, address) : resolved(loaded, address);
                if (!url || !imported.insert(url->absoluteString()).second)
                    continue;
                sheet->imports.push_back(std::make_unique<Sheet>());
                sheet->imports.back()->url = url;
                next.push_back(sheet->imports.back().get());
            }
        }
        round = std::move(next);
    }
    const auto append = [&](const auto& self, Sheet& sheet) -> void {
        for (const auto& import : sheet.imports)
            self(self, *import);
        loaded.sheets.push_back(std::move(sheet.contents));
    };
    for (const auto& sheet : sheets)
        append(append, *sheet);
}

void PageLoader::loadObjects(LoadedPage& loaded, int depth)
{
    std::vector<std::pair<NodeIndex, URL>> wanted;
    std::vector<URL> urls;
    for (NodeIndex node = 0; node < loaded.page.size(); ++node) {
        const auto url = resolved(loaded, referenceOf(loaded.page, node));
        if (!url || (isPageFrame(loaded.page[node].tag) && depth == DeepestPage))
            continue;
        wanted.emplace_back(node, *url);
        urls.push_back(*url);
    }
    fetch(urls);
    for (const auto& [node, url] : wanted) {
        if (isPageFrame(loaded.page[node].tag)) {
            loadFrame(loaded, node, url, depth);
            continue;
        }
        const Shared found = resource(url);
        const bool isPage = found && isMarkupMIMEType(found->mimeType) && found->mimeType != u"image/svg+xml";
        if (found && !isPage)
            loaded.resources.emplace(node, found);
    }
}

void PageLoader::loadFrame(LoadedPage& loaded, NodeIndex node, const URL& url, int depth)
{
    const Shared found = resource(url);
    const bool isPage = found && (found->mimeType.isEmpty() || isMarkupMIMEType(found->mimeType));
    if (isPage && m_pages < MostPages)
        loaded.frames.emplace(node, load(found->data, found->textEncodingName, found->url, depth + 1));
}

} // namespace caddis::html
