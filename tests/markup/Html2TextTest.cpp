#include "markup/Html2Text.h"

#include "support/FailingAllocation.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace caddis {
namespace {

std::u16string repeated(std::size_t count, std::u16string_view units)
{
    std::u16string text;
    while (count-- > 0)
        text += units;
    return text;
}

std::string text(std::u16string_view html) { return stringByConvertingHtml2PlainText(String(html)).utf8(); }

std::string reformatted(std::u16string_view html)
{
    return stringByConvertingHtml2ReformattedPlainText(String(html)).utf8();
}

std::string text(const std::u16string& html, PlainTextOptions options)
{
    return stringByConvertingHtml2PlainTextNonUmlauted(String(html), false, options).text.utf8();
}

TEST(Html2Text, SetsBlocksApart)
{
    EXPECT_EQ(text(u"<p>a</p><p>b</p>"), "a\n\nb\n\n");
    EXPECT_EQ(text(u"a<br><br/>b<LI>c</LI>d"), "a\nb\nc\nd");
    EXPECT_EQ(text(u"<h1>a</h1>b<hr>c<blockquote>d"), "a\n\nb\n\nc\n\nd");
    EXPECT_EQ(text(u"a<div><div><p></p></div>b</div>"), "a\n\nb\n\n");
    EXPECT_EQ(text(u"a<foo>b</foo>c<PARAGRAPH-LONG>d"), "abcd");
}

TEST(Html2Text, LaysOutTables)
{
    EXPECT_EQ(text(u"<table><tr><td>a</td><td>b</td></tr><tr><th>c</th></tr></table>d"), "a b \nc \n\nd");
    EXPECT_EQ(text(u"a<br><table>b"), "a\n\nb");
    EXPECT_EQ(text(u"a<p><table><tr>b"), "a\n\nb");
    EXPECT_EQ(text(u"<tr><td>"), "");
}

TEST(Html2Text, CollapsesWhiteSpaceAndOwesOneBetweenRuns)
{
    EXPECT_EQ(text(u"<p> a  \n  b\u00A0\u2028c </p>"), "a b c\n\n");
    EXPECT_EQ(text(u"a <b>b</b> <i> </i>c"), "a b c");
    EXPECT_EQ(text(u"a<a href=x>b</a>c"), "a b c");
    EXPECT_EQ(text(u"the <code>x</code>, y"), "the  x , y");
    EXPECT_EQ(text(u"a<input>b<p><input>c"), "a b\n\nc");
    EXPECT_EQ(
        text(
            u"a long run of words in ASCII, \n\n and   two \u00E9\u00E8 more,  so  that   blocks are copied"),
        "a long run of words in ASCII, and two \xC3\xA9\xC3\xA8 more, so that blocks are copied");
}

TEST(Html2Text, ConvertsEntitiesBeforeTrimming)
{
    EXPECT_EQ(text(u"<p>&lt;b&gt; &amp;amp;&nbsp;</p>x"), "<b> &amp;\n\nx");
    EXPECT_EQ(text(u"&eacute;&#233;"), "\xC3\xA9\xC3\xA9");
    const String accents = u"&eacute; \u00E9"_s;
    EXPECT_EQ(stringByConvertingHtml2PlainTextNonUmlauted(accents, true).text, u"e \u00E9"_s);
    const String forms = u"&lt;&#62;&eacute;&LT;"_s;
    EXPECT_EQ(
        stringByConvertingHtml2PlainTextEntities(forms, { .entities = false }).text, u"<>&eacute;&LT;"_s);
    EXPECT_EQ(
        stringByConvertingHtml2PlainTextEntities(forms, { .entities = false, .stdEntities = false }).text,
        forms);
}

TEST(Html2Text, LeavesOutWhatIsNotSeen)
{
    EXPECT_EQ(text(u"a<script>x</script><style>x</style><!-- x -->b"), "ab");
    EXPECT_EQ(
        text(u"a<noscript>x</noscript><textarea>x</textarea><marquee>x</marquee><iframe>x</iframe>b"), "ab");
    EXPECT_EQ(text(u"a<select><option>x<option>y</option>z</select>b"), "ab");
    EXPECT_EQ(text(u"a<span class='Hidden'>x<span>y</span>z</span>b"), "ab");
    EXPECT_EQ(text(u"a<div style='display: none'>x<img alt=y></div>b"), "a\n\nb");
    EXPECT_EQ(
        text(u"<div style='position:Absolute; left:-2000px'>x</div><div style='width:1px'>x</div>b"), "b");
    EXPECT_EQ(text(u"<div style='top:-2000px;width:90px'>a</div>"), "a\n\n");
}

TEST(Html2Text, SeesAHiddenElementWhereverItsAttributesStand)
{
    for (std::size_t before = 0; before < 20; ++before) {
        const std::u16string start = u"a<span x" + repeated(before, u"_");
        EXPECT_EQ(text(start + u" STyle=display:none>x</span>b"), "ab") << before;
        EXPECT_EQ(text(start + u" class=HidDen>x</span>b"), "ab") << before;
        EXPECT_EQ(text(start + u" class=type style=x>y</span>b"), "ayb") << before;
    }
}

TEST(Html2Text, KeepsTheLinesOfPreformattedTextWhenAsked)
{
    EXPECT_EQ(text(u"<pre>line one\nline two</pre>"), "line one line two");
    EXPECT_EQ(reformatted(u"<pre>line one\nline two</pre>"), "line one line two");
    EXPECT_EQ(
        reformatted(u"<pre>line one\n- two\r\n\n}\n\n\nthree\f</pre>"), "line one\n- two\n\n}\n\nthree ");
    EXPECT_EQ(reformatted(u"a<pre>if x:\n    y\t\tz</pre>b  \n c"), "a\n\nif x:\n y zb c");
}

TEST(Html2Text, WritesTheTextOfImages)
{
    EXPECT_EQ(text(u"a<img src=x alt='b &amp; c'>d"), "a b & c d");
    EXPECT_EQ(text(u"a<img title=b alt=''>c<img src='x.png'>d"), "a b cd");
    EXPECT_EQ(text(u"a<img src=x alt=b>c", { .imageAlts = false }), "ac");
}

TEST(Html2Text, FindsTheBodyAndDoesWithoutOne)
{
    EXPECT_EQ(text(u"<head><title>t</title></head>a<body>b</body>c"), "tabc");
    EXPECT_EQ(text(u"<head><title>t</title></head>a<body>b</body>c", { .onlyBody = true }), "b");
    EXPECT_EQ(text(u"<title>t</title><p>a", { .onlyBody = true }), "t\n\na");
    EXPECT_EQ(text(u"<frameset><noframes>a</noframes>b", { .onlyBody = true }), "a");
    EXPECT_EQ(text(u"<noscript>a</noscript>b", { .onlyBody = true }), "a")
        << "a body of its own, like noframes";
    EXPECT_EQ(text(u"<body>a<noscript>x</noscript>b</body>", { .onlyBody = true }), "ab");
}

TEST(Html2Text, ObeysGoogleComments)
{
    const std::u16string html
        = u"a<!-- googleoff: index -->b<!-- googleoff: snippet -->c<!-- GoogleOn: all -->d";
    EXPECT_EQ(text(html, { .googleTags = true }), "ad");
    EXPECT_EQ(text(html, {}), "abcd");
    EXPECT_EQ(text(u"a<!-- googleon: all googleoff: index -->b", { .googleTags = true }), "a");
    EXPECT_EQ(text(u"a<font class=feed_date>b</font>c", { .googleTags = true }), "ac");
}

TEST(Html2Text, DropsJunk)
{
    const auto junk = [](const std::u16string& html) {
        const PlainText result
            = stringByConvertingHtml2PlainTextNonUmlauted(String(html), false, { .removeJunk = true });
        return result.text.utf8() + (result.didRemoveJunk ? " +" : " -");
    };
    EXPECT_EQ(junk(u"a<p>" + repeated(12000, u"x") + u"<p>b"), "a\n\nb +");
    EXPECT_EQ(junk(u"<pre>" + repeated(10001, u"x") + u"</pre>").size(), 10003U);
    EXPECT_EQ(junk(u"a<a>" + repeated(3501, u"x") + u"</a>b"), "a b +");
    const std::u16string paragraph = repeated(3, repeated(9000, u"x") + u"<b>");
    EXPECT_EQ(junk(u"a<p>" + paragraph + u"<p>b"), "a\n\n\n\nb +");
    EXPECT_EQ(junk(u"<title>t</title>a"), "a -");
    const std::u16string words = repeated(20, u"lengthy ");
    EXPECT_EQ(junk(u"<body bgcolor='#FFF'>a<font color='#fff'>" + words + u"</font>b"), "ab +");
    EXPECT_EQ(junk(u"a<font style='font-size:1pt'>x</font><font style='font-size:11pt'>y</font>b"), "ayb -");
}

TEST(Html2Text, TheSimpleFormCollectsTheBodysRuns)
{
    EXPECT_EQ(stringByConvertingHtml2SimplifiedPlainText(u"<body>a<b>b</b></body>"_s), u" a b"_s);
    EXPECT_EQ(stringByConvertingHtml2SimplifiedPlainText(u"x<body> a\n<p>&lt;&gt;</body>y"_s), u"  a\n <>"_s);
    EXPECT_EQ(stringByConvertingHtml2SimplifiedPlainText(u"no body"_s), u" no body"_s);
}

TEST(Html2Text, ReturnsTheTextItselfWhenNothingIsProduced)
{
    EXPECT_TRUE(stringByConvertingHtml2PlainText(String()).isEmpty());
    const String tags = u"<body></body>"_s;
    EXPECT_TRUE(stringByConvertingHtml2SimplifiedPlainText(tags).isIdenticalTo(tags));
    const FailingAllocation none;
    const String large(std::u16string(300, u'<'));
    EXPECT_TRUE(stringByConvertingHtml2PlainText(large).isIdenticalTo(large));
}

} // namespace
} // namespace caddis
