#include "markup/MarkDown.h"

#include "platform/base/Paths.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {
inline namespace MarkDown {

namespace {

constexpr std::u16string_view MarkDownTypes[]
    = { u"markdown", u"MARKDOWN", u"mdtext", u"MDTEXT", u"mkdown", u"MKDOWN", u"mdown", u"MDOWN", u"mark",
          u"MARK", u"mdwn", u"MDWN", u"mmd", u"MMD", u"md", u"MD", u"textile", u"TEXTILE" };
constexpr std::u16string_view TextBundleTypes[] = { u"textbundle", u"TEXTBUNDLE", u"textpack", u"TEXTPACK" };

bool contains(std::span<const std::u16string_view> types, std::u16string_view extension)
{
    return std::ranges::any_of(
        types, [&](std::u16string_view type) { return isEqualNoCase(type, extension); });
}

} // namespace

std::span<const std::u16string_view> MarkDownFileTypes() { return MarkDownTypes; }
std::span<const std::u16string_view> TextBundleFileTypes() { return TextBundleTypes; }

bool isMarkDownExtension(std::u16string_view extension) { return contains(MarkDownTypes, extension); }
bool isTextBundleExtension(std::u16string_view extension) { return contains(TextBundleTypes, extension); }

bool isMarkDownFile(const String& path) { return isMarkDownExtension(pathExtension(path)); }
bool isTextBundleFile(const String& path) { return isTextBundleExtension(pathExtension(path)); }

} // namespace MarkDown
} // namespace caddis
