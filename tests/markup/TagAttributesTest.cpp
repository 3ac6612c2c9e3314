#include "markup/TagAttributes.h"

#include "markup/HeaderFields.h"
#include "markup/MarkupFileTypes.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

constexpr const char* None = "(nil)";

std::string shown(const std::optional<String>& value) { return value ? value->utf8() : None; }

std::string href(std::u16string_view tag) { return shown(attributeOfTagCharacters(tag, "HREF")); }

TEST(TagAttributes, ReadsQuotedAndUnquotedValues)
{
    EXPECT_EQ(href(u"<a href=\"x y\">"), "x y");
    EXPECT_EQ(href(u"<a HREF = 'it is \"'>"), "it is \"");
    EXPECT_EQ(href(u"<a href=x/y>"), "x/y");
    EXPECT_EQ(href(u"<a href==\u00A0x >"), "x");
    EXPECT_EQ(href(u"<a href=\" x &amp; \n\">"), " x &amp;");
}

TEST(TagAttributes, FindsOnlyWholeNamesOutsideValues)
{
    EXPECT_EQ(href(u"<a data-href=a x_href=b \u00E9href=c 1href=d href=e>"), "e");
    EXPECT_EQ(href(u"<a title=\"href=a\" alt='href=b' href=c>"), "c");
    EXPECT_EQ(href(u"<a href hrefx=a xlink:href=b>"), "b");
    EXPECT_EQ(href(u"<a don't href=a>"), None);
    EXPECT_EQ(shown(attributeOfTagCharacters(u"<\u017Fript \u017FRC=x>", "SRC")), "x");
}

TEST(TagAttributes, EmptyValuesAndShortTagsHaveNone)
{
    EXPECT_EQ(href(u"<a href=\"\">x"), None);
    EXPECT_EQ(href(u"<a href=\"  \"  >"), None);
    EXPECT_EQ(href(u"<a href= >"), None);
    EXPECT_EQ(href(u"<a href="), None);
    EXPECT_EQ(shown(attributeOfTagCharacters(u"<a b=c>", "B")), "c");
    EXPECT_EQ(shown(attributeOfTagCharacters(u"<a b=>", "B")), None);
}

TEST(TagAttributes, RangesAreThoseOfTheWholeText)
{
    const std::u16string_view text = u"12<a href=\"x y\">";
    EXPECT_EQ(rangeOfAttributeOfTagCharacters(text, { 2, 14 }, "HREF"), (Range { 11, 3 }));
    EXPECT_EQ(rangeOfAttributeOfTagCharacters(text, { 2, 14 }, "SRC"), std::nullopt);
    EXPECT_EQ(shown(attributeOfTagInRange(text, { 2, 14 }, "HREF")), "x y");
    EXPECT_EQ(rangeOfAttributeOfTagCharacters(u"<a href=\"x y>", { 0, 13 }, "HREF"), (Range { 9, 3 }));
}

TEST(TagAttributes, ContentEndsWithItsTagWhenTheQuoteIsMissing)
{
    const auto content = [](std::u16string_view tag) { return shown(contentAttributeOfTagCharacters(tag)); };
    EXPECT_EQ(content(u"<meta content=\"a; charset=b\">"), "a; charset=b");
    EXPECT_EQ(content(u"<meta content=\"a b><title>\">"), "a b");
    EXPECT_EQ(content(u"<meta content=\"a <b>c</b> d>e\">"), "a <b>c</b> d");
    EXPECT_EQ(content(u"<meta content=\"a <META name=\"b\">"), "a");
    EXPECT_EQ(content(u"<meta content=\"a</\"><meta content='b<'>"), "a");
}

TEST(TagAttributes, ReadsPropertiesOfAStyle)
{
    const auto style = [](std::u16string_view text, UpperAscii name) {
        return shown(attributeOfStyleWithName(text, name));
    };
    EXPECT_EQ(style(u"color:red; font-size : 10pt;top:1px", "FONT-SIZE"), "10pt");
    EXPECT_EQ(style(u"margin-top:2px;top:1px", "TOP"), "1px");
    EXPECT_EQ(style(u"font-family: \"a; b\"", "FONT-FAMILY"), "a; b");
    EXPECT_EQ(style(u"a:b", "A"), "b");
    EXPECT_EQ(style(u"a:;b:c", "A"), None);
}

