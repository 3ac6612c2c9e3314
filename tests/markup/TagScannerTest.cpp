#include "markup/TagScanner.h"

#include "markup/ReferenceScanner.h"
#include "markup/UnitMasks.h"
#include "platform/base/Exception.h"
#include "platform/base/MutableString.h"
#include "support/FailingAllocation.h"
#include "support/LogCapture.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <random>

namespace caddis {
namespace {

// One scan as one line, [run]tag:name for every call, so that a whole contract reads at a glance. The mark
// behind a tag is its kind: none for elements, # for comments, ! for sections, . for the last call.
std::string trace(const String& text)
{
    static constexpr const char* kinds[] = { ".", "", "#", "!" };
    std::string line;
    GetTagsOfString(text, [&](const TagEvent& event) {
        line += '[' + readable(event.units(event.text)) + ']' + readable(event.units(event.tag));
        line += kinds[static_cast<unsigned>(event.kind)];
        if (event.name.isFound())
            line += ':' + readable(event.units(event.name));
        line += ' ';
        return Scan::Continue;
    });
    return line;
}

TEST(TagScanner, MakesNoCallForAnEmptyTextAndOneForPlainText)
{
    EXPECT_FALSE(GetTagsOfString(String(), [](const TagEvent&) -> Scan { throw 1; }));
    EXPECT_EQ(trace(u"a > b"_s), "[a > b]. ");
    EXPECT_EQ(trace(u"<p>text<a"_s), "[]<p>:p [text<a]. ");
    EXPECT_EQ(trace(u"<"_s), "[<]. ");
    EXPECT_EQ(trace(u"<!"_s), "[<!]. ");
}

TEST(TagScanner, NamesEveryKindOfElement)
{
    EXPECT_EQ(trace(u"a</p><br/>"_s), "[a]</p>:p []<br/>:br []. ");
    EXPECT_EQ(trace(u"<!DOCTYPE html><?xml x?><a:b><1>"_s),
        "[]<!DOCTYPE html>:DOCTYPE []<?xml x?>:xml []<a:b>:a:b []<1> []. ");
    EXPECT_EQ(trace(u"< \u00E9t\u00E9\u00A0x><p\u0085q><>"_s),
        "[]< \xC3\xA9t\xC3\xA9\xC2\xA0x>:\xC3\xA9t\xC3\xA9 []<p\xC2\x85q>:p []<> []. ");
    EXPECT_EQ(trace(u"</><//b><\"=a>b\">"_s), "[]</> []<//b>:b []<\"=a>:a [b\">]. ");
}

TEST(TagScanner, QuotesProtectOnlyValuesOpenedBehindEquals)
{
    EXPECT_EQ(trace(u"<a t=\"x>y\">"_s), "[]<a t=\"x>y\">:a []. ");
    EXPECT_EQ(trace(u"<a t='x>\"y'>"_s), "[]<a t='x>\"y'>:a []. ");
    EXPECT_EQ(trace(u"<a \"x>y\">"_s), "[]<a \"x>:a [y\">]. ");
    EXPECT_EQ(trace(u"<a b=c \"x>y\">z"_s), "[]<a b=c \"x>y\">:a [z]. ");
    EXPECT_EQ(
        trace(u"<a t=\"it's\"><b t=\"=\" u=\">\">"_s), "[]<a t=\"it's\">:a []<b t=\"=\" u=\">\">:b []. ");
    EXPECT_EQ(trace(u"<a t=\"x>y z"_s), "[<a t=\"x>y z]. ");
}

TEST(TagScanner, CommentsAndSectionsEndAtTheirOwnMarks)
{
    EXPECT_EQ(trace(u"<!-->a<!-x->b<!-- > --!>"_s), "[]<!--># [a]<!-x-># [b]<!-- > --!># []. ");
    EXPECT_EQ(trace(u"<!-- ->'\"=--><!->->"_s), "[]<!-- ->'\"=--># []<!->-># []. ");
    EXPECT_EQ(trace(u"<![CDATA[a>b]]><![if x]>y<![endif]--><![]]--->]>"_s),
        "[]<![CDATA[a>b]]>! []<![if x]>! [y]<![endif]-->! []<![]]--->]>! []. ");
    EXPECT_EQ(trace(u"x<!-- open <p>"_s), "[x]<!-- open <p># []. ");
    EXPECT_EQ(trace(u"x<![ open"_s), "[x]<![ open! []. ");
    EXPECT_EQ(trace(u"<!-"_s), "[]<!-# []. ");
}

TEST(TagScanner, ScriptAndStyleAreOneTagEach)
{
    EXPECT_EQ(trace(u"<script>if (a<b) x='</p>';</script>z"_s),
        "[]<script>if (a<b) x='</p>';</script>:script [z]. ");
    EXPECT_EQ(trace(u"<SCRIPT>a</script\n>b<STYLE>c</sTyLe>"_s),
        "[]<SCRIPT>a</script\n>:SCRIPT [b]<STYLE>c</sTyLe>:STYLE []. ");
    EXPECT_EQ(trace(u"<script src=x/>a</script>b"_s), "[]<script src=x/>:script [a]</script>:script [b]. ");
    EXPECT_EQ(trace(u"<script>a<b>c"_s), "[]<script>:script [a]<b>:b [c]. ");
    EXPECT_EQ(trace(u"<script>a</script b"_s), "[]<script>a</script b:script []. ");
}

TEST(TagScanner, CommentsHideAScriptsClosingTag)
{
    EXPECT_EQ(trace(u"<script><!-- </script> --> a</script>b"_s),
        "[]<script><!-- </script> --> a</script>:script [b]. ");
    EXPECT_EQ(trace(u"<script><!-- </script> --> a"_s), "[]<script><!-- </script>:script [ --> a]. ");
    EXPECT_EQ(
        trace(u"<style><!-- </style> a</style>"_s), "[]<style><!-- </style>:style [ a]</style>:style []. ");
    EXPECT_EQ(trace(u"<script a=\"</script>\">b"_s), "[]<script a=\"</script>:script [\">b]. ");
}

TEST(TagScanner, StopsWhenTheHandlerSaysSo)
{
    int calls = 0;
    EXPECT_TRUE(GetTagsOfString(u"a<b>c<d>e"_s, [&](const TagEvent&) {
        ++calls;
        return Scan::Stop;
    }));
    EXPECT_EQ(calls, 1);
}

TEST(TagScanner, GivesAWritableCopyOnlyWhenAsked)
{
    const String text = u"ab<c>de"_s;
    MutableString seen;
    GetTagsOfString(
        text,
        [&](const TagEvent& event) {
            std::fill_n(event.mutableCharacters + event.text.location, event.text.length, u'x');
            seen.append(event.units(event.text));
            return Scan::Continue;
        },
        Characters::Mutable);
    EXPECT_EQ(std::move(seen).take(), u"xxxx"_s);
    EXPECT_EQ(text, u"ab<c>de"_s);
    GetTagsOfString(text, [](const TagEvent& event) {
        EXPECT_EQ(event.mutableCharacters, nullptr);
        EXPECT_EQ(event.characters, event.string.data());
        return Scan::Continue;
    });
    const FailingAllocation none;
    EXPECT_FALSE(GetTagsOfString(
        String(std::u16string(300, u'a')), [](const TagEvent&) -> Scan { throw 1; }, Characters::Mutable));
}

TEST(TagScanner, TheGuardedFormLogsAHandlersException)
{
    const LogCapture log;
    EXPECT_FALSE(parseXmlWithHandler(
        u"<a>"_s, [](const TagEvent&) -> Scan { throw Exception(u"Name"_s, u"reason"_s); }));
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(
        log.lines()[0].view().starts_with(u"parseXmlWithHandler:context:mutable: (String): Name\nreason\n"));
    EXPECT_TRUE(parseXmlWithHandler(u"<a>"_s, [](const TagEvent&) { return Scan::Continue; }));
}

// Texts made of the pieces that steer the scanner, long enough to cross the blocks of 64 units.
std::u16string hostileText(std::minstd_rand& random, unsigned mostPieces)
{
    static const std::u16string pieces[] = { u"<", u">", u"\"", u"'", u"=", u"/", u"!", u"-", u"--", u"-->",
        u"<!-", u"<!--", u"<![", u"]", u"<script", u"</SCRIPT", u"</script>", u"<style>", u"</style", u"a",
        u"p ", u" ", u"<p class=\"x\">", u"\u00E9", u"\u0085", u"\u00A0", u"<\u017Fcript>",
        std::u16string(61, u'x'), std::u16string(64, u' '), u"<script \"=\"</script>" };
    std::u16string text;
    for (std::size_t count = random() % mostPieces; count > 0; --count)
        text += pieces[random() % std::size(pieces)];
    return text;
}

// A quote or bracket at every place of a window and behind it.
String tagOfLength(std::size_t filler, std::u16string_view end)
{
    return String(u"<b " + std::u16string(filler, u'x') + std::u16string(end) + u"\">'> \">");
}

void expectCallsOfTheReference(const String& text)
{
    const auto expected = reference::Scanner(text).scan();
    for (int width = 0; width <= static_cast<int>(widestVectors()); ++width) {
        useVectors(static_cast<VectorWidth>(width));
        ASSERT_EQ(reference::fastCalls(text), expected) << width << ": " << text.utf8();
    }
    useVectors(widestVectors());
}

TEST(TagScanner, MakesTheCallsOfTheReferenceWhereverATagEnds)
{
    for (std::size_t filler = 0; filler < 200; ++filler)
        for (const std::u16string_view end : { u"", u"\"", u"'", u"=", u"=\"", u"='", u"=\"y\"", u"\" =\"" })
            expectCallsOfTheReference(tagOfLength(filler, end));
}

TEST(TagScanner, MakesTheCallsOfTheReferenceAtEveryWidth)
{
    std::minstd_rand random(7);
    for (int round = 0; round < 10000; ++round) {
        // Every tenth text is longer than the batches in which a text is classified.
        expectCallsOfTheReference(String(hostileText(random, round % 10 ? 100 : 2000)));
    }
}

} // namespace
} // namespace caddis
