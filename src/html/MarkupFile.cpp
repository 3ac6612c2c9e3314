#include "html/MarkupFile.h"

#include "html/CSSTokenizer.h"
#include "markup/MarkupFileTypes.h"
#include "markup/WebArchiveText.h"
#include "platform/base/Paths.h"
#include "platform/files/MappedFile.h"

#include <algorithm>
#include <array>

namespace caddis {

namespace {

constexpr std::size_t LongestBeginning = 1024;
constexpr float LongestLoad = 10; // Seconds; less than an application waits for the text of a file.

// The first bytes in lower case, without a byte-order mark and white space.
std::u16string beginningOf(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    return css::lowered(css::trimmed(String::fromLatin1(bytes.substr(0, LongestBeginning))));
}

bool isOtherDocument(std::u16string_view beginning)
{
    constexpr std::array<std::u16string_view, 4> Others { u"{\\rtf", u"rtfd", u"bplist", u"pk\3\4" };
    return std::ranges::any_of(
        Others, [&](std::u16string_view other) { return beginning.starts_with(other); });
}

bool beginsAsPage(std::u16string_view beginning)
{
    constexpr std::array<std::u16string_view, 4> Pages { u"<!doctype html", u"<html", u"<head", u"<body" };
    const auto begins = [&](std::u16string_view page) { return beginning.starts_with(page); };
    const bool isXMLPage = beginning.starts_with(u"<?xml") && beginning.find(u"<html") != beginning.npos;
    return isXMLPage || std::ranges::any_of(Pages, begins);
}

bool mayBeArchive(const String& path, std::u16string_view beginning)
{
    return isWebArchiveFile(path) || beginning.starts_with(u"bplist")
        || beginning.find(u"<plist") != beginning.npos;
}

} // namespace

std::optional<AttributedString> attributedStringWithMarkupFile(
    const String& path, WebResourceLoadDelegate* delegate)
{
    const auto data = MappedFile::open(path);
    if (!data)
        return std::nullopt;
    HTMLImportOptions options { .timeout = LongestLoad, .webResourceLoadDelegate = delegate };
    const std::u16string beginning = beginningOf(data->chars());
    if (mayBeArchive(path, beginning)) {
        const auto archive = WebArchive::initWithData(*data);
        return archive ? attributedStringWithWebArchive(*archive, options) : std::nullopt;
    }
    const bool isNamedPage = isHTMLExtension(pathExtension(path)) && !isOtherDocument(beginning);
    if (!isNamedPage && !beginsAsPage(beginning))
        return std::nullopt;
    options.baseURL = URL::fileURLWithPath(path);
    return attributedStringWithHTML(*data, options);
}

} // namespace caddis
