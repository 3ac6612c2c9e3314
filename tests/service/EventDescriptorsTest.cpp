#include "service/EventDescriptors.h"

#include "support/Text.h"

#include <stdlib.h>

namespace caddis {
namespace {

TEST(EventDescriptors, ConvertEveryKindOfValue)
{
    EXPECT_TRUE(appleEventDescriptor(Value(Null())).isNull());
    EXPECT_EQ(appleEventDescriptor(Value(u"a"_s)), EventDescriptor::withString(u"a"_s));
    EXPECT_EQ(appleEventDescriptor(Value(7)), EventDescriptor::withString(u"7"_s));
    EXPECT_EQ(appleEventDescriptor(Value(1.5)), EventDescriptor::withString(u"1.5"_s));
    EXPECT_EQ(appleEventDescriptor(Value(true)), EventDescriptor::withString(u"1"_s));
    EXPECT_EQ(dateValue(appleEventDescriptor(Value(Date { 5 }))), Date { 5 });
    EXPECT_EQ(appleEventDescriptor(Array { 1, u"b"_s }).numberOfItems(), 2U);
    EXPECT_EQ(appleEventDescriptor(Value(URL::fileURLWithPath(u"/a b"_s))).stringValue(), u"file:///a%20b"_s);
}

TEST(EventDescriptors, DictionariesBecomeRecordsWithUserFields)
{
    const auto record = appleEventDescriptor(Value(Dictionary { { u"a"_s, u"b"_s }, { u"c"_s, 1 } }));
    ASSERT_EQ(record.numberOfItems(), 1U);
    const auto back = dictionaryValueWithStrings(record);
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, (std::vector<std::pair<String, String>> { { u"a"_s, u"b"_s }, { u"c"_s, u"1"_s } }));

    const auto numbered
        = appleEventDescriptor(std::vector<std::pair<RecordKey, Value>> { { "pnam"_code, u"n"_s } });
    EXPECT_EQ(numbered.descriptorForKeyword("pnam"_code).stringValue(), u"n"_s);
    EXPECT_TRUE(numbered.descriptorForKeyword("usrf"_code).isNull());
    EXPECT_EQ(dictionaryValue(numbered), std::nullopt);
    EXPECT_EQ(dictionaryValue(setObject(record, u"n"_s, "pnam"_code)), std::nullopt);
    EXPECT_EQ(dictionaryValue(appleEventDescriptor(Value(Dictionary()))), std::nullopt);
}

TEST(EventDescriptors, ListsComeBackInOrder)
{
    auto list = appleEventDescriptor(Array { u"a"_s, u"b"_s });
    list = insertObject(insertObject(list, u"x"_s, 1), u"c"_s, 0);
    EXPECT_EQ(arrayValueWithStrings(list), (std::vector<String> { u"x"_s, u"b"_s, u"c"_s }));
    EXPECT_EQ(arrayValue(list)->size(), 3U);
    EXPECT_EQ(arrayValue(EventDescriptor()), std::nullopt);
}

TEST(EventDescriptors, PathsOfEveryFormBecomePathsWithSlashes)
{
    setenv("HOME", "/home/me", 1);
    EXPECT_EQ(POSIXPath(std::nullopt), std::nullopt);
    EXPECT_EQ(POSIXPath(String()), String());
    EXPECT_EQ(POSIXPath(u"/a:b"_s), u"/a:b"_s);
    EXPECT_EQ(POSIXPath(u"~/x"_s), u"/home/me/x"_s);
    EXPECT_EQ(POSIXPath(u"Macintosh HD:Users:x"_s), u"/Users/x"_s);
    EXPECT_EQ(POSIXPath(u"a/b"_s), u"/a/b"_s);
}

} // namespace
} // namespace caddis