TEST(TagAttributes, ReadsASizeFromAttributesOrStyle)
{
    const auto size = [](std::u16string_view tag) { return getTagWidth(tag).value_or(TagSize { -1, -1 }); };
    EXPECT_EQ(size(u"<img width=\"10\" height='20px'>"), (TagSize { 10, 20 }));
    EXPECT_EQ(size(u"<img width=10 heigh=20>"), (TagSize { 10, 20 }));
    EXPECT_EQ(size(u"<img width=100%  height=0>"), (TagSize { 100, 0 }));
    EXPECT_EQ(size(u"<img width=0 style=\"max-width:5px; width: 30px; height:40px\">"), (TagSize { 30, 40 }));
    EXPECT_EQ(size(u"<img width=-3 style='width:5px'>"), (TagSize { -1, -1 }));
    EXPECT_EQ(size(u"<width=1>"), (TagSize { -1, -1 }));
}

TEST(TagAttributes, FindsTheBackgroundOfAStyle)
{
    const auto url = [](std::u16string_view tag) { return shown(backgroundStyleURLOfTagCharacters(tag)); };
    EXPECT_EQ(url(u"<div style=\"color:red; background-image: url( 'a b.png' )\">"), "a b.png");
    EXPECT_EQ(url(u"<td style='background:#fff URL(data:image/png;base64,AA==) no-repeat'>"),
        "data:image/png;base64,AA==");
    EXPECT_EQ(url(u"<td style='background:#fff; content:url(a)'>"), None);
    EXPECT_EQ(url(u"<td background='a.png'>"), None);
}

TEST(TagAttributes, TellsWhatATagIs)
{
    EXPECT_TRUE(isTagOpen(u"<p>") && isTagOpen(u"<p class=a>"));
    EXPECT_FALSE(isTagOpen(u"</p>") || isTagOpen(u"<p/>") || isTagOpen(u"<>") || isTagOpen(u"p"));
    EXPECT_TRUE(isTagClosed(u"</p>") && isTagClosed(u"<p />"));
    EXPECT_FALSE(isTagClosed(u"<p>") || isTagClosed(u"</>"));
    EXPECT_TRUE(isMetaTag(u"<META a=b>") && isMetaTag(u"<meta/>") && isRemarkTag(u"<!-- a -->"));
    EXPECT_FALSE(
        isMetaTag(u"<metadata>") || isMetaTag(u"</meta>") || isMetaTag(u"<meta") || isRemarkTag(u"<!a>"));
}

TEST(HeaderFields, ReadsParametersByName)
{
    const auto charset
        = [](std::u16string_view header) { return shown(headerFieldNamed(header, "CHARSET")); };
    EXPECT_EQ(charset(u"text/html; charset=utf-8"), "utf-8");
    EXPECT_EQ(charset(u"text/html; Charset = 'a;b' ; x=y"), "a;b");
    EXPECT_EQ(charset(u"text/html; xcharset=a; title='charset=b'; charset=c "), "c");
    EXPECT_EQ(charset(u"text/html; title=don't;charset=d; e"), "d");
    EXPECT_EQ(charset(u"text/html; charset=;"), None);
    EXPECT_EQ(charset(u"charset"), None);
    EXPECT_EQ(shown(HTTPHeaderFieldNamed(u"Digest realm=\"a, b\", nonce=\"c\"", "REALM")), "a, b");
    EXPECT_EQ(shown(HTTPHeaderFieldNamed(u"Digest realm=\"a, b\", nonce=\"c\"", "NONCE")), "c");
    EXPECT_EQ(shown(headerFieldNamed(u"5; URL=http://a.b/my page?c=d", "URL")), "http://a.b/my page?c=d");
}

TEST(MarkupFileTypes, JudgesByTheNamesExtension)
{
    EXPECT_TRUE(isHTMLFile(u"/a/b.HTM"_s) && isXMLFile(u"b.opml"_s) && isPropertyListFile(u"c.plist"_s));
    EXPECT_FALSE(isHTMLFile(u"/a.html/b"_s) || isXMLFile(u"b.html"_s) || isMarkupFile(u"b.txt"_s));
    EXPECT_TRUE(isMarkupFile(u"b.xhtml"_s) && isMarkupFile(u"b.xml"_s) && isMarkupFile(u"b.plist"_s));
    EXPECT_EQ(HTMLFileTypes().size() + XMLFileTypes().size() + PropertyListFileTypes().size(),
        MarkupFileTypes().size());
}

} // namespace
} // namespace caddis
