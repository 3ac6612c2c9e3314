#include "html/Tags.h"

#include <array>
#include <unordered_map>

namespace caddis::html {

namespace {

struct Row {
    std::u16string_view name;
    unsigned traits = 0;
};

constexpr std::size_t Count = static_cast<std::size_t>(Tag::Count);

// In the order of Tag.
constexpr std::array<Row, Count> Rows { { { u"" }, { u"" }, { u"a", IsFormatting },
    { u"address", ClosesParagraph }, { u"applet", IsScope }, { u"area", IsVoid },
    { u"article", ClosesParagraph }, { u"aside", ClosesParagraph }, { u"audio" }, { u"b", IsFormatting },
    { u"base", IsVoid | IsHeadContent }, { u"big", IsFormatting }, { u"blockquote", ClosesParagraph },
    { u"body" }, { u"br", IsVoid }, { u"button" }, { u"caption", IsScope }, { u"center", ClosesParagraph },
    { u"code", IsFormatting }, { u"col", IsVoid }, { u"colgroup" }, { u"dd", ClosesParagraph }, { u"del" },
    { u"details", ClosesParagraph }, { u"dialog", ClosesParagraph }, { u"dir", ClosesParagraph },
    { u"div", ClosesParagraph }, { u"dl", ClosesParagraph }, { u"dt", ClosesParagraph },
    { u"em", IsFormatting }, { u"embed", IsVoid }, { u"fieldset", ClosesParagraph },
    { u"figcaption", ClosesParagraph }, { u"figure", ClosesParagraph }, { u"font", IsFormatting },
    { u"footer", ClosesParagraph }, { u"form", ClosesParagraph }, { u"frame", IsVoid }, { u"frameset" },
    { u"h1", ClosesParagraph }, { u"h2", ClosesParagraph }, { u"h3", ClosesParagraph },
    { u"h4", ClosesParagraph }, { u"h5", ClosesParagraph }, { u"h6", ClosesParagraph }, { u"head" },
    { u"header", ClosesParagraph }, { u"hgroup", ClosesParagraph }, { u"hr", IsVoid | ClosesParagraph },
    { u"html" }, { u"i", IsFormatting }, { u"iframe", IsRaw }, { u"img", IsVoid }, { u"input", IsVoid },
    { u"ins" }, { u"kbd" }, { u"li", ClosesParagraph }, { u"link", IsVoid | IsHeadContent },
    { u"main", ClosesParagraph }, { u"map" }, { u"marquee", IsScope }, { u"math" },
    { u"menu", ClosesParagraph }, { u"meta", IsVoid | IsHeadContent }, { u"nav", ClosesParagraph },
    { u"nobr", IsFormatting }, { u"noembed", IsRaw }, { u"noframes", IsHeadContent },
    { u"noscript", IsHeadContent }, { u"object", IsScope }, { u"ol", ClosesParagraph }, { u"optgroup" },
    { u"option" }, { u"p", ClosesParagraph }, { u"param", IsVoid }, { u"picture" },
    { u"plaintext", ClosesParagraph }, { u"pre", ClosesParagraph }, { u"q" }, { u"s", IsFormatting },
    { u"samp" }, { u"script", IsRaw | IsHeadContent }, { u"search", ClosesParagraph },
    { u"section", ClosesParagraph }, { u"select" }, { u"small", IsFormatting }, { u"source", IsVoid },
    { u"span" }, { u"strike", IsFormatting }, { u"strong", IsFormatting },
    { u"style", IsRaw | IsHeadContent }, { u"sub" }, { u"summary", ClosesParagraph }, { u"sup" }, { u"svg" },
    { u"table", ClosesParagraph | IsScope }, { u"tbody" }, { u"td", IsScope }, { u"template", IsHeadContent },
    { u"textarea", IsEscapableRaw }, { u"tfoot" }, { u"th", IsScope }, { u"thead" },
    { u"title", IsEscapableRaw | IsHeadContent }, { u"tr" }, { u"track", IsVoid }, { u"tt", IsFormatting },
    { u"u", IsFormatting }, { u"ul", ClosesParagraph }, { u"var" }, { u"video" }, { u"wbr", IsVoid },
    { u"xmp", IsRaw | ClosesParagraph } } };

static_assert(Rows[static_cast<std::size_t>(Tag::Xmp)].name == u"xmp");
static_assert(Rows[static_cast<std::size_t>(Tag::Kbd)].name == u"kbd");
static_assert(Rows[static_cast<std::size_t>(Tag::Table)].name == u"table");

std::unordered_map<std::u16string_view, Tag> tagsByName()
{
    std::unordered_map<std::u16string_view, Tag> tags;
    for (auto index = static_cast<std::size_t>(Tag::A); index < Count; ++index)
        tags.emplace(Rows[index].name, static_cast<Tag>(index));
    tags.emplace(u"image", Tag::Img);
    return tags;
}

} // namespace

std::uint8_t traitsOf(Tag tag)
{
    return static_cast<std::uint8_t>(Rows[static_cast<std::size_t>(tag)].traits);
}

std::u16string_view nameOf(Tag tag) { return Rows[static_cast<std::size_t>(tag)].name; }

Tag tagNamed(std::u16string_view name)
{
    static const auto tags = tagsByName();
    const auto found = tags.find(name);
    return found == tags.end() ? Tag::Other : found->second;
}

} // namespace caddis::html
