#include "html/PageTrace.h"

#include <gtest/gtest.h>

namespace caddis::html {
namespace {

std::string bodyOf(std::string_view markup)
{
    const std::string trace = traceOf(parsePage(String::fromUtf8(markup)));
    const std::size_t body = trace.find("body");
    return body == trace.npos ? "" : trace.substr(body, trace.size() - body - 1);
}

TEST(PageParser, MissingTagsAreFilledIn)
{
    EXPECT_EQ(traceOf(parsePage(String())), "html");
    EXPECT_EQ(traceOf(parsePage(String(u"text"))), "html(body(\"text\"))");
    EXPECT_EQ(
        traceOf(parsePage(String(u"<title>T</title>\n<p>x"))), "html(head(title(\"T\")) body(p(\"x\")))");
    EXPECT_EQ(traceOf(parsePage(String(u"<html><head><meta charset=x></head><body id=a>x</body></html>y"))),
        "html(head(meta) body(\"x\" \"y\"))");
    EXPECT_EQ(
        bodyOf("<table><td>a<td>b<tr><td>c</table>"), "body(table(tr(td(\"a\") td(\"b\")) tr(td(\"c\"))))");
}

TEST(PageParser, ElementsEndWhereTheyMust)
{
    EXPECT_EQ(bodyOf("<p>a<p>b<div>c</div>d"), "body(p(\"a\") p(\"b\") div(\"c\") \"d\")");
    EXPECT_EQ(bodyOf("<ul><li>a<ul><li>b</ul><li>c</ul>"), "body(ul(li(\"a\" ul(li(\"b\"))) li(\"c\")))");
    EXPECT_EQ(bodyOf("<dl><dt>a<dd>b<dt>c</dl>"), "body(dl(dt(\"a\") dd(\"b\") dt(\"c\")))");
    EXPECT_EQ(bodyOf("<a href=x>a<a href=y>b</a>"), "body(a(\"a\") a(\"b\"))");
    EXPECT_EQ(bodyOf("<div><table><tr><td></div>a</td></tr></table></div>b"),
        "body(div(table(tr(td(\"a\")))) \"b\")")
        << "an end tag ends nothing outside its cell";
    EXPECT_EQ(bodyOf("a</b></p></nothing>b<br/>c</br>"), "body(\"a\" \"b\" br \"c\" br)");
}

TEST(PageParser, FormattingInTheWrongOrderGoesOn)
{
    EXPECT_EQ(bodyOf("<b>1<i>2</b>3</i>4"), "body(b(\"1\" i(\"2\")) i(\"3\") \"4\")");
    EXPECT_EQ(bodyOf("<b>1<p>2</b>3</p>4"), "body(b(\"1\" p(\"2\" \"3\")) \"4\")");
}

TEST(PageParser, OnlyMarkupIsMarkup)
{
    EXPECT_EQ(bodyOf("1 < 2 && 3 > 2 &lt;b&gt;"), "body(\"1 \" \"<\" \" 2 && 3 > 2 <b>\")");
    EXPECT_EQ(bodyOf("a<!-- <b> -->b<!doctype x>c<?pi?>d<!---->e"), "body(\"a\" \"b\" \"c\" \"d\" \"e\")");
    EXPECT_EQ(bodyOf("x<script>if (a</b>) '</p>'</script>y<textarea>\n<i>&amp;</textarea>"),
        "body(\"x\" script(\"if (a</b>) '</p>'\") \"y\" textarea(\"\n<i>&\"))");
    EXPECT_EQ(bodyOf("<textarea>never ended <b>bold"), "body(textarea(\"never ended \" b(\"bold\")))");
    EXPECT_EQ(traceOf(parsePage(String(u"<?xml version='1.0'?><p><a id='x'/><![CDATA[<&>]]></p>"))),
        "html(body(p(a \"<&>\")))");
}

TEST(PageParser, AttributesAreReadAsTheyStand)
{
    const Page page = parsePage(
        String(u"<body><P ID = 'a' CLASS=\" b  c \"title=x/y&amp;z checked id=second><img src=a.png/>"));
    const NodeIndex paragraph = 2;
    EXPECT_EQ(page[paragraph].id, u"a");
    EXPECT_EQ(page[paragraph].classes, u"b  c");
    EXPECT_EQ(page.attribute(paragraph, u"title"), u"x/y&z");
    EXPECT_EQ(page.attribute(paragraph, u"checked"), u"");
    EXPECT_EQ(page.attribute(paragraph, u"missing"), std::nullopt);
    EXPECT_EQ(page.attribute(3, u"src"), u"a.png/");
}

TEST(PageParser, DepthAndStrayTagsCostNoMoreThanTheirLength)
{
    constexpr std::size_t Many = 200'000;
    std::u16string deep;
    for (std::size_t index = 0; index < Many; ++index)
        deep += u"<div><b>";
    for (std::size_t index = 0; index < Many; ++index)
        deep += u"</i></table></p>x";
    const Page page = parsePage(String(deep));
    EXPECT_EQ(page.textOf(0).length(), Many);
    std::u16string attributes(u"<p");
    for (std::size_t index = 0; index < Many; ++index)
        attributes += u" a" + std::u16string(1, static_cast<char16_t>(u'a' + index % 26));
    EXPECT_EQ(parsePage(String(attributes + u">x")).textOf(0), u"x");
}

} // namespace
} // namespace caddis::html
