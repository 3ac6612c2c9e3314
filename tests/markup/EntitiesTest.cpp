#include "markup/Entities.h"
#include "markup/EntityTable.h"
#include "platform/base/MutableString.h"

#include "support/FailingAllocation.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace caddis {
namespace {

String decoded(std::u16string_view text, EntityOptions options = {})
{
    return stringByConvertingEntitiesToCharacters(String(text), options);
}

TEST(EntityTable, HoldsEachNameAndCharacterOnce)
{
    std::set<std::string_view> names;
    std::set<char16_t> characters;
    for (const EntityRow& row : entityTable()) {
        EXPECT_TRUE(names.insert(row.name).second && characters.insert(row.character).second) << row.name;
        EXPECT_EQ(characterOfEntity(String::fromUtf8(row.name)), row.character) << row.name;
        EXPECT_EQ(entityOfCharacter(row.character), row.name);
    }
    EXPECT_EQ(names.size(), 246U);
    EXPECT_EQ(entityTable().front().name, "AElig");
    EXPECT_EQ(entityTable().back().name, "euro");
}

TEST(EntityTable, KnowsNothingElse)
{
    for (const std::u16string_view name :
        { u"", u"amp", u"cedil", u"fnof", u"EURO", u"eur", u"thetasymm", u"\u0141uml" })
        EXPECT_FALSE(characterOfEntity(name)) << readable(name);
    for (const char16_t character : { u'&', u'A', u'\u00B8', u'\u0192', u'\u2667', u'\uFFFF' })
        EXPECT_TRUE(entityOfCharacter(character).empty());
}

TEST(Entities, DecodesNamesAndNumbers)
{
    EXPECT_EQ(decoded(u"&lt;b&gt; caf&eacute; &euro;&thetasym;"), u"<b> caf\u00E9 \u20AC\u03D1"_s);
    EXPECT_EQ(decoded(u"&#65;&#x42;&#X43;&#x41;"), u"ABCA"_s);
    EXPECT_EQ(decoded(u"it&apos;s &quot;a&nbsp;b&quot;"), u"it's \"a\u00A0b\""_s);
    EXPECT_EQ(decoded(u"&#128512;&#x10FFFF;&#0065;"), u"\U0001F600\U0010FFFFA"_s);
    EXPECT_EQ(decoded(u"&#xD83D;&#xDE00;"), u"\U0001F600"_s) << "a pair written as two numbers joins again";
}

TEST(Entities, SemicolonsMayBeMissingWhereNothingIsAmbiguous)
{
    EXPECT_EQ(decoded(u"&ampx &lt3 a&nbspb &quotx &gtx &aposx"), u"&x <3 a\u00A0b \"x >x 'x"_s);
    EXPECT_EQ(decoded(u"&#8364uro &#x41g"), u"\u20ACuro Ag"_s);
    EXPECT_EQ(decoded(u"&copy 2001, &Auml"), u"\u00A9 2001, \u00C4"_s);
    EXPECT_EQ(decoded(u"?a=1&copy=2&copy3&reg_id"), u"?a=1&copy=2&copy3\u00AE_id"_s);
    EXPECT_EQ(decoded(u"&euro 5 &sub x"), u"&euro 5 &sub x"_s) << "beyond Latin-1 the semicolon counts";
}

TEST(Entities, LeavesWhatIsNoReference)
{
    for (const std::u16string_view text :
        { u"&lt", u"&fnof; &cedil;", u"&bogus;", u"&&&&", u"&#;&#x;&#xg;", u"&#0;", u"&#1114112;",
            u"&#99999999999999999999;", u"&;& ;&eacut", u"&Eacutee;", u"no reference at all" }) {
        const String original(text);
        EXPECT_TRUE(stringByConvertingEntitiesToCharacters(original).isIdenticalTo(original))
            << readable(text);
    }
    EXPECT_EQ(decoded(u"&&lt;&"), u"&<&"_s);
    EXPECT_EQ(decoded(u"&amp;lt;"), u"&lt;"_s) << "what was made is not read again";
}

TEST(Entities, OptionsNarrowWhatIsConverted)
{
    const std::u16string_view text = u"&quot;&#233;&eacute;&amp;&nbsp;\u00E9";
    EXPECT_EQ(decoded(text, { .quotes = false }), u"&quot;\u00E9\u00E9&\u00A0\u00E9"_s);
    EXPECT_EQ(decoded(text, { .onlyNumericEntities = true }), u"&quot;\u00E9&eacute;&amp;&nbsp;\u00E9"_s);
    EXPECT_EQ(decoded(text, { .nonUmlauted = true }), u"\"ee&\u00A0\u00E9"_s) << "only what references give";
    EXPECT_EQ(stringByConvertingEntitiesToCharactersNonUmlauted(String(text), true), u"\"ee&\u00A0\u00E9"_s);
    EXPECT_EQ(
        stringByConvertingStandardEntitiesToCharacters(u"&lt;&gt;&amp;&quot;&apos;&nbsp;&eacute;&#65;"_s),
        u"<>&\"'&nbsp;&eacute;&#65;"_s);
}

TEST(Entities, DecodesRawUnitsInPlace)
{
    std::u16string units = u"a&lt;b&euro;&#128512;c&";
    units.resize(convertEntities2Characters(units, units.data()));
    EXPECT_EQ(units, u"a<b\u20AC\U0001F600c&");
    std::u16string three = u"&lt";
    EXPECT_EQ(convertEntities2Characters(three, three.data()), 3U);
    EXPECT_EQ(three, u"&lt");
}

TEST(Entities, Encodes)
{
    EXPECT_EQ(stringByConvertingCharactersToEntities(u"\u00FC\u00A0<\u2192>\u03D1\u03B5\u4E2D\u00B8"_s),
        u"&uuml;&nbsp;<&rarr;>&thetasym;&epsilon;\u4E2D\u00B8"_s);
    EXPECT_EQ(stringByConvertingCharactersToStandardEntities(u"<a href=\"?b&c\">'\u00FC'"_s),
        u"&lt;a href=&quot;?b&amp;c&quot;&gt;'\u00FC'"_s);
    EXPECT_EQ(stringByConvertingHighCharactersToEntities(u"a&\u007F\u0080\u20AC\U0001F600\U0010FFFF"_s),
        u"a&\u007F&#128;&#8364;&#128512;&#1114111;"_s);
    const String lone(std::u16string_view(u"\xDC00z\xD800", 3));
    EXPECT_EQ(stringByConvertingHighCharactersToEntities(lone), u"&#56320;z&#55296;"_s);
}

TEST(Entities, EncodingReturnsTheTextItselfWhenNothingChanges)
{
    const String plain = u"plain 'text'; 100 %"_s;
    EXPECT_TRUE(stringByConvertingCharactersToStandardEntities(plain).isIdenticalTo(plain));
    EXPECT_TRUE(stringByConvertingHighCharactersToEntities(plain).isIdenticalTo(plain));
    const String chinese = u"\u4E2D\u6587 <>&"_s;
    EXPECT_TRUE(stringByConvertingCharactersToEntities(chinese).isIdenticalTo(chinese));
}

TEST(Entities, WithoutMemoryLongTextsStayAndShortOnesNeedNone)
{
    const auto behind = [](std::size_t units, std::u16string_view text) {
        MutableString result;
        std::fill_n(result.appendUninitialized(units), units, u'x');
        return std::move(result.append(text)).take();
    };
    const String longText = behind(300, u"&lt;\u00FC");
    const FailingAllocation noMemory;
    EXPECT_TRUE(stringByConvertingEntitiesToCharacters(longText).isIdenticalTo(longText));
    EXPECT_TRUE(stringByConvertingCharactersToEntities(longText).isIdenticalTo(longText));
    EXPECT_EQ(decoded(behind(252, u"&lt;")), behind(252, u"<"));
}

} // namespace
} // namespace caddis
