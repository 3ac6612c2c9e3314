#include "markup/FeedStyleSheet.h"

#include "platform/base/Format.h"
#include "platform/files/FileSystem.h"

#include <algorithm>

namespace caddis {
inline namespace FeedExtensions {

namespace {

// "file://localhost/…": a link that is known again in the finished page.
String linkOfStyleSheet(const String& path)
{
    const String url = URL::fileURLWithPath(path).absoluteString();
    constexpr std::u16string_view Local = u"file:///";
    return url.view().starts_with(Local) ? format(u"file://localhost/%@", url.substringFrom(Local.size()))
                                         : url;
}

std::optional<String> styleElement(const String& path)
{
    const auto data = FileSystem::contentsOfFile(path);
    const auto sheet = data ? String::fromStrictUtf8(data->chars()) : std::nullopt;
    if (!sheet)
        return std::nullopt;
    return format(u"<style type=\"text/css\"><!--%@--></style>\n", *sheet);
}

} // namespace

void appendFeedPageHead(MutableString& html, FeedStyleSheet form, const FeedSettings& settings)
{
    html.append(u"<html>\n<head>\n"
                u"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\"/>\n");
    const auto& path = settings.linkableFeedStyleSheet;
    if (!path || form == FeedStyleSheet::None)
        return;
    if (form == FeedStyleSheet::Linked)
        html.append(
            format(u"<link rel=\"stylesheet\" type=\"text/css\" href=\"%@\"/>\n", linkOfStyleSheet(*path)));
    else
        html.append(styleElement(*path).value_or(String()));
}

String stringByReplacingLinkedStyleSheet(const String& page, const FeedSettings& settings)
{
    constexpr std::u16string_view Start
        = u"<link rel=\"stylesheet\" type=\"text/css\" href=\"file://localhost/";
    constexpr std::u16string_view End = u".feeds.stylesheet.css\"/>";
    const std::size_t start = page.view().find(Start);
    const std::size_t end
        = start == std::u16string_view::npos ? start : page.view().find(End, start + Start.size());
    if (end == std::u16string_view::npos)
        return page;
    const std::size_t behindLine = std::min(end + End.size() + 1, page.length());
    std::optional<String> style;
    if (settings.linkableFeedStyleSheet)
        style = styleElement(*settings.linkableFeedStyleSheet);
    return format(u"%@%@%@", page.view({ 0, start }), style.value_or(String()),
        page.view({ behindLine, page.length() - behindLine }));
}

} // namespace FeedExtensions
} // namespace caddis
