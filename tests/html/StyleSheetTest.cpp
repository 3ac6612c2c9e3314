#include "html/Cascade.h"

#include <gtest/gtest.h>

namespace caddis::css {
namespace {

// The style of the element whose id is "x" on a page with that sheet.
class Styled {
public:
    Styled(std::u16string_view sheet, std::u16string_view markup)
        : m_page(html::parsePage(String(markup)))
        , m_sheet(parseStyleSheet(String(sheet)))
        , m_cascade(m_page)
    {
        m_cascade.add(m_sheet);
        std::vector<const ComputedStyle*> styles(m_page.size());
        for (NodeIndex node = 0; node < m_page.size(); ++node) {
            if (m_page[node].tag == html::Tag::Text)
                continue;
            const NodeIndex parent = m_page[node].parent;
            styles[node] = &m_cascade.styleOf(node, parent == NoNode ? nullptr : styles[parent]);
            if (m_page[node].id == u"x")
                m_style = styles[node];
        }
    }

    const ComputedStyle* operator->() const { return m_style; }

private:
    Page m_page;
    StyleSheet m_sheet;
    Cascade m_cascade;
    const ComputedStyle* m_style = nullptr;
};

bool fits(std::u16string_view selector, std::u16string_view markup)
{
    return Styled(
               String(selector).view().empty() ? u"" : std::u16string(selector) + u"{font-size:99px}", markup)
               ->fontSize
        == 99;
}

constexpr TextColor Red = { TextColor::Full, 0, 0 };

TEST(StyleSheet, SelectorsFitWhatTheySay)
{
    constexpr std::u16string_view Page = u"<ul class='a b'><li>1<li lang=en-US data-n='one two'><em>2</em><p "
                                         u"id=x title=Abc>3</p><b>4</b></ul>";
    for (const auto* const selector :
        { u"p", u"#x", u"*", u"P#x", u".a p", u".a.b > li > p", u"em + p", u"em ~ p", u"li:nth-child(2) p",
            u"li:nth-child(2n) #x", u"p:nth-of-type(1)", u"p:not(:first-child)", u"[title]", u"[title=Abc]",
            u"[title^=A]", u"[title$='c']", u"[title*=b]", u"[title=abc i]", u"[lang|=en] p",
            u"[data-n~=two] p", u":is(h1, p)", u":where(.c, .a) p", u"p:nth-last-child(2)",
            u"ul:only-child p", u"h1, p", u":root p", u"p:not(.a, #y)", u"\\70" })
        EXPECT_TRUE(fits(selector, Page)) << String(selector).utf8();
    for (const auto* const selector : { u"em p", u"ul > p", u".c p", u"p + p", u"p:empty", u"p:hover",
             u"p::before", u"b + p", u"[title=abc]", u"p:nth-child(odd)", u"p, h1:unknown", u"p{}" })
        EXPECT_FALSE(fits(selector, Page)) << String(selector).utf8();
}

TEST(StyleSheet, TheCascadeWeighsOriginImportanceSpecificityAndOrder)
{
    constexpr std::u16string_view Page = u"<p id=x class=c style='color: red; font-size: 10px'>text";
    EXPECT_EQ(Styled(u"p { color: blue }", Page)->color, Red) << "a style attribute wins";
    EXPECT_NE(Styled(u"p { color: blue !important }", Page)->color, Red);
    EXPECT_EQ(Styled(u".c { font-weight: bold } p { font-weight: normal }", Page)->fontWeight, 700);
    EXPECT_EQ(Styled(u"p { font-weight: bold } p { font-weight: normal }", Page)->fontWeight, 400);
    EXPECT_EQ(
        Styled(u"@layer a { #x { font-weight: bold } } p { font-weight: normal }", Page)->fontWeight, 400);
    EXPECT_EQ(Styled(u"p { display: inline }", Page)->display, Keyword::Inline)
        << "the browser's sheet is weakest";
}

TEST(StyleSheet, ValuesAreComputed)
{
    EXPECT_EQ(Styled(u"", u"<h1><span id=x>")->fontSize, 24) << "twice the initial 12";
    EXPECT_EQ(
        Styled(u"html { font-size: 20px } p { font-size: 150% } b { font-size: 1.5rem }", u"<p>a<b id=x>")
            ->fontSize,
        30);
    EXPECT_EQ(Styled(u"p { font: italic bold 12pt/1.5 'My Font', serif }", u"<p id=x>")->fontSize, 16);
    EXPECT_EQ(
        Styled(u"p { font: italic bold 12pt/1.5 'My Font', serif }", u"<p id=x>")->fontFamily, u"My Font");
    EXPECT_EQ(Styled(u"p { font-family: monospace }", u"<p id=x>")->fontFamily, u"Courier");
    EXPECT_EQ(Styled(u"p { margin: 1em 2px }", u"<p id=x>")->marginRight, 2);
    EXPECT_EQ(Styled(u"", u"<sub><sup id=x>")->superscript, 0);
    EXPECT_EQ(Styled(u"", u"<font size=+2 color=ff0000><i id=x>")->color, Red);
}

TEST(StyleSheet, ColoursAreReadInAllTheirForms)
{
    for (const auto* const text :
        { u"red", u"RED", u"#f00", u"#FF0000", u"#f00f", u"#ff0000ff", u"rgb(255, 0, 0)",
            u"rgb(100% 0% 0% / 100%)", u"rgba(255,0,0,1)", u"hsl(0, 100%, 50%)", u"hsl(360deg 100% 50%)" })
        EXPECT_EQ(colorOf(text), Red) << String(text).utf8();
    for (const auto* const text : { u"", u"reddish", u"#ff", u"#ggg", u"rgb(1)", u"rgb(a,b,c)", u"inherit" })
        EXPECT_EQ(colorOf(text), std::nullopt) << String(text).utf8();
    EXPECT_EQ(colorOf(u"rgb(0 0 0 / .5)")->alpha, TextColor::Full / 2);
}

TEST(StyleSheet, VariablesStandForTheirValues)
{
    constexpr std::u16string_view Page = u"<div><p id=x>";
    EXPECT_EQ(Styled(u":root { --c: red } p { color: var(--c) }", Page)->color, Red);
    EXPECT_EQ(Styled(u"p { color: var(--none, red) }", Page)->color, Red);
    EXPECT_EQ(Styled(u"div { --a: var(--b); --b: red } p { color: var( --a ) }", Page)->color, Red);
    EXPECT_EQ(
        Styled(u"div { --a: var(--b); --b: var(--a) } p { color: var(--a) }", Page)->color, TextColor());
    EXPECT_EQ(Styled(u"div { --m: 3px 4px } p { margin: var(--m) }", Page)->marginLeft, 4);
}

TEST(StyleSheet, ConditionsAreMet)
{
    const auto isBold
        = [](const std::u16string& sheet) { return Styled(sheet, u"<p id=x>")->fontWeight == 700; };
    const std::u16string rule = u" { p { font-weight: bold } }";
    for (const auto* const condition :
        { u"@media screen", u"@media all and (min-width: 600px)", u"@media print, screen",
            u"@media not print", u"@supports (display: grid)", u"@media (max-width: 90em)" })
        EXPECT_TRUE(isBold(condition + rule)) << String(condition).utf8();
    for (const auto* const condition :
        { u"@media print", u"@media (max-width: 600px)", u"@media (prefers-color-scheme: dark)",
            u"@supports not (display: grid)", u"@keyframes p", u"@font-face" })
        EXPECT_FALSE(isBold(condition + rule)) << String(condition).utf8();
}

TEST(StyleSheet, WhatIsBrokenCostsOnlyItself)
{
    const auto isBold
        = [](std::u16string_view sheet) { return Styled(sheet, u"<p id=x>")->fontWeight == 700; };
    EXPECT_TRUE(isBold(u"<!-- p { font-weight: bold } -->"));
    EXPECT_TRUE(isBold(u"p { color: ; ; font-weight: bold"));
    EXPECT_TRUE(isBold(u"}} @unknown x; p /* } */ { a: \"}\"; b: url(;}); font-weight: bold /* never ended"));
    EXPECT_TRUE(isBold(u"p { &:hover { font-weight: normal } font-weight: bold }"));
    EXPECT_FALSE(isBold(u"p[ { font-weight: bold }"));
}

TEST(StyleSheet, ImportsAreNamed)
{
    const StyleSheet sheet
        = parseStyleSheet(String(u"@import 'a.css'; @import url(b.css) screen; @import url(\"c.css\") print;"
                                 u"@import url( d.css ) layer(x) supports(display: grid);"));
    EXPECT_EQ(sheet.imports, (std::vector<String> { String(u"a.css"), String(u"b.css"), String(u"d.css") }));
}

TEST(StyleSheet, HostileSheetsEndInTime)
{
    std::u16string many, open, markup;
    for (int index = 0; index < 100'000; ++index) {
        many += u"a b c d e f g, * * * *:nth-last-child(2n+1) ~ * { color: red }\n";
        open += u"@media all { (";
        markup += u"<a><b>";
    }
    EXPECT_EQ(parseStyleSheet(String(open)).rules.size(), 0U);
    EXPECT_EQ(parseStyleSheet(String(many)).rules.size(), 200'000U);
    Styled(many.substr(0, 100'000), markup.substr(0, 6'000) + u"<p id=x>");
}

} // namespace
} // namespace caddis::css
